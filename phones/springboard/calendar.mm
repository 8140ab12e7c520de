#include "platform/calendar.h"

#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

namespace noctara {

namespace {

constexpr NSUInteger dateAndTime = NSYearCalendarUnit | NSMonthCalendarUnit | NSDayCalendarUnit |
                                   NSHourCalendarUnit | NSMinuteCalendarUnit | NSSecondCalendarUnit;

class SpringBoardCalendar final : public Calendar {
public:
    DateComponents components(Date date) override {
        @autoreleasepool {
            NSDateComponents* parts = [[NSCalendar currentCalendar] components:dateAndTime
                                                                      fromDate:dateOf(date)];
            const auto part = [](NSInteger value) { return static_cast<std::int32_t>(value); };
            return {part([parts year]), part([parts month]),  part([parts day]),
                    part([parts hour]), part([parts minute]), part([parts second])};
        }
    }

    Date date(const DateComponents& components) override {
        @autoreleasepool {
            NSDateComponents* parts = [[[NSDateComponents alloc] init] autorelease];
            [parts setYear:components.year];
            [parts setMonth:components.month];
            [parts setDay:components.day];
            [parts setHour:components.hour];
            [parts setMinute:components.minute];
            [parts setSecond:components.second];
            NSDate* date = [[NSCalendar currentCalendar] dateFromComponents:parts];
            return {[date timeIntervalSince1970]};
        }
    }
};

} // namespace

Calendar& springBoardCalendar() {
    static auto& calendar = *new SpringBoardCalendar;
    return calendar;
}

} // namespace noctara

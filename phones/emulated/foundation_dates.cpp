/// NSDate, NSDateComponents and NSCalendar.
#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/foundation_classes.h"
#include "phones/emulated/process.h"

#include <limits>

namespace noctara::emulated {

namespace {

/// A value of a component that is not set.
constexpr std::int64_t undefinedComponent = std::numeric_limits<std::int64_t>::max();

struct DateComponentsObject final : Object {
    std::int64_t year = undefinedComponent;
    std::int64_t month = undefinedComponent;
    std::int64_t day = undefinedComponent;
    std::int64_t hour = undefinedComponent;
    std::int64_t minute = undefinedComponent;
    std::int64_t second = undefinedComponent;
};

} // namespace

void addDates(Process& process) {
    Class& date = process.addClass(coreFoundation, "NSDate");
    date.make = maker<DateObject>();
    addMethods(date, true,
               {{"date",
                 [](Message& m) {
                     m.returnsAutoreleased(&m.make("NSDate", DateObject(m.process.phone.now())));
                 }},
                {"dateWithTimeIntervalSince1970:", [](Message& m) {
                     m.returnsAutoreleased(&m.make("NSDate", DateObject(Date{m.real(0)})));
                 }}});
    addMethods(date, false, {{"timeIntervalSince1970", [](Message& m) {
                                  m.returnsReal(m.self<DateObject>().date.secondsSince1970);
                              }}});

    Class& components = process.addClass(coreFoundation, "NSDateComponents");
    components.make = maker<DateComponentsObject>();
    const auto field = [&](const char* getter, const char* setter,
                           std::int64_t DateComponentsObject::*member) {
        addMethods(
            components, false,
            {{getter,
              [member](Message& m) {
                  m.returns(static_cast<std::uint64_t>(m.self<DateComponentsObject>().*member));
              }},
             {setter, [member](Message& m) {
                  m.self<DateComponentsObject>().*member = static_cast<std::int64_t>(m.word(0));
              }}});
    };
    field("year", "setYear:", &DateComponentsObject::year);
    field("month", "setMonth:", &DateComponentsObject::month);
    field("day", "setDay:", &DateComponentsObject::day);
    field("hour", "setHour:", &DateComponentsObject::hour);
    field("minute", "setMinute:", &DateComponentsObject::minute);
    field("second", "setSecond:", &DateComponentsObject::second);

    Class& calendar = process.addClass(coreFoundation, "NSCalendar");
    addMethods(calendar, true, {{"currentCalendar", [](Message& m) {
                                     m.returnsObject(&m.process.shared("NSCalendar"));
                                 }}});
    addMethods(
        calendar, false,
        {{"components:fromDate:",
          [](Message& m) {
              constexpr std::uint64_t yearToSecond = 4 | 8 | 16 | 32 | 64 | 128;
              if (m.word(0) != yearToSecond)
                  throw Fault("a calendar is asked for other units than year to second");
              const auto& from = contentOf<DateObject>(m.object(1), "a date");
              const auto parts = m.process.phone.timeZone().components(from.date);
              auto& made = m.make<DateComponentsObject>("NSDateComponents");
              made.year = parts.year;
              made.month = parts.month;
              made.day = parts.day;
              made.hour = parts.hour;
              made.minute = parts.minute;
              made.second = parts.second;
              m.returnsAutoreleased(&made);
          }},
         {"dateFromComponents:", [](Message& m) {
              const auto& from = contentOf<DateComponentsObject>(m.object(0), "the components");
              const auto part = [](std::int64_t value, std::int32_t otherwise) {
                  return value == undefinedComponent ? otherwise : static_cast<std::int32_t>(value);
              };
              m.returnsAutoreleased(
                  &m.make("NSDate",
                          DateObject(m.process.phone.timeZone().date(
                              {part(from.year, 1), part(from.month, 1), part(from.day, 1),
                               part(from.hour, 0), part(from.minute, 0), part(from.second, 0)}))));
          }}});
}

} // namespace noctara::emulated

#include "phones/springboard/property_list_values.h"

namespace noctara {

namespace {

class FoundationObject final : public PhoneObject {
public:
    explicit FoundationObject(id theObject) : object([theObject retain]) {}
    FoundationObject(const FoundationObject&) = delete;
    FoundationObject& operator=(const FoundationObject&) = delete;
    ~FoundationObject() override { [object release]; }

    id get() const { return object; }

private:
    id object;
};

/// The value alone.
PropertyList plainValueOf(id object) {
    if ([object isKindOfClass:[NSNumber class]]) {
        // The two truths are objects of their own, which tells them from the numbers 0 and 1.
        if (object == [NSNumber numberWithBool:YES])
            return true;
        if (object == [NSNumber numberWithBool:NO])
            return false;
        const char type = *[object objCType];
        if (type == 'd' || type == 'f')
            return [object doubleValue];
        return std::int64_t{[object longLongValue]};
    }
    if ([object isKindOfClass:[NSDate class]])
        return Date{[object timeIntervalSince1970]};
    if ([object isKindOfClass:[NSData class]]) {
        const auto* bytes = static_cast<const std::uint8_t*>([object bytes]);
        return Data(bytes, bytes + [object length]);
    }
    if ([object isKindOfClass:[NSArray class]]) {
        Array array;
        for (id item in object)
            array.push_back(valueOf(item));
        return array;
    }
    if ([object isKindOfClass:[NSDictionary class]])
        return dictionaryOf(object);
    return textOf([object description]);
}

} // namespace

NSString* stringOf(const std::string& text) {
    NSString* string = [[NSString alloc] initWithBytes:text.data()
                                                length:text.size()
                                              encoding:NSUTF8StringEncoding];
    if (!string)
        string = [[NSString alloc] initWithBytes:text.data()
                                          length:text.size()
                                        encoding:NSISOLatin1StringEncoding];
    return [string autorelease];
}

std::string textOf(NSString* string) {
    // A lossless conversion would fail for half a surrogate pair.
    NSData* utf8 = [string dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    return utf8 ? std::string(static_cast<const char*>([utf8 bytes]), [utf8 length]) : "";
}

NSDate* dateOf(Date date) {
    return [NSDate dateWithTimeIntervalSince1970:date.secondsSince1970];
}

NSDictionary* objectOf(const Dictionary& dictionary) {
    NSMutableDictionary* object = [NSMutableDictionary dictionaryWithCapacity:dictionary.size()];
    for (const auto& [key, value] : dictionary)
        [object setObject:objectOf(value) forKey:stringOf(key)];
    return object;
}

id objectOf(const PropertyList& value) {
    if (const auto* origin = value.madeOf<FoundationObject>())
        return [[origin->get() retain] autorelease];
    if (const auto* truth = value.as<bool>())
        return [NSNumber numberWithBool:*truth];
    if (const auto* integer = value.as<std::int64_t>())
        return [NSNumber numberWithLongLong:*integer];
    if (const auto* real = value.as<double>())
        return [NSNumber numberWithDouble:*real];
    if (const auto* text = value.as<std::string>())
        return stringOf(*text);
    if (const auto* date = value.as<Date>())
        return dateOf(*date);
    if (const auto* data = value.as<Data>())
        return [NSData dataWithBytes:data->data() length:data->size()];
    if (const auto* array = value.as<Array>()) {
        NSMutableArray* object = [NSMutableArray arrayWithCapacity:array->size()];
        for (const auto& item : *array)
            [object addObject:objectOf(item)];
        return object;
    }
    return objectOf(*value.as<Dictionary>());
}

Dictionary dictionaryOf(NSDictionary* object) {
    Dictionary dictionary;
    for (id key in object)
        dictionary.set(textOf([key description]), valueOf([object objectForKey:key]));
    return dictionary;
}

PropertyList valueOf(id object) {
    PropertyList value = plainValueOf(object);
    return object ? PropertyList(std::move(value), std::make_shared<FoundationObject>(object))
                  : value;
}

} // namespace noctara

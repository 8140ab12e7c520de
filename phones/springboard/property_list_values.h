/// Conversions between the core's values and Foundation's objects.
#pragma once

#include "platform/property_list.h"

#import <Foundation/Foundation.h>

#include <string>

namespace noctara {

/// Text that is not valid UTF-8 is read as Latin-1. Autoreleased, as are the results of `objectOf`.
NSString* stringOf(const std::string& text);

/// Empty for nil.
std::string textOf(NSString* string);

NSDate* dateOf(Date date);

NSDictionary* objectOf(const Dictionary& dictionary);
id objectOf(const PropertyList& value);

/// The keys in the dictionary's own order.
Dictionary dictionaryOf(NSDictionary* object);

/// The value carries the object, which `objectOf` hands out again. An object that no property list
/// holds becomes its description.
PropertyList valueOf(id object);

} // namespace noctara

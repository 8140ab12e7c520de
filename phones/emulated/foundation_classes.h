/// What the files that define Foundation's classes share.
#pragma once

#include "phones/emulated/call.h"
#include "phones/emulated/foundation.h"

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

namespace noctara::emulated {

inline const std::string coreFoundation = "/System/Library/Frameworks/CoreFoundation.framework/"
                                          "CoreFoundation";
inline const std::string foundation = "/System/Library/Frameworks/Foundation.framework/Foundation";

struct UrlObject final : Object {
    std::string path;
};

template <typename Content>
std::function<std::unique_ptr<Object>()> maker() {
    return [] { return std::make_unique<Content>(); };
}

/// Each method under its selector.
void addMethods(Class& to, bool classMethods,
                std::initializer_list<std::pair<const char*, NativeMethod>> methods);

/// As isEqual: compares, for strings and numbers; other objects are equal to themselves alone.
bool areEqual(const Object* one, const Object* other);

std::string descriptionOf(const Object& object);

/// The object for a truth: there are two.
Object* truthObject(Process& process, bool truth);

/// Throws Fault for nil.
Object* required(Object* object, const char* what);

/// Throws Fault for nil, and for an object of another class.
template <typename Content>
const Content& contentOf(Object* object, const char* what) {
    const auto* const content = dynamic_cast<const Content*>(required(object, what));
    if (!content)
        throw Fault(std::string(what) + " is an object of class " + object->isa->name);
    return *content;
}

// Each adds a group of classes.
void addTexts(Process& process);       ///< NSString and NSNumber.
void addDates(Process& process);       ///< NSDate and the calendar.
void addCollections(Process& process); ///< NSArray and NSDictionary.
void addFiles(Process& process);       ///< NSData, property lists, paths and URLs.

} // namespace noctara::emulated

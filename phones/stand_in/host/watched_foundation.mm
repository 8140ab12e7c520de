#include "phones/stand_in/host/watched_foundation.h"

#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/injected_phone.h"

#import <Foundation/Foundation.h>

#include <objc/runtime.h>

using noctara::CallValue;
using noctara::Dictionary;
using noctara::injectedPhone;
using noctara::OnPhone;

/// Replaces a method of a class and stores the implementation that it had in `original`.
template <typename Function>
static void replace(Class watched, SEL selector, Function* replacement, Function*& original) {
    const Method method = class_getInstanceMethod(watched, selector);
    original = reinterpret_cast<Function*>(
        method_setImplementation(method, reinterpret_cast<IMP>(replacement)));
}

static Class metaclassOf(Class watched) {
    return object_getClass(watched);
}

static NSString* placeOf(NSString* path) {
    return noctara::stringOf(injectedPhone->placeOf(noctara::textOf(path)).string());
}

// Bundles.

static id (*ownBundleIdentifier)(id, SEL);
static id bundleIdentifier(id self, SEL selector) {
    // The scenario names the bundle of this process.
    if (CALLED_BY_THE_LIBRARY)
        return noctara::stringOf(OnPhone(*injectedPhone)->process.bundleIdentifier());
    return ownBundleIdentifier(self, selector);
}

// Dates.

static id (*ownDate)(id, SEL);
static id readDate(id self, SEL selector) {
    return CALLED_BY_THE_LIBRARY ? noctara::dateOf(injectedPhone->readDate())
                                 : ownDate(self, selector);
}

/// GNUstep reads the dates of an XML property list with this method. It takes them for local time,
/// although the Z at their end means UTC.
static id (*ownDateOfText)(id, SEL, NSString*, NSString*);
static id dateOfText(id self, SEL selector, NSString* text, NSString* format) {
    if (![format hasSuffix:@"Z"])
        return ownDateOfText(self, selector, text, format);
    return ownDateOfText(self, selector, [text stringByAppendingString:@"+0000"],
                         [format stringByAppendingString:@"%z"]);
}

// Files.

static BOOL (*ownFileExists)(id, SEL, NSString*);
static BOOL fileExists(id self, SEL selector, NSString* path) {
    if (!CALLED_BY_THE_LIBRARY)
        return ownFileExists(self, selector, path);
    const OnPhone phone(*injectedPhone);
    phone->files.bringUpToDate(noctara::textOf(path));
    return phone->recorder.answer(noctara::Operation::fileExistsAtPath, {noctara::textOf(path)},
                                  ownFileExists(self, selector, placeOf(path)) != NO);
}

static id (*ownReadDictionary)(id, SEL, NSString*);
static id readDictionary(id self, SEL selector, NSString* path) {
    if (!CALLED_BY_THE_LIBRARY)
        return ownReadDictionary(self, selector, path);
    const OnPhone phone(*injectedPhone);
    phone->files.bringUpToDate(noctara::textOf(path));
    NSDictionary* dictionary = ownReadDictionary(self, selector, placeOf(path));
    const Dictionary content = noctara::dictionaryOf(dictionary);
    phone->recorder.answered(noctara::Operation::initWithContentsOfFile, {noctara::textOf(path)},
                             dictionary ? CallValue(&content) : CallValue());
    return dictionary;
}

/// Writes a dictionary as the phone's Foundation does. GNUstep's own method writes an old-style
/// property list, in which numbers have a form that only GNUstep reads.
static bool writeAsXML(NSDictionary* dictionary, NSString* path, BOOL atomically) {
    NSData* xml = [NSPropertyListSerialization dataFromPropertyList:dictionary
                                                             format:NSPropertyListXMLFormat_v1_0
                                                   errorDescription:NULL];
    return [xml writeToFile:path atomically:atomically];
}

static BOOL (*ownWriteDictionary)(id, SEL, NSString*, BOOL);
static BOOL writeDictionary(id self, SEL selector, NSString* path, BOOL atomically) {
    if (!CALLED_BY_THE_LIBRARY)
        return ownWriteDictionary(self, selector, path, atomically);
    const OnPhone phone(*injectedPhone);
    const bool written =
        phone->files.disk == noctara::DiskState::ok && writeAsXML(self, placeOf(path), atomically);
    const Dictionary content = noctara::dictionaryOf(self);
    // A write that is not atomic can lose the file, so the trace has another name for it.
    return phone->recorder.answer(atomically ? noctara::Operation::writeToFileAtomically
                                             : noctara::Operation::writeToFileInPlace,
                                  {noctara::textOf(path), &content}, written);
}

/// The file that this thread read last. The data that is parsed does not name its file.
static thread_local std::string lastPathRead;

static id (*ownReadData)(id, SEL, NSString*);
static id readData(id self, SEL selector, NSString* path) {
    if (!CALLED_BY_THE_LIBRARY)
        return ownReadData(self, selector, path);
    lastPathRead = noctara::textOf(path);
    const OnPhone phone(*injectedPhone);
    phone->files.bringUpToDate(lastPathRead);
    return ownReadData(self, selector, placeOf(path));
}

static id (*ownParse)(id, SEL, NSData*, NSPropertyListMutabilityOptions, NSPropertyListFormat*,
                      NSString**);
static id parse(id self, SEL selector, NSData* data, NSPropertyListMutabilityOptions mutability,
                NSPropertyListFormat* format, NSString** error) {
    if (!CALLED_BY_THE_LIBRARY)
        return ownParse(self, selector, data, mutability, format, error);
    id parsed = ownParse(self, selector, data, mutability, format, error);
    const auto value = noctara::valueOf(parsed);
    OnPhone(*injectedPhone)
        ->recorder.answered(noctara::Operation::propertyListFromData, {lastPathRead},
                            parsed ? CallValue(&value) : CallValue());
    return parsed;
}

// Notifications inside the process.

static void (*ownPostNotification)(id, SEL, NSString*, id, NSDictionary*);
static void postNotification(id self, SEL selector, NSString* name, id object,
                             NSDictionary* userInfo) {
    if (CALLED_BY_THE_LIBRARY) {
        const Dictionary content = noctara::dictionaryOf(userInfo);
        OnPhone(*injectedPhone)
            ->recorder.call(noctara::Operation::postNotification,
                            {noctara::textOf(name), &content});
    }
    ownPostNotification(self, selector, name, object, userInfo);
}

// Threads.

static NSThread* monitorThread = nil;

static void (*ownStartThread)(id, SEL);
static void startThread(id self, SEL selector) {
    if (CALLED_BY_THE_LIBRARY) {
        OnPhone(*injectedPhone)
            ->recorder.call(noctara::Operation::NSThreadStart,
                            {noctara::textOf([(NSThread*)self name])});
        monitorThread = self;
        injectedPhone->monitorStarts();
    }
    ownStartThread(self, selector);
}

static void (*ownThreadMain)(id, SEL);
static void threadMain(id self, SEL selector) {
    if (self != monitorThread) {
        ownThreadMain(self, selector);
        return;
    }
    injectedPhone->monitorBegins();
    ownThreadMain(self, selector);
    injectedPhone->monitorEnds();
}

static void (*ownHop)(id, SEL, SEL, id, BOOL);
static void hop(id self, SEL selector, SEL performed, id object, BOOL wait) {
    if (CALLED_BY_THE_LIBRARY)
        OnPhone(*injectedPhone)
            ->recorder.call(noctara::Operation::performSelectorOnMainThread,
                            {sel_getName(performed)});
    ownHop(self, selector, performed, object, wait);
}

namespace noctara {

void watchFoundation() {
    replace([NSBundle class], @selector(bundleIdentifier), bundleIdentifier, ownBundleIdentifier);
    replace(metaclassOf([NSDate class]), @selector(date), readDate, ownDate);
    replace(metaclassOf([NSCalendarDate class]), @selector(dateWithString:calendarFormat:),
            dateOfText, ownDateOfText);
    replace([NSFileManager class], @selector(fileExistsAtPath:), fileExists, ownFileExists);
    replace([NSDictionary class], @selector(initWithContentsOfFile:), readDictionary,
            ownReadDictionary);
    replace([NSDictionary class], @selector(writeToFile:atomically:), writeDictionary,
            ownWriteDictionary);
    replace(metaclassOf([NSData class]), @selector(dataWithContentsOfFile:), readData, ownReadData);
    replace(metaclassOf([NSPropertyListSerialization class]),
            @selector(propertyListFromData:mutabilityOption:format:errorDescription:), parse,
            ownParse);
    replace([NSNotificationCenter class], @selector(postNotificationName:object:userInfo:),
            postNotification, ownPostNotification);
    replace([NSThread class], @selector(start), startThread, ownStartThread);
    replace([NSThread class], @selector(main), threadMain, ownThreadMain);
    replace([NSObject class], @selector(performSelectorOnMainThread:withObject:waitUntilDone:), hop,
            ownHop);
}

void setUpFoundation(const char* timeZone) {
    @autoreleasepool {
        [NSTimeZone
            setDefaultTimeZone:[NSTimeZone
                                   timeZoneWithName:[NSString stringWithUTF8String:timeZone]]];
    }
}

} // namespace noctara

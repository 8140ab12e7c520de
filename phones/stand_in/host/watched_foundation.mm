#include "phones/stand_in/host/watched_foundation.h"

#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/injected_phone.h"

#import <Foundation/Foundation.h>

#include <fcntl.h>
#include <objc/runtime.h>
#include <unistd.h>

using noctara::CallValue;
using noctara::Dictionary;
using noctara::injectedPhone;
using noctara::OnPhone;

#define CALLED_BY_THE_LIBRARY noctara::injectedLibrary::contains(__builtin_return_address(0))

/// Replaces a method of a class by `replacement` and keeps the one it had in `original`.
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

using Answer = id(id, SEL);

static Answer* ownBundleIdentifier;
static id bundleIdentifier(id self, SEL selector) {
    // The scenario may have the library in another process than SpringBoard.
    if (self == [NSBundle mainBundle] && CALLED_BY_THE_LIBRARY)
        return noctara::stringOf(OnPhone(*injectedPhone)->process.bundleIdentifier());
    return ownBundleIdentifier(self, selector);
}

// Dates. GNUstep takes those in an XML property list for local time; the phone's Foundation, as
// they are meant, for UTC.

/// While it lives, this thread's default time zone is UTC.
class InUTC {
public:
    InUTC() { active = true; }
    ~InUTC() { active = false; }
    InUTC(const InUTC&) = delete;
    InUTC& operator=(const InUTC&) = delete;

    static inline thread_local bool active = false;
};

static Answer* ownDefaultTimeZone;
static id defaultTimeZone(id self, SEL selector) {
    return InUTC::active ? [NSTimeZone timeZoneForSecondsFromGMT:0]
                         : ownDefaultTimeZone(self, selector);
}

// Files.

using AskOfPath = BOOL(id, SEL, NSString*);
using ReadPath = id(id, SEL, NSString*);
using WritePath = BOOL(id, SEL, NSString*, BOOL);
using ParseData = id(id, SEL, NSData*, NSPropertyListMutabilityOptions, NSPropertyListFormat*,
                     NSString**);

static AskOfPath* ownFileExists;
static BOOL fileExists(id self, SEL selector, NSString* path) {
    if (!CALLED_BY_THE_LIBRARY)
        return ownFileExists(self, selector, path);
    const OnPhone phone(*injectedPhone);
    phone->files.bringUpToDate(noctara::textOf(path));
    return phone->recorder.answer("fileExistsAtPath:", {noctara::textOf(path)},
                                  ownFileExists(self, selector, placeOf(path)) != NO);
}

static ReadPath* ownReadDictionary;
static id readDictionary(id self, SEL selector, NSString* path) {
    if (!CALLED_BY_THE_LIBRARY)
        return ownReadDictionary(self, selector, path);
    const OnPhone phone(*injectedPhone);
    phone->files.bringUpToDate(noctara::textOf(path));
    const InUTC datesAreMeant;
    NSDictionary* dictionary = ownReadDictionary(self, selector, placeOf(path));
    const Dictionary content = noctara::dictionaryOf(dictionary);
    phone->recorder.answered("initWithContentsOfFile:", {noctara::textOf(path)},
                             dictionary ? CallValue(&content) : CallValue());
    return dictionary;
}

/// What the phone's Foundation does to write a dictionary. GNUstep's makes an old-style property
/// list of it, or an empty file when there is text beyond ASCII in it; its serializer does neither.
static bool writeAsXML(NSDictionary* dictionary, NSString* path, BOOL atomically) {
    NSData* xml = [NSPropertyListSerialization dataFromPropertyList:dictionary
                                                             format:NSPropertyListXMLFormat_v1_0
                                                   errorDescription:NULL];
    return [xml writeToFile:path atomically:atomically];
}

static WritePath* ownWriteDictionary;
static BOOL writeDictionary(id self, SEL selector, NSString* path, BOOL atomically) {
    if (!CALLED_BY_THE_LIBRARY)
        return ownWriteDictionary(self, selector, path, atomically);
    const OnPhone phone(*injectedPhone);
    const bool written =
        phone->files.disk == noctara::DiskState::ok && writeAsXML(self, placeOf(path), atomically);
    const Dictionary content = noctara::dictionaryOf(self);
    // The simulated phone has no other way to write: one that can lose the file is another call.
    return phone->recorder.answer(atomically ? "writeToFile:atomically:" : "writeToFile:",
                                  {noctara::textOf(path), &content}, written);
}

/// What the thread has read last, to be parsed next.
static thread_local std::string lastPathRead;

static ReadPath* ownReadData;
static id readData(id self, SEL selector, NSString* path) {
    if (!CALLED_BY_THE_LIBRARY)
        return ownReadData(self, selector, path);
    lastPathRead = noctara::textOf(path);
    const OnPhone phone(*injectedPhone);
    phone->files.bringUpToDate(lastPathRead);
    return ownReadData(self, selector, placeOf(path));
}

static ParseData* ownParse;
static id parse(id self, SEL selector, NSData* data, NSPropertyListMutabilityOptions mutability,
                NSPropertyListFormat* format, NSString** error) {
    if (!CALLED_BY_THE_LIBRARY)
        return ownParse(self, selector, data, mutability, format, error);
    const InUTC datesAreMeant;
    id parsed = ownParse(self, selector, data, mutability, format, error);
    const auto value = noctara::valueOf(parsed);
    OnPhone(*injectedPhone)
        ->recorder.answered("propertyListFromData:", {lastPathRead},
                            parsed ? CallValue(&value) : CallValue());
    return parsed;
}

// Notifications inside the process.

using PostNotification = void(id, SEL, NSString*, id, NSDictionary*);

static PostNotification* ownPostNotification;
static void postNotification(id self, SEL selector, NSString* name, id object,
                             NSDictionary* userInfo) {
    if (CALLED_BY_THE_LIBRARY) {
        const Dictionary content = noctara::dictionaryOf(userInfo);
        OnPhone(*injectedPhone)
            ->recorder.call("postNotificationName:object:userInfo:",
                            {noctara::textOf(name), &content});
    }
    ownPostNotification(self, selector, name, object, userInfo);
}

// Threads.

using Run = void(id, SEL);
using Hop = void(id, SEL, SEL, id, BOOL);

static NSThread* monitorThread = nil;

static Run* ownStartThread;
static void startThread(id self, SEL selector) {
    if (CALLED_BY_THE_LIBRARY) {
        OnPhone(*injectedPhone)
            ->recorder.call("NSThread start", {noctara::textOf([(NSThread*)self name])});
        monitorThread = self;
        injectedPhone->monitorStarts();
    }
    ownStartThread(self, selector);
}

static Run* ownThreadMain;
static void threadMain(id self, SEL selector) {
    if (self != monitorThread) {
        ownThreadMain(self, selector);
        return;
    }
    injectedPhone->monitorBegins();
    ownThreadMain(self, selector);
    injectedPhone->monitorEnds();
}

static Hop* ownHop;
static void hop(id self, SEL selector, SEL performed, id object, BOOL wait) {
    if (CALLED_BY_THE_LIBRARY)
        OnPhone(*injectedPhone)
            ->recorder.call("performSelectorOnMainThread:withObject:waitUntilDone:",
                            {sel_getName(performed)});
    ownHop(self, selector, performed, object, wait);
}

namespace noctara {

void watchFoundation() {
    replace([NSBundle class], @selector(bundleIdentifier), bundleIdentifier, ownBundleIdentifier);
    replace(metaclassOf([NSTimeZone class]), @selector(defaultTimeZone), defaultTimeZone,
            ownDefaultTimeZone);
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

void adoptThePhonesClock() {
    const int standardError = dup(STDERR_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDERR_FILENO);
    @autoreleasepool {
        [NSDate date];
    }
    dup2(standardError, STDERR_FILENO);
    close(standardError);
    close(nowhere);
}

} // namespace noctara

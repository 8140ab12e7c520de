/// Foundation, as far as it is used here.
#pragma once

#include <objc/NSObject.h>

#ifndef NULL
#define NULL __null
#endif

typedef double NSTimeInterval;

#ifdef __LP64__
typedef double CGFloat;
#else
typedef float CGFloat;
#endif

@class NSArray, NSData, NSDate, NSDictionary;

extern "C" [[gnu::visibility("default")]] void NSLog(NSString* format, ...)
    __attribute__((format(__NSString__, 1, 2)));

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4, NSISOLatin1StringEncoding = 5 };

@interface NSString : NSObject
+ (id)stringWithUTF8String:(const char*)text;
/// Nil if the bytes are not valid in the encoding.
- (id)initWithBytes:(const void*)bytes
             length:(NSUInteger)length
           encoding:(NSStringEncoding)encoding;
/// Nil if `lossy` is NO and a character has no place in the encoding.
- (NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
@end

@interface NSNumber : NSObject
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithDouble:(double)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
- (const char*)objCType;
- (double)doubleValue;
- (long long)longLongValue;
@end

@interface NSData : NSObject
+ (id)dataWithBytes:(const void*)bytes length:(NSUInteger)length;
/// Nil if the file cannot be read.
+ (id)dataWithContentsOfFile:(NSString*)path;
- (const void*)bytes;
- (NSUInteger)length;
@end

@interface NSDate : NSObject
+ (id)date;
+ (id)dateWithTimeIntervalSince1970:(NSTimeInterval)seconds;
- (NSTimeInterval)timeIntervalSince1970;
@end

/// How `for` goes through a collection. Compiled code has the layout of this structure built in.
typedef struct {
    unsigned long state;
    id* itemsPtr;
    unsigned long* mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id*)buffer
                                    count:(NSUInteger)length;
@end

@interface NSArray : NSObject <NSFastEnumeration>
- (BOOL)containsObject:(id)object;
@end

@interface NSMutableArray : NSArray
+ (id)array;
+ (id)arrayWithCapacity:(NSUInteger)capacity;
- (void)addObject:(id)object;
@end

@interface NSDictionary : NSObject <NSFastEnumeration>
/// Nil if the file cannot be read or is no property list of a dictionary.
- (id)initWithContentsOfFile:(NSString*)path;
- (id)objectForKey:(id)key;
- (BOOL)writeToFile:(NSString*)path atomically:(BOOL)atomically;
@end

@interface NSMutableDictionary : NSDictionary
+ (id)dictionaryWithCapacity:(NSUInteger)capacity;
- (void)setObject:(id)object forKey:(id)key;
@end

@interface NSURL : NSObject
+ (id)fileURLWithPath:(NSString*)path;
@end

@interface NSBundle : NSObject
+ (NSBundle*)mainBundle;
/// Nil if the bundle has none.
- (NSString*)bundleIdentifier;
@end

enum : NSUInteger {
    NSYearCalendarUnit = 4,
    NSMonthCalendarUnit = 8,
    NSDayCalendarUnit = 16,
    NSHourCalendarUnit = 32,
    NSMinuteCalendarUnit = 64,
    NSSecondCalendarUnit = 128
};

@interface NSDateComponents : NSObject
- (NSInteger)year;
- (NSInteger)month;
- (NSInteger)day;
- (NSInteger)hour;
- (NSInteger)minute;
- (NSInteger)second;
- (void)setYear:(NSInteger)year;
- (void)setMonth:(NSInteger)month;
- (void)setDay:(NSInteger)day;
- (void)setHour:(NSInteger)hour;
- (void)setMinute:(NSInteger)minute;
- (void)setSecond:(NSInteger)second;
@end

@interface NSCalendar : NSObject
+ (id)currentCalendar;
- (NSDateComponents*)components:(NSUInteger)units fromDate:(NSDate*)date;
- (NSDate*)dateFromComponents:(NSDateComponents*)components;
@end

@interface NSFileManager : NSObject
+ (NSFileManager*)defaultManager;
- (BOOL)fileExistsAtPath:(NSString*)path;
@end

@interface NSNotificationCenter : NSObject
+ (id)defaultCenter;
- (void)postNotificationName:(NSString*)name object:(id)sender userInfo:(NSDictionary*)userInfo;
@end

typedef NSUInteger NSPropertyListFormat;
enum : NSUInteger { NSPropertyListImmutable = 0 };

@interface NSPropertyListSerialization : NSObject
/// Nil if the data is no property list. The caller releases the text of `error`.
+ (id)propertyListFromData:(NSData*)data
          mutabilityOption:(NSUInteger)option
                    format:(NSPropertyListFormat*)format
          errorDescription:(NSString**)error;
@end

@interface NSThread : NSObject
+ (BOOL)isMainThread;
- (id)initWithTarget:(id)target selector:(SEL)selector object:(id)argument;
- (void)setName:(NSString*)name;
- (void)start;
@end

@interface NSObject (NSThreadPerformAdditions)
- (void)performSelectorOnMainThread:(SEL)selector withObject:(id)argument waitUntilDone:(BOOL)wait;
@end

/// The sizes, values and layouts of the phone that compiled code has built in.
#include "phones/springboard/private_functions.h"

#import <CoreMotion/CoreMotion.h>
#import <Foundation/Foundation.h>
#import <UIKit/UIKit.h>

#include <cstddef>
#include <cstdio>
#include <ctime>
#include <cwchar>
#include <cwctype>
#include <pthread.h>
#include <string>
#include <sys/utsname.h>

namespace noctara {

namespace {

/// The size on a 64-bit phone, and on a 32-bit one.
consteval std::size_t bytes(std::size_t on64, std::size_t on32) {
    return sizeof(void*) == 8 ? on64 : on32;
}

static_assert(static_cast<char>(-1) < 0);
static_assert(sizeof(long) == bytes(8, 4));
static_assert(sizeof(std::size_t) == bytes(8, 4));
static_assert(sizeof(std::time_t) == bytes(8, 4));
static_assert(sizeof(std::clock_t) == bytes(8, 4));
static_assert(CLOCKS_PER_SEC == 1000000);
static_assert(sizeof(long double) == sizeof(double));
static_assert(sizeof(va_list) == sizeof(void*));

static_assert(sizeof(wchar_t) == 4);
static_assert(sizeof(std::wint_t) == 4);
static_assert(sizeof(std::wctype_t) == 4);
static_assert(sizeof(std::wctrans_t) == 4);
static_assert(sizeof(std::mbstate_t) == 128);

static_assert(sizeof(pthread_mutex_t) == bytes(64, 44));
static_assert(sizeof(pthread_cond_t) == bytes(48, 28));
static_assert(sizeof(pthread_once_t) == bytes(16, 8));
static_assert(sizeof(pthread_mutexattr_t) == bytes(16, 12));
static_assert(sizeof(pthread_condattr_t) == bytes(16, 8));
static_assert(sizeof(pthread_attr_t) == bytes(64, 40));
static_assert(sizeof(pthread_t) == sizeof(void*));
static_assert(sizeof(pthread_key_t) == sizeof(long));
static_assert(pthread_mutex_t(PTHREAD_MUTEX_INITIALIZER).__sig == 0x32AAABA7);
static_assert(pthread_mutex_t(PTHREAD_RECURSIVE_MUTEX_INITIALIZER).__sig == 0x32AAABA2);
static_assert(pthread_cond_t(PTHREAD_COND_INITIALIZER).__sig == 0x3CB0B1BB);
static_assert(pthread_once_t(PTHREAD_ONCE_INIT).__sig == 0x30B1BCBA);

static_assert(sizeof(utsname) == 1280);
static_assert(offsetof(utsname, machine) == 1024);
static_assert(sizeof(timespec) == bytes(16, 8));
static_assert(sizeof(std::tm) == bytes(56, 44));
static_assert(offsetof(std::tm, tm_gmtoff) == bytes(40, 36));
static_assert(offsetof(std::tm, tm_zone) == bytes(48, 40));
static_assert(sizeof(std::fpos_t) == 8);
static_assert(EOF == -1);

// The C++ library's alternate layout of strings, which the phone's own functions expect.
static_assert(sizeof(std::string) == bytes(24, 12));

static_assert(sizeof(BOOL) == 1);
static_assert(std::is_same_v<BOOL, bool> == (sizeof(void*) == 8));
static_assert(sizeof(NSInteger) == sizeof(long));
static_assert(sizeof(NSUInteger) == sizeof(long));
static_assert(sizeof(CGFloat) == sizeof(void*));
static_assert(sizeof(NSTimeInterval) == 8);
static_assert(sizeof(UIUserInterfaceIdiom) == sizeof(long));
static_assert(sizeof(NSFastEnumerationState) == bytes(64, 32));
static_assert(sizeof(CMAcceleration) == 3 * sizeof(double));
static_assert(NSYearCalendarUnit == 4);
static_assert(NSMonthCalendarUnit == 8);
static_assert(NSDayCalendarUnit == 16);
static_assert(NSHourCalendarUnit == 32);
static_assert(NSMinuteCalendarUnit == 64);
static_assert(NSSecondCalendarUnit == 128);
static_assert(NSUTF8StringEncoding == 4);
static_assert(NSISOLatin1StringEncoding == 5);
static_assert(NSPropertyListImmutable == 0);

static_assert(sizeof(io_object_t) == 4);
static_assert(sizeof(io_connect_t) == 4);
static_assert(sizeof(io_service_t) == 4);

} // namespace

} // namespace noctara

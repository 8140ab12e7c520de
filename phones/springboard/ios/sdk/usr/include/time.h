/// Time since 1970.
#pragma once

#include <stddef.h>

#define CLOCKS_PER_SEC 1000000

extern "C" {

typedef unsigned long clock_t;
typedef long time_t;

struct timespec {
    time_t tv_sec;
    long tv_nsec;
};

struct tm {
    int tm_sec;
    int tm_min;
    int tm_hour;
    int tm_mday;
    int tm_mon;
    int tm_year;
    int tm_wday;
    int tm_yday;
    int tm_isdst;
    long tm_gmtoff;
    char* tm_zone;
};

time_t time(time_t*);
int nanosleep(const timespec*, timespec*);

} // extern "C"

/// Formatted output.
#pragma once

#include <stdarg.h>
#include <stddef.h>

#define EOF (-1)

extern "C" {

typedef struct __sFILE FILE;
typedef long long fpos_t;

int remove(const char*);
[[gnu::format(printf, 1, 2)]] int printf(const char*, ...);
[[gnu::format(printf, 3, 4)]] int snprintf(char*, size_t, const char*, ...);
[[gnu::format(printf, 3, 0)]] int vsnprintf(char*, size_t, const char*, va_list);

} // extern "C"

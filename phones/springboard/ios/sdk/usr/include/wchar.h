/// Wide characters, as far as the C++ library's strings need them.
#pragma once

#include <stddef.h>

#define WEOF ((wint_t)-1)

extern "C" {

typedef int wint_t;

/// The state of a conversion between multibyte and wide characters.
typedef union {
    char __mbstate8[128];
    long long _mbstateL;
} mbstate_t;

wchar_t* wcschr(const wchar_t*, wchar_t);
wchar_t* wcspbrk(const wchar_t*, const wchar_t*);
wchar_t* wcsrchr(const wchar_t*, wchar_t);
wchar_t* wcsstr(const wchar_t*, const wchar_t*);
size_t wcslen(const wchar_t*);
wchar_t* wmemchr(const wchar_t*, wchar_t, size_t);
int wmemcmp(const wchar_t*, const wchar_t*, size_t);
wchar_t* wmemcpy(wchar_t*, const wchar_t*, size_t);
wchar_t* wmemmove(wchar_t*, const wchar_t*, size_t);
wchar_t* wmemset(wchar_t*, wchar_t, size_t);

} // extern "C"

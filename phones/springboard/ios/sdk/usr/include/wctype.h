/// Classes of wide characters.
#pragma once

#include <wchar.h>

extern "C" {

typedef unsigned int wctype_t;
typedef int wctrans_t;

} // extern "C"

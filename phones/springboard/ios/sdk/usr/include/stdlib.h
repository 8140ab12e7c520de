/// Memory and division.
#pragma once

#include <stddef.h>

extern "C" {

typedef struct {
    int quot, rem;
} div_t;
typedef struct {
    long quot, rem;
} ldiv_t;
typedef struct {
    long long quot, rem;
} lldiv_t;

[[noreturn]] void abort(void);
int abs(int);
long labs(long);
long long llabs(long long);
div_t div(int, int);
ldiv_t ldiv(long, long);
lldiv_t lldiv(long long, long long);
void* malloc(size_t);
void free(void*);
int posix_memalign(void**, size_t alignment, size_t);

} // extern "C"

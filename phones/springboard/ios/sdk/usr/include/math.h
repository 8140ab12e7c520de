/// Mathematics. `long double` has the representation of `double`.
#pragma once

#define NAN __builtin_nanf("")
#define INFINITY __builtin_inff()
#define HUGE_VAL __builtin_huge_val()

// The C++ library replaces these macros by functions.
#define FP_NAN 1
#define FP_INFINITE 2
#define FP_ZERO 3
#define FP_NORMAL 4
#define FP_SUBNORMAL 5
#define fpclassify(x) __builtin_fpclassify(FP_NAN, FP_INFINITE, FP_NORMAL, FP_SUBNORMAL, FP_ZERO, x)
#define isfinite(x) __builtin_isfinite(x)
#define isinf(x) __builtin_isinf(x)
#define isnan(x) __builtin_isnan(x)
#define isnormal(x) __builtin_isnormal(x)
#define signbit(x) __builtin_signbit(x)
#define isgreater(x, y) __builtin_isgreater(x, y)
#define isgreaterequal(x, y) __builtin_isgreaterequal(x, y)
#define isless(x, y) __builtin_isless(x, y)
#define islessequal(x, y) __builtin_islessequal(x, y)
#define islessgreater(x, y) __builtin_islessgreater(x, y)
#define isunordered(x, y) __builtin_isunordered(x, y)

extern "C" {

typedef float float_t;
typedef double double_t;

#define NOCTARA_UNARY(name)                                                                        \
    float name##f(float);                                                                          \
    double name(double);                                                                           \
    long double name##l(long double);
#define NOCTARA_BINARY(name)                                                                       \
    float name##f(float, float);                                                                   \
    double name(double, double);                                                                   \
    long double name##l(long double, long double);
#define NOCTARA_SCALING(name, type)                                                                \
    float name##f(float, type);                                                                    \
    double name(double, type);                                                                     \
    long double name##l(long double, type);
#define NOCTARA_ROUNDING(name, type)                                                               \
    type name##f(float);                                                                           \
    type name(double);                                                                             \
    type name##l(long double);

// The C++ library wraps every one of them.
NOCTARA_UNARY(acos)
NOCTARA_UNARY(acosh)
NOCTARA_UNARY(asin)
NOCTARA_UNARY(asinh)
NOCTARA_UNARY(atan)
NOCTARA_UNARY(atanh)
NOCTARA_UNARY(cbrt)
NOCTARA_UNARY(ceil)
NOCTARA_UNARY(cos)
NOCTARA_UNARY(cosh)
NOCTARA_UNARY(erf)
NOCTARA_UNARY(erfc)
NOCTARA_UNARY(exp)
NOCTARA_UNARY(exp2)
NOCTARA_UNARY(expm1)
NOCTARA_UNARY(fabs)
NOCTARA_UNARY(floor)
NOCTARA_UNARY(lgamma)
NOCTARA_UNARY(log)
NOCTARA_UNARY(log10)
NOCTARA_UNARY(log1p)
NOCTARA_UNARY(log2)
NOCTARA_UNARY(logb)
NOCTARA_UNARY(nearbyint)
NOCTARA_UNARY(rint)
NOCTARA_UNARY(round)
NOCTARA_UNARY(sin)
NOCTARA_UNARY(sinh)
NOCTARA_UNARY(sqrt)
NOCTARA_UNARY(tan)
NOCTARA_UNARY(tanh)
NOCTARA_UNARY(tgamma)
NOCTARA_UNARY(trunc)
NOCTARA_BINARY(atan2)
NOCTARA_BINARY(copysign)
NOCTARA_BINARY(fdim)
NOCTARA_BINARY(fmax)
NOCTARA_BINARY(fmin)
NOCTARA_BINARY(fmod)
NOCTARA_BINARY(hypot)
NOCTARA_BINARY(nextafter)
NOCTARA_BINARY(pow)
NOCTARA_BINARY(remainder)
NOCTARA_SCALING(frexp, int*)
NOCTARA_SCALING(ldexp, int)
NOCTARA_SCALING(scalbln, long)
NOCTARA_SCALING(scalbn, int)
NOCTARA_ROUNDING(ilogb, int)
NOCTARA_ROUNDING(llrint, long long)
NOCTARA_ROUNDING(llround, long long)
NOCTARA_ROUNDING(lrint, long)
NOCTARA_ROUNDING(lround, long)

float fmaf(float, float, float);
double fma(double, double, double);
long double fmal(long double, long double, long double);
float modff(float, float*);
double modf(double, double*);
long double modfl(long double, long double*);
float nexttowardf(float, long double);
double nexttoward(double, long double);
long double nexttowardl(long double, long double);
float remquof(float, float, int*);
double remquo(double, double, int*);
long double remquol(long double, long double, int*);

} // extern "C"

#undef NOCTARA_UNARY
#undef NOCTARA_BINARY
#undef NOCTARA_SCALING
#undef NOCTARA_ROUNDING

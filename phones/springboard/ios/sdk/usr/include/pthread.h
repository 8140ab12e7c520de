/// Threads and locks. The sizes and initial values are part of the phone's binary interface.
#pragma once

#include <sched.h>
#include <stddef.h>
#include <time.h>

extern "C" {

// In words of the pointer's size, which follow the signature.
#ifdef __LP64__
#define NOCTARA_OPAQUE(bytes64, bytes32) char __opaque[bytes64]
#else
#define NOCTARA_OPAQUE(bytes64, bytes32) char __opaque[bytes32]
#endif

typedef struct {
    long __sig;
    NOCTARA_OPAQUE(56, 40);
} pthread_mutex_t;
typedef struct {
    long __sig;
    NOCTARA_OPAQUE(8, 8);
} pthread_mutexattr_t;
typedef struct {
    long __sig;
    NOCTARA_OPAQUE(40, 24);
} pthread_cond_t;
typedef struct {
    long __sig;
    NOCTARA_OPAQUE(8, 4);
} pthread_condattr_t;
typedef struct {
    long __sig;
    NOCTARA_OPAQUE(8, 4);
} pthread_once_t;
typedef struct {
    long __sig;
    NOCTARA_OPAQUE(56, 36);
} pthread_attr_t;
typedef struct _opaque_pthread_t* pthread_t;
typedef unsigned long pthread_key_t;

#undef NOCTARA_OPAQUE

#define PTHREAD_MUTEX_INITIALIZER                                                                  \
    {                                                                                              \
        0x32AAABA7, {                                                                              \
            0                                                                                      \
        }                                                                                          \
    }
#define PTHREAD_RECURSIVE_MUTEX_INITIALIZER                                                        \
    {                                                                                              \
        0x32AAABA2, {                                                                              \
            0                                                                                      \
        }                                                                                          \
    }
#define PTHREAD_COND_INITIALIZER                                                                   \
    {                                                                                              \
        0x3CB0B1BB, {                                                                              \
            0                                                                                      \
        }                                                                                          \
    }
#define PTHREAD_ONCE_INIT                                                                          \
    {                                                                                              \
        0x30B1BCBA, {                                                                              \
            0                                                                                      \
        }                                                                                          \
    }
#define PTHREAD_MUTEX_RECURSIVE 2

int pthread_cond_broadcast(pthread_cond_t*);
int pthread_cond_destroy(pthread_cond_t*);
int pthread_cond_signal(pthread_cond_t*);
int pthread_cond_timedwait(pthread_cond_t*, pthread_mutex_t*, const timespec*);
int pthread_cond_wait(pthread_cond_t*, pthread_mutex_t*);
int pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
int pthread_detach(pthread_t);
void* pthread_getspecific(pthread_key_t);
int pthread_join(pthread_t, void**);
int pthread_key_create(pthread_key_t*, void (*)(void*));
int pthread_mutex_destroy(pthread_mutex_t*);
int pthread_mutex_init(pthread_mutex_t*, const pthread_mutexattr_t*);
int pthread_mutex_lock(pthread_mutex_t*);
int pthread_mutex_trylock(pthread_mutex_t*);
int pthread_mutex_unlock(pthread_mutex_t*);
int pthread_mutexattr_destroy(pthread_mutexattr_t*);
int pthread_mutexattr_init(pthread_mutexattr_t*);
int pthread_mutexattr_settype(pthread_mutexattr_t*, int);
int pthread_once(pthread_once_t*, void (*)(void));
pthread_t pthread_self(void);
int pthread_setspecific(pthread_key_t, const void*);

} // extern "C"

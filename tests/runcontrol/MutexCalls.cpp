#include "MutexCalls.h"

#include <dlfcn.h>
#include <pthread.h>

// A program that carries its sanitizer's runtime in itself has the calls
// intercepted there already; a runtime in a shared library lets us go first.
#if defined(__clang__) && defined(__has_feature)
#if __has_feature(thread_sanitizer) || __has_feature(address_sanitizer)
#define MUTEX_CALLS_INTERCEPT 0
#endif
#endif
#ifndef MUTEX_CALLS_INTERCEPT
#define MUTEX_CALLS_INTERCEPT 1
#endif

namespace
{
struct Recording
{
    std::vector<MutexCall> calls;
    unsigned untilFailure = 0; // 0: no failure is armed
    int error = 0;
    bool failed = false;
};

// Null while nothing is recorded, as throughout the start and the end of a thread.
thread_local Recording* recording = nullptr;
} // namespace

bool CanInterceptMutexes()
{
    return MUTEX_CALLS_INTERCEPT != 0;
}

CMutexCalls::CMutexCalls()
{
    recording = new Recording;
}

CMutexCalls::~CMutexCalls()
{
    delete std::exchange(recording, nullptr);
}

std::vector<MutexCall> const& CMutexCalls::Calls() const
{
    return recording->calls;
}

void CMutexCalls::FailLock(unsigned number, int error)
{
    recording->untilFailure = number;
    recording->error = error;
}

bool CMutexCalls::Failed() const
{
    return recording->failed;
}

#if MUTEX_CALLS_INTERCEPT
namespace
{
using MutexFunction = int(pthread_mutex_t*);

MutexFunction* Next(char const* name)
{
    return reinterpret_cast<MutexFunction*>(dlsym(RTLD_NEXT, name));
}
} // namespace

extern "C" {
int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept
{
    static MutexFunction* const next = Next("pthread_mutex_lock");
    if (recording == nullptr)
        return next(mutex);
    if (recording->untilFailure != 0 && --recording->untilFailure == 0) {
        recording->failed = true;
        return recording->error;
    }
    int const error = next(mutex);
    if (error == 0)
        recording->calls.emplace_back('+', mutex);
    return error;
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept
{
    static MutexFunction* const next = Next("pthread_mutex_unlock");
    if (recording != nullptr)
        recording->calls.emplace_back('-', mutex);
    return next(mutex);
}
}
#endif

// Takes two of the library's locks the other way round, once and alone, so that nothing stops: a
// checker of lock orders must report it.

#include <BaseUtilities/TQUserAbort.h>

#include "MutexCalls.h"

#include <pthread.h>

namespace
{
/// The one mutex that an operation takes.
template <class Operation>
pthread_mutex_t* LockOf(Operation operation)
{
    CMutexCalls const during;
    operation();
    return static_cast<pthread_mutex_t*>(const_cast<void*>(during.Calls().at(0).second));
}
} // namespace

int main()
{
    pthread_mutex_t* const enable = LockOf([] { TQUserAbort::UserAbortEnabled(); });
    pthread_mutex_t* const state = LockOf([] { TQUserAbort::UserAbortSent(); });
    TQUserAbort::EnableUserAbort(true); // enable, state, request
    pthread_mutex_lock(state);
    pthread_mutex_lock(enable);
    pthread_mutex_unlock(enable);
    pthread_mutex_unlock(state);
    return 0;
}

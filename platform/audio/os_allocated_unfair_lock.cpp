#include "platform/audio/os_allocated_unfair_lock.h"

#include <pthread.h>
#include <system_error>

namespace tolvenary
{

namespace
{

void require(int result, const char *what)
{
    if (result != 0)
        throw std::system_error(result, std::generic_category(), what);
}

} // namespace

struct UnfairMutex::Native {
    pthread_mutex_t mutex{};
};

UnfairMutex::UnfairMutex() : m_native(std::make_unique<Native>())
{
    pthread_mutexattr_t attributes{};
    require(pthread_mutexattr_init(&attributes), "pthread_mutexattr_init");
    const int protocol = pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    const int made = protocol == 0 ? pthread_mutex_init(&m_native->mutex, &attributes) : protocol;
    pthread_mutexattr_destroy(&attributes);
    require(made, "pthread_mutex_init");
}

UnfairMutex::~UnfairMutex()
{
    pthread_mutex_destroy(&m_native->mutex);
}

void UnfairMutex::lock()
{
    pthread_mutex_lock(&m_native->mutex);
}

void UnfairMutex::unlock()
{
    pthread_mutex_unlock(&m_native->mutex);
}

} // namespace tolvenary

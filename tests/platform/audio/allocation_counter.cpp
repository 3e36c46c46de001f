#include "tests/platform/audio/allocation_counter.h"

#include <cerrno>
#include <cstdlib>

// NOLINTBEGIN(bugprone-reserved-identifier): the names are the C library's and the sanitizers'

namespace
{

// Plain thread-local numbers: what is called from inside malloc must not itself allocate.
thread_local bool counting = false;
thread_local std::uint64_t allocationCount = 0;
thread_local std::uint64_t freeCount = 0;

void countAllocation()
{
    allocationCount += counting ? 1 : 0;
}

void countFree(const void *block)
{
    freeCount += counting && block != nullptr ? 1 : 0;
}

} // namespace

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// Of the sanitizers' runtime; GCC comes without the header.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void *, std::size_t),
                                                         void (*onFree)(const volatile void *));

namespace
{

// The sanitizers bring a heap of their own, with a place to listen.
[[maybe_unused]] const int hooks = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void *, std::size_t) { countAllocation(); },
    [](const volatile void *block) { countFree(const_cast<const void *>(block)); });

} // namespace

#else

// The C library's own heap under its other names; ours take the place of the usual ones, in libraries too.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);

void *malloc(std::size_t size)
{
    countAllocation();
    return __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size)
{
    countAllocation();
    return __libc_calloc(count, size);
}

void *realloc(void *block, std::size_t size)
{
    countAllocation();
    countFree(block);
    return __libc_realloc(block, size);
}

void *memalign(std::size_t alignment, std::size_t size)
{
    countAllocation();
    return __libc_memalign(alignment, size);
}

void *aligned_alloc(std::size_t alignment, std::size_t size)
{
    countAllocation();
    return __libc_memalign(alignment, size);
}

int posix_memalign(void **block, std::size_t alignment, std::size_t size)
{
    countAllocation();
    *block = __libc_memalign(alignment, size);
    return *block != nullptr ? 0 : ENOMEM;
}

void free(void *block)
{
    countFree(block);
    __libc_free(block);
}
}

#endif
// NOLINTEND(bugprone-reserved-identifier)

namespace tolvenary::test
{

AllocationCounter::AllocationCounter()
{
    allocationCount = 0;
    freeCount = 0;
    counting = true;
}

AllocationCounter::~AllocationCounter()
{
    counting = false;
}

std::uint64_t AllocationCounter::allocations() const
{
    return allocationCount;
}

std::uint64_t AllocationCounter::frees() const
{
    return freeCount;
}

} // namespace tolvenary::test

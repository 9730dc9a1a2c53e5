// The allocation functions of this program: they count and pass on to those of the GNU C library, which has
// them under a second name. operator new ends in malloc, operator delete in free.
#include "support/allocations.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>

// NOLINTBEGIN(bugprone-*,cert-*,readability-*)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}

namespace {

thread_local std::uint64_t allocations = 0;
thread_local std::uint64_t frees = 0;

}  // namespace

extern "C" {

void* malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size)
{
    ++allocations;
    return __libc_realloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    ++allocations;
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size)
{
    ++allocations;
    *memory = __libc_memalign(alignment, size);
    return *memory == nullptr ? ENOMEM : 0;
}

void free(void* memory)
{
    ++frees;
    __libc_free(memory);
}
}
// NOLINTEND(bugprone-*,cert-*,readability-*)

namespace kine::test {

std::uint64_t AllocationCount() { return allocations; }

std::uint64_t FreeCount() { return frees; }

}  // namespace kine::test

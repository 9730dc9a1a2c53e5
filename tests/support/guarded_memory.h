// A block of memory whose neighbours on both ends cannot be touched. POSIX only.
#pragma once

#if defined(__unix__) || defined(__APPLE__)
#define KINE_TEST_HAS_GUARDED_MEMORY 1

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>

namespace kine::test {

// One page between two that fault on any access. Blocks are placed against either of them.
class GuardedPage
{
public:
    GuardedPage()
        : pageSize_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))),
          pages_(::mmap(nullptr, 3 * pageSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
        if (IsUsable() && ::mprotect(First(), pageSize_, PROT_READ | PROT_WRITE) != 0) Release();
    }

    ~GuardedPage() { Release(); }

    GuardedPage(const GuardedPage&) = delete;
    GuardedPage& operator=(const GuardedPage&) = delete;

    [[nodiscard]] bool IsUsable() const { return pages_ != MAP_FAILED; }

    // The first byte behind the guard in front.
    [[nodiscard]] unsigned char* First() const { return static_cast<unsigned char*>(pages_) + pageSize_; }

    // The last size bytes before the guard behind.
    [[nodiscard]] unsigned char* Last(std::size_t size) const { return First() + pageSize_ - size; }

private:
    void Release()
    {
        if (IsUsable()) ::munmap(pages_, 3 * pageSize_);
        pages_ = MAP_FAILED;
    }

    std::size_t pageSize_;
    void* pages_;
};

}  // namespace kine::test
#endif

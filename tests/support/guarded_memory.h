// Memory that ends the process when a byte too many is read or written: records that end, or begin, where
// accessible memory does, and ranges that the build with address checks forbids.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>

#if defined(__unix__) || defined(__APPLE__)
#include <sys/mman.h>
#include <unistd.h>
#elif defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>
// Words of this header that tests use as names.
#undef near
#undef far
#endif

#if defined(__SANITIZE_ADDRESS__)
#define KINE_TEST_ADDRESS_CHECKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KINE_TEST_ADDRESS_CHECKS 1
#endif
#endif
#if defined(KINE_TEST_ADDRESS_CHECKS)
#include <sanitizer/asan_interface.h>
#endif

namespace kine::test {

// Where the inaccessible byte next to a guarded record lies.
enum class Guard
{
    kBehind,
    kBefore
};

// A copy of some bytes beside an inaccessible page. Without POSIX or Windows an unguarded copy.
class GuardedBytes
{
public:
    GuardedBytes(const void* content, std::size_t size, Guard guard = Guard::kBehind)
    {
#if defined(__unix__) || defined(__APPLE__)
        page_ = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
        void* memory = ::mmap(nullptr, 3 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED || size > page_) std::abort();
        base_ = static_cast<unsigned char*>(memory);
        if (::mprotect(base_ + page_, page_, PROT_READ | PROT_WRITE) != 0) std::abort();
        content_ = guard == Guard::kBehind ? base_ + 2 * page_ - size : base_ + page_;
#elif defined(_WIN32)
        page_ = 4096;
        if (size > page_) std::abort();
        base_ = static_cast<unsigned char*>(::VirtualAlloc(nullptr, 3 * page_, MEM_RESERVE, PAGE_NOACCESS));
        if (base_ == nullptr) std::abort();
        if (::VirtualAlloc(base_ + page_, page_, MEM_COMMIT, PAGE_READWRITE) == nullptr) std::abort();
        content_ = guard == Guard::kBehind ? base_ + 2 * page_ - size : base_ + page_;
#else
        (void)guard;
        base_ = static_cast<unsigned char*>(std::malloc(size));
        if (base_ == nullptr) std::abort();
        content_ = base_;
#endif
        std::memcpy(content_, content, size);
    }

    ~GuardedBytes()
    {
#if defined(__unix__) || defined(__APPLE__)
        ::munmap(base_, 3 * page_);
#elif defined(_WIN32)
        ::VirtualFree(base_, 0, MEM_RELEASE);
#else
        std::free(base_);
#endif
    }

    GuardedBytes(const GuardedBytes&) = delete;
    GuardedBytes& operator=(const GuardedBytes&) = delete;

    // From now on the bytes cannot be written.
    void Freeze()
    {
#if defined(__unix__) || defined(__APPLE__)
        if (::mprotect(base_ + page_, page_, PROT_READ) != 0) std::abort();
#elif defined(_WIN32)
        DWORD before = 0;
        if (::VirtualProtect(base_ + page_, page_, PAGE_READONLY, &before) == 0) std::abort();
#endif
    }

    template <class Record>
    Record* As() const
    {
        return reinterpret_cast<Record*>(content_);
    }

private:
    std::size_t page_ = 0;
    unsigned char* base_ = nullptr;
    unsigned char* content_ = nullptr;
};

// The same with a record of one type.
template <class Record>
class GuardedRecord : public GuardedBytes
{
public:
    explicit GuardedRecord(const Record& value, Guard guard = Guard::kBehind)
        : GuardedBytes(&value, sizeof value, guard)
    {}

    Record* Get() const { return As<Record>(); }

    Record Value() const
    {
        Record copy;
        std::memcpy(&copy, Get(), sizeof copy);
        return copy;
    }
};

// Bytes of a live object that must not be read or written. Takes effect in the build with address checks
// only.
class ForbiddenBytes
{
public:
    ForbiddenBytes(const void* begin, std::size_t size) : begin_(begin), size_(size)
    {
#if defined(KINE_TEST_ADDRESS_CHECKS)
        __asan_poison_memory_region(begin_, size_);
#endif
    }

    ~ForbiddenBytes()
    {
#if defined(KINE_TEST_ADDRESS_CHECKS)
        __asan_unpoison_memory_region(begin_, size_);
#endif
    }

    ForbiddenBytes(const ForbiddenBytes&) = delete;
    ForbiddenBytes& operator=(const ForbiddenBytes&) = delete;

private:
    [[maybe_unused]] const void* begin_;
    [[maybe_unused]] std::size_t size_;
};

}  // namespace kine::test

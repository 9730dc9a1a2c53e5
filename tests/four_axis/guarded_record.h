// Memory whose reading ends the test: a record that ends where an unreadable page begins, and ranges that the
// build with address checks forbids.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>

#if defined(__unix__) || defined(__APPLE__)
#include <sys/mman.h>
#include <unistd.h>
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

class GuardedRecord
{
public:
    GuardedRecord(const void* content, std::size_t size)
    {
#if defined(__unix__) || defined(__APPLE__)
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        length_ = 2 * page;
        void* memory = mmap(nullptr, length_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) std::abort();
        base_ = static_cast<unsigned char*>(memory);
        if (mprotect(base_ + page, page, PROT_NONE) != 0) std::abort();
        record_ = base_ + page - size;
#else
        base_ = static_cast<unsigned char*>(std::malloc(size));
        if (base_ == nullptr) std::abort();
        record_ = base_;
#endif
        std::memcpy(record_, content, size);
    }

    ~GuardedRecord()
    {
#if defined(__unix__) || defined(__APPLE__)
        munmap(base_, length_);
#else
        std::free(base_);
#endif
    }

    GuardedRecord(const GuardedRecord&) = delete;
    GuardedRecord& operator=(const GuardedRecord&) = delete;

    template <class Record>
    const Record* As() const
    {
        return reinterpret_cast<const Record*>(record_);
    }

private:
    unsigned char* base_ = nullptr;
    unsigned char* record_ = nullptr;
    std::size_t length_ = 0;
};

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

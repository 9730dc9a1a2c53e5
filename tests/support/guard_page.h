// A copy of a record that ends where readable memory ends: reading or writing one byte behind it, or, with
// the record in front, one byte before it, ends the process.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <new>

namespace kine::test {

template <class Record>
class GuardedRecord
{
public:
    enum class Guard
    {
        kBehind,
        kBefore
    };

    explicit GuardedRecord(const Record& value, Guard guard = Guard::kBehind)
        : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
    {
        void* memory = mmap(nullptr, 3 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) throw std::bad_alloc();
        base_ = static_cast<std::byte*>(memory);
        if (mprotect(base_ + page_, page_, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
        record_ = guard == Guard::kBehind ? base_ + 2 * page_ - sizeof(Record) : base_ + page_;
        std::memcpy(record_, &value, sizeof value);
    }
    ~GuardedRecord() { munmap(base_, 3 * page_); }
    GuardedRecord(const GuardedRecord&) = delete;
    GuardedRecord& operator=(const GuardedRecord&) = delete;

    // The memory from now on cannot be written.
    void Freeze() { mprotect(base_ + page_, page_, PROT_READ); }

    Record* Get() { return reinterpret_cast<Record*>(record_); }

    Record Value() const
    {
        Record copy;
        std::memcpy(&copy, record_, sizeof copy);
        return copy;
    }

private:
    static_assert(sizeof(Record) <= 4096);
    std::size_t page_;
    std::byte* base_ = nullptr;
    std::byte* record_ = nullptr;
};

}  // namespace kine::test

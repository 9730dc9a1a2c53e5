// Places for the records of a call. A record lies against an inaccessible page, all bytes around it are
// poisoned for the address checks, and each place can be reached at two addresses: the library gets its
// inputs at one where they cannot be written. No system call is made once the slots are there.
#pragma once

#include <sanitizer/asan_interface.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace kine::fuzz {

// Where in its page a record lies: against the page behind it, against the page before it, or a few bytes
// from the page before it, at an address that does not suit its type.
struct Place
{
    enum class Side : std::uint8_t
    {
        kEnd,
        kStart,
        kOdd
    };
    Side side = Side::kEnd;
    std::size_t shift = 0;  // 1..7, kOdd only
};

class GuardedSlots
{
public:
    static constexpr std::size_t kSlots = 8;

    GuardedSlots() : page_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)))
    {
        const int file = ::memfd_create("records", 0);
        if (file < 0 || ::ftruncate(file, static_cast<off_t>(kSlots * page_)) != 0) std::abort();
        writable_ = MapPages(file, PROT_READ | PROT_WRITE);
        readOnly_ = MapPages(file, PROT_READ);
        ::close(file);
    }

    GuardedSlots(const GuardedSlots&) = delete;
    GuardedSlots& operator=(const GuardedSlots&) = delete;

    // The record's address where it can be written, and where it cannot.
    [[nodiscard]] unsigned char* Writable(std::size_t slot, Place place, std::size_t size) const
    {
        return At(writable_, slot, place, size);
    }
    [[nodiscard]] unsigned char* ReadOnly(std::size_t slot, Place place, std::size_t size) const
    {
        return At(readOnly_, slot, place, size);
    }

    static void Open(const unsigned char* record, std::size_t size)
    {
        __asan_unpoison_memory_region(record, size);
    }

    // Poisoning goes by whole groups of eight bytes, which belong to no other record.
    static void Close(const unsigned char* record, std::size_t size)
    {
        const std::size_t before = reinterpret_cast<std::uintptr_t>(record) % kPoisonedTogether;
        const std::size_t behind =
            (kPoisonedTogether - (before + size) % kPoisonedTogether) % kPoisonedTogether;
        __asan_poison_memory_region(record - before, before + size + behind);
    }

private:
    static constexpr std::size_t kPoisonedTogether = 8;

    // Each page of the file between two pages that cannot be touched.
    unsigned char* MapPages(int file, int protection) const
    {
        void* all = ::mmap(nullptr, (2 * kSlots + 1) * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (all == MAP_FAILED) std::abort();
        auto* base = static_cast<unsigned char*>(all);
        for (std::size_t slot = 0; slot < kSlots; ++slot) {
            const auto offset = static_cast<off_t>(slot * page_);
            if (::mmap(PageOf(base, slot), page_, protection, MAP_SHARED | MAP_FIXED, file, offset) ==
                MAP_FAILED) {
                std::abort();
            }
            __asan_poison_memory_region(PageOf(base, slot), page_);
        }
        return base;
    }

    [[nodiscard]] unsigned char* PageOf(unsigned char* base, std::size_t slot) const
    {
        return base + (2 * slot + 1) * page_;
    }

    [[nodiscard]] unsigned char* At(unsigned char* base, std::size_t slot, Place place,
                                    std::size_t size) const
    {
        unsigned char* page = PageOf(base, slot);
        switch (place.side) {
            case Place::Side::kStart: return page;
            case Place::Side::kOdd: return page + place.shift;
            case Place::Side::kEnd:
            default: return page + page_ - size;
        }
    }

    std::size_t page_;
    unsigned char* writable_ = nullptr;
    unsigned char* readOnly_ = nullptr;
};

}  // namespace kine::fuzz

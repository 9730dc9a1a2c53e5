// Records where a caller may keep them although no compiler would: at addresses that do not suit their type.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>

namespace kine::test {

// A copy of a record this many bytes, up to 7, behind an address that suits every type: with 1 no alignment
// but 1 divides it.
template <class Record>
class OddRecord
{
public:
    explicit OddRecord(const Record& value, std::size_t shift = 1) : shift_(shift)
    {
        std::memcpy(Bytes(), &value, sizeof value);
    }

    unsigned char* Bytes() { return bytes_.data() + shift_; }
    Record* Get() { return static_cast<Record*>(static_cast<void*>(Bytes())); }

    Record Value() const
    {
        Record copy;
        std::memcpy(&copy, bytes_.data() + shift_, sizeof copy);
        return copy;
    }

private:
    std::size_t shift_;
    alignas(16) std::array<unsigned char, sizeof(Record) + 7> bytes_{};
};

}  // namespace kine::test

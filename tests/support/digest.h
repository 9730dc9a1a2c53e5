// A digest of bytes: FNV-1a with 64 bits. Every step is a one-to-one map of the state, so that two inputs of
// one length that differ in a single byte never have the same digest.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kine::test {

class Digest
{
public:
    void Add(const void* data, std::size_t size)
    {
        const auto* bytes = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < size; ++i) value_ = (value_ ^ bytes[i]) * 0x100000001B3U;
    }

    [[nodiscard]] std::uint64_t Value() const { return value_; }

private:
    std::uint64_t value_ = 0xCBF29CE484222325U;
};

}  // namespace kine::test

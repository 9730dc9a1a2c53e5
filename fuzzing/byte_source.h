// The bytes of one input, handed out from the front. Where they end, zeros follow.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kine::fuzz {

class ByteSource
{
public:
    ByteSource(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    [[nodiscard]] bool IsEmpty() const { return size_ == 0; }

    void Fill(void* to, std::size_t size)
    {
        const std::size_t taken = std::min(size, size_);
        // An empty input may come without an address.
        if (taken > 0) std::memcpy(to, data_, taken);
        std::memset(static_cast<unsigned char*>(to) + taken, 0, size - taken);
        data_ += taken;
        size_ -= taken;
    }

    template <class Value>
    Value Raw()
    {
        Value value;
        Fill(&value, sizeof value);
        return value;
    }

    std::uint8_t Byte() { return Raw<std::uint8_t>(); }

    // Two bytes as a number of these parts: every whole number in the range is among them.
    double Parts(double perOne) { return Raw<std::int16_t>() / perOne; }

private:
    const std::uint8_t* data_;
    std::size_t size_;
};

}  // namespace kine::fuzz

// What the library prints: standard output goes to a file in memory, where a look tells whether something
// came.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kine::fuzz {

class PrintedText
{
public:
    PrintedText()
    {
        const int file = ::memfd_create("printed", 0);
        if (file < 0 || ::ftruncate(file, kSize) != 0) std::abort();
        void* memory = ::mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        if (memory == MAP_FAILED || std::fflush(stdout) != 0 || ::dup2(file, STDOUT_FILENO) < 0) std::abort();
        ::close(file);
        text_ = static_cast<char*>(memory);
    }

    PrintedText(const PrintedText&) = delete;
    PrintedText& operator=(const PrintedText&) = delete;

    // Copies what was printed since the last time, up to the size of the buffer, and returns its full length.
    // No line begins with a zero byte; HasStray would find one.
    template <class Buffer>
    std::size_t Take(Buffer& buffer)
    {
        if (text_[0] == '\0') return 0;
        const auto length = static_cast<std::size_t>(::lseek(STDOUT_FILENO, 0, SEEK_CUR));
        std::memcpy(buffer.data(), text_, std::min(length, buffer.size()));
        std::memset(text_, 0, std::min<std::size_t>(length, kSize));
        if (::lseek(STDOUT_FILENO, 0, SEEK_SET) != 0) std::abort();
        return length;
    }

    // Something was printed that Take did not see.
    static bool HasStray() { return ::lseek(STDOUT_FILENO, 0, SEEK_CUR) != 0; }

private:
    static constexpr off_t kSize = 4096;
    char* text_ = nullptr;
};

}  // namespace kine::fuzz

// What the library prints. Its lines go to the standard output of the process, where this program's data
// belong: while they are captured, descriptor 1 leads into a pipe of our own, and the data go to a copy of
// what it was.
#pragma once

#include <string>

namespace kine_cli {

class PrintedLines
{
public:
    // Fails when the system gives no descriptors.
    PrintedLines();
    ~PrintedLines();
    PrintedLines(const PrintedLines&) = delete;
    PrintedLines& operator=(const PrintedLines&) = delete;

    // The standard output that the program was started with.
    int DataDescriptor() const { return data_; }

    // The lines since the last call, each with its end. Asked after every call that failed, so that the pipe
    // never fills: only failing calls print. A pipe that is full would lose lines, not stop the library.
    std::string Take();

    // A process of its own needs a pipe of its own. Called first in a child.
    void Renew();

private:
    void Open();

    int data_ = -1;
    int read_ = -1;
};

// The lines as UTF-8: the library has one with a full-width colon in code page GBK.
std::string AsUtf8(const std::string& lines);

}  // namespace kine_cli

/// An open file of the operating system.
#pragma once

#include <utility>

#include <unistd.h>

namespace noctara {

/// Closes its file when it is destroyed.
class FileDescriptor {
public:
    /// A negative number is no file, as `open` returns it for an error.
    explicit FileDescriptor(int openFile) : number(openFile) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { close(); }

    int get() const { return number; }
    bool isOpen() const { return number >= 0; }

    /// False if the system reports a delayed write error.
    bool close() { return number < 0 || ::close(std::exchange(number, -1)) == 0; }

private:
    int number;
};

} // namespace noctara

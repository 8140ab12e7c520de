/// An open file of the operating system.
#pragma once

#include <utility>

#include <unistd.h>

namespace noctara {

/// The destructor closes the file.
class FileDescriptor {
public:
    /// The result of `open`. A negative number means that no file is open.
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

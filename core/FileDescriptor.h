#pragma once

#include <cerrno>
#include <cstddef>
#include <unistd.h>

namespace tarvos::core {

/// Owns a descriptor of an open file, or a negative number where opening failed.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor) noexcept : mDescriptor(descriptor) {}
    ~FileDescriptor() { close(); }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const noexcept { return mDescriptor; }

    /// Reads up to @p size bytes; 0 at the end, negative with errno set on failure.
    ssize_t read(char* bytes, std::size_t size) const noexcept {
        ssize_t count = 0;
        do
            count = ::read(mDescriptor, bytes, size);
        while (count < 0 && errno == EINTR);
        return count;
    }
    /// Whether all @p size bytes were written; errno is set otherwise.
    bool write(const char* bytes, std::size_t size) const noexcept {
        while (size > 0) {
            const ssize_t count = ::write(mDescriptor, bytes, size);
            if (count < 0 && errno != EINTR)
                return false;
            if (count > 0) {
                bytes += count;
                size -= static_cast<std::size_t>(count);
            }
        }
        return true;
    }
    /// Whether the file was open and everything written has reached the file system; errno is set otherwise.
    bool close() noexcept {
        const int descriptor = mDescriptor;
        mDescriptor = -1;
        return descriptor >= 0 && ::close(descriptor) == 0;
    }

private:
    int mDescriptor;
};

}  // namespace tarvos::core

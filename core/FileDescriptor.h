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

    /// Whether all @p size bytes were written; errno is set otherwise.
    bool write(const char* bytes, std::size_t size) const noexcept {
        ssize_t count = 0;
        for (std::size_t done = 0; done < size && count >= 0; done += static_cast<std::size_t>(count))
            count = TEMP_FAILURE_RETRY(::write(mDescriptor, bytes + done, size - done));
        return count >= 0;
    }
    /// Closes it. False, with errno set, if that fails; false if it is not open.
    bool close() noexcept {
        const int descriptor = mDescriptor;
        mDescriptor = -1;
        return descriptor >= 0 && ::close(descriptor) == 0;
    }

private:
    int mDescriptor;
};

}  // namespace tarvos::core

#pragma once

#include <string>
#include <sys/stat.h>
#include <utility>

namespace tarvos::core {

/// A file descriptor that is closed with this object; negative for none.
class Descriptor {
public:
    explicit Descriptor(int descriptor = -1) noexcept : mDescriptor(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : mDescriptor(std::exchange(other.mDescriptor, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() { close(); }

    explicit operator bool() const noexcept { return mDescriptor >= 0; }
    int get() const noexcept { return mDescriptor; }
    /// False, with `errno` set, when what was written cannot be kept.
    bool close() noexcept;

private:
    int mDescriptor;
};

/// Opens the file at @p path, links followed, for reading, and says in @p status what it is. None, with `errno` set,
/// unless it is a regular file: what may block or act when it is opened (a pipe, a device) is left alone.
Descriptor openRegularFile(const std::string& path, struct stat& status) noexcept;

/// Reads up to @p count bytes from @p file to @p bytes; the number read, less than @p count only at the end of the
/// file, or -1 with `errno` set.
ssize_t readBytes(int file, void* bytes, std::size_t count) noexcept;

/// Writes all @p count bytes; false, with `errno` set, when that cannot be done.
bool writeBytes(int file, const void* bytes, std::size_t count) noexcept;

}  // namespace tarvos::core

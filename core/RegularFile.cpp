#include "core/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace tarvos::core {

bool Descriptor::close() noexcept {
    const int descriptor = std::exchange(mDescriptor, -1);
    return descriptor < 0 || ::close(descriptor) == 0;
}

Descriptor openRegularFile(const std::string& path, struct stat& status) noexcept {
    const auto refused = [&] {
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        return Descriptor();
    };
    if (path.find('\0') != std::string::npos) {
        errno = ENOENT;
        return Descriptor();
    }
    if (stat(path.c_str(), &status) != 0)
        return Descriptor();
    if (!S_ISREG(status.st_mode))
        return refused();
    // By now something else may have that name: it must not block, and is looked at once more.
    Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file || fstat(file.get(), &status) != 0)
        return Descriptor();
    return S_ISREG(status.st_mode) ? std::move(file) : refused();
}

ssize_t readBytes(int file, void* bytes, std::size_t count) noexcept {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t got = read(file, static_cast<char*>(bytes) + done, count - done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return static_cast<ssize_t>(done);
}

bool writeBytes(int file, const void* bytes, std::size_t count) noexcept {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t put = write(file, static_cast<const char*>(bytes) + done, count - done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0)
            return false;
        done += static_cast<std::size_t>(put);
    }
    return true;
}

}  // namespace tarvos::core

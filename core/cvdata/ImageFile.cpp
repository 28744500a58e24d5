#include "core/cvdata/ImageFile.h"

#include "core/RegularFile.h"
#include "core/Report.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <iostream>
#include <memory>
#include <new>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace tarvos::core::cvdata {

namespace {

using imagefiles::Outcome;

/// The private module, opened on first use and kept open.
class Module {
public:
    imagefiles::Decode* decode = nullptr;
    imagefiles::Encode* encode = nullptr;

    /// Throws `std::runtime_error` when it cannot be opened. The next call then tries again: descriptors may have been
    /// scarce.
    static const Module& instance() {
        static const Module module;
        return module;
    }

private:
    Module() {
        void* library = dlopen((ownDirectory() + "/" TARVOS_IMAGE_FILES).c_str(), RTLD_NOW | RTLD_LOCAL);
        if (library != nullptr) {
            decode = reinterpret_cast<imagefiles::Decode*>(dlsym(library, imagefiles::DECODE));
            encode = reinterpret_cast<imagefiles::Encode*>(dlsym(library, imagefiles::ENCODE));
        }
        if (library == nullptr || decode == nullptr || encode == nullptr) {
            const char* reason = dlerror();
            throw std::runtime_error(reason != nullptr ? reason : "unknown error");
        }
    }

    /// Where this library was loaded from: absolute, whatever the current directory was or is by now.
    static std::string ownDirectory() {
        Dl_info info{};
        void* self = nullptr;
        char directory[PATH_MAX] = "";
        static const char address = 0;
        if (dladdr1(&address, &info, &self, RTLD_DL_LINKMAP) == 0 || dlinfo(self, RTLD_DI_ORIGIN, directory) != 0)
            throw std::runtime_error("the library cannot tell where it is");
        return directory;
    }
};

/// Does @p work with the module; reports @p complaint unless it succeeds. Why there is no module is said once.
template <typename Work>
bool succeeds(const std::string& complaint, Work work) {
    std::string text = complaint + "\n";
    try {
        switch (work()) {
            case Outcome::DONE:
                return true;
            case Outcome::NO_MEMORY:
                throw std::bad_alloc();
            case Outcome::FAILED:
                break;
        }
    } catch (const std::runtime_error& error) {
        static std::atomic_flag told = ATOMIC_FLAG_INIT;
        if (!told.test_and_set())
            text += std::string("ERROR: Image files can neither be loaded nor saved: ") + error.what() + "\n";
    }
    try {
        report(std::cerr, text);
    } catch (const std::ios_base::failure&) {
        // The application has std::cerr throw, which is not for a constructor that promises not to.
    }
    return false;
}

/// The bytes of a file, as far as it goes while it is read.
struct Content {
    std::unique_ptr<unsigned char[]> bytes;
    std::size_t size;
};

/// Larger blocks the C library gives back in any case.
constexpr std::size_t MOST_SPARE = std::size_t{32} << 20;

/// None when the file cannot be read, is empty or is larger than OpenCV's decoders can be told.
Content contentOf(const Descriptor& file, off_t size) {
    if (size <= 0 || size > INT_MAX)
        return {nullptr, 0};
    // The GNU C library gives memory back to the system once twice its largest block lies free, which a file and an
    // image of the same size come to; every image would then fault its pages in anew. What is spare is never touched.
    const auto count = static_cast<std::size_t>(size);
    Content content{std::unique_ptr<unsigned char[]>(new unsigned char[count + std::min(count, MOST_SPARE)]), 0};
    const ssize_t got = readBytes(file.get(), content.bytes.get(), count);
    content.size = got > 0 ? static_cast<std::size_t>(got) : 0;
    return content;
}

/// Writes a file beside @p path, which takes its name when it is complete, or is gone.
bool replaceFile(const std::string& path, const unsigned char* bytes, std::size_t size) {
    struct stat status {};
    const bool exists = stat(path.c_str(), &status) == 0;
    if (path.find('\0') != std::string::npos || (exists && !S_ISREG(status.st_mode)))
        return false;
    static std::atomic<unsigned int> serial{0};
    std::string part;
    int opened = -1;
    do {
        part = path + "." + std::to_string(getpid()) + "-" + std::to_string(serial++) + ".part";
        opened = open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (opened < 0 && errno == EEXIST);
    Descriptor file(opened);
    if (!file)
        return false;
    if (writeBytes(file.get(), bytes, size) && (!exists || fchmod(file.get(), status.st_mode & 0777) == 0) &&
        file.close() && std::rename(part.c_str(), path.c_str()) == 0)
        return true;
    unlink(part.c_str());
    return false;
}

/// The ending of the last component of @p path, from its dot on.
std::string endingOf(const std::string& path) {
    const std::size_t dot = path.find_last_of("./");
    return dot == std::string::npos || path[dot] == '/' ? "" : path.substr(dot);
}

}  // namespace

bool readImageFile(const std::string& path, imagefiles::MakeRows* makeRows, void* image) {
    return succeeds("ERROR: Could not load image: " + path, [&] {
        struct stat status {};
        if (!openRegularFile(path, status))
            return Outcome::FAILED;
        const Module& module = Module::instance();  // which may need the last descriptor there is
        const Descriptor file = openRegularFile(path, status);
        const Content content = file ? contentOf(file, status.st_size) : Content{};
        if (content.size == 0)
            return Outcome::FAILED;
        return module.decode(file.get(), content.bytes.get(), content.size, makeRows, image);
    });
}

bool writeImageFile(const std::string& path, const IplImage* pixels, bool redFirst) {
    return succeeds("ERROR: Could not save image: " + path, [&] {
        struct Target {
            const std::string& path;
            bool written;
        } target{path, false};
        if (pixels == nullptr)
            return Outcome::FAILED;
        const Outcome outcome = Module::instance().encode(
            pixels, redFirst, endingOf(path).c_str(),
            [](void* taker, const unsigned char* bytes, std::size_t size) {
                auto& to = *static_cast<Target*>(taker);
                to.written = replaceFile(to.path, bytes, size);
            },
            &target);
        return outcome != Outcome::DONE || target.written ? outcome : Outcome::FAILED;
    });
}

}  // namespace tarvos::core::cvdata

#include <tarvos/core/FileDescriptor.h>
#include <tarvos/core/Report.h>
#include <tarvos/core/imagefiles/ImageFiles.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <new>
#include <strings.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tarvos::core::imagefiles {

namespace {

namespace fs = std::filesystem;

/// Opens the module in the folder that this library was loaded from or, if that is a link, in the folder of its target.
void* openModule() {
    static const char inThisLibrary = 0;
    Dl_info info{};
    void* self = nullptr;
    char origin[PATH_MAX] = "";
    if (dladdr1(&inThisLibrary, &info, &self, RTLD_DL_LINKMAP) == 0 || dlinfo(self, RTLD_DI_ORIGIN, origin) != 0)
        return nullptr;
    const fs::path library = fs::path(origin) / fs::path(info.dli_fname).filename();
    std::error_code ignored;
    for (const fs::path& path : {library, fs::weakly_canonical(library, ignored)})
        if (void* module = dlopen((path.parent_path() / TARVOS_IMAGE_FILES).c_str(), RTLD_NOW | RTLD_LOCAL))
            return module;
    return nullptr;
}

// Not function-local statics: their guard could deadlock with the dynamic loader. If two threads open the module, both
// get the same one.
std::atomic<const Module*> openedModule{nullptr};
std::atomic_flag reasonPrinted = ATOMIC_FLAG_INIT;

/// The module's functions. Null if the module is missing; the reason is reported once.
const Module* module() {
    if (const Module* functions = openedModule)
        return functions;
    void* library = openModule();
    const void* functions = library != nullptr ? dlsym(library, MODULE) : nullptr;
    if (functions == nullptr && !reasonPrinted.test_and_set()) {
        const char* reason = dlerror();
        report(std::cerr, std::string("ERROR: Image files can neither be loaded nor saved: ") +
                              (reason != nullptr ? reason : "the module cannot be found"));
    }
    return openedModule = static_cast<const Module*>(functions);
}

/// Whether OpenCV may be given the file at @p path. A pipe would block; on a damaged DICOM file the decoder exits.
bool isReadable(const std::string& path) {
    std::error_code ignored;
    if (path.find('\0') != std::string::npos || !fs::is_regular_file(path, ignored))
        return false;
    std::ifstream file(path, std::ios::binary);
    char head[132] = "";
    file.read(head, sizeof head);
    return file.is_open() && std::memcmp(head + 128, "DICM", 4) != 0;
}

/// Whether OpenCV encodes the format in memory. It writes others to a temporary file without noticing a full disk.
bool isEncodedInMemory(const std::string& extension) {
    static const char* const KNOWN[] = {".png",  ".jpg", ".jpeg", ".jpe", ".bmp", ".dib", ".tif", ".tiff",
                                        ".webp", ".pbm", ".pgm",  ".ppm", ".pnm", ".pxm", ".pam"};
    return std::any_of(std::begin(KNOWN), std::end(KNOWN),
                       [&](const char* each) { return strcasecmp(each, extension.c_str()) == 0; });
}

/// Writes a temporary file and renames it to @p path; removes it on failure and returns the reason. All names
/// are relative to the directory, so that the temporary one may be longer than the file's own.
std::string replaceFile(const fs::path& path, const std::vector<unsigned char>& bytes) {
    const std::string name = path.filename();
    const FileDescriptor folder(
        open(path.has_parent_path() ? path.parent_path().c_str() : ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (folder.get() < 0)
        return std::generic_category().message(errno);
    struct stat replaced {};
    const bool exists = fstatat(folder.get(), name.c_str(), &replaced, 0) == 0;
    if (exists && !S_ISREG(replaced.st_mode))
        return "the name belongs to something other than a regular file";
    static std::atomic<unsigned int> serial{0};
    std::string part;
    int created = -1;
    do {
        part = ".tarvos-" + std::to_string(getpid()) + "-" + std::to_string(serial++);
        created = openat(folder.get(), part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, exists ? 0600 : 0666);
    } while (created < 0 && errno == EEXIST);
    FileDescriptor file(created);
    if (created < 0)
        return std::generic_category().message(errno);
    // Where the file's group cannot be kept, no group gets access.
    const bool hasGroup = exists && fchown(created, static_cast<uid_t>(-1), replaced.st_gid) == 0;
    const mode_t mode = replaced.st_mode & (S_IRWXU | S_IRWXO | (hasGroup ? S_IRWXG : 0U));
    if ((!exists || fchmod(created, mode) == 0) &&
        file.write(reinterpret_cast<const char*>(bytes.data()), bytes.size()) && file.close() &&
        renameat(folder.get(), part.c_str(), folder.get(), name.c_str()) == 0)
        return "";
    const int error = errno;
    unlinkat(folder.get(), part.c_str(), 0);
    return std::generic_category().message(error);
}

/// The result of @p work; an empty one if it fails, unless for lack of memory.
template <typename Work>
auto resultOf(Work work) -> decltype(work()) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace

cv::Mat read(const std::string& path) {
    const Module* functions = isReadable(path) ? module() : nullptr;
    return functions != nullptr ? resultOf([&] { return functions->decode(path); }) : cv::Mat();
}

std::string write(const std::string& path, const cv::Mat& pixels, bool redFirst) {
    const std::string extension = fs::path(path).extension();
    if (path.find('\0') != std::string::npos)
        return "the name contains a NUL byte";
    if (!isEncodedInMemory(extension))
        return extension.empty() ? "the name has no extension"
                                 : extension + " is not the extension of a format that can be written";
    const Module* functions = module();
    if (functions == nullptr)
        return "the codecs cannot be loaded";
    const std::vector<unsigned char> bytes = resultOf([&] {
        cv::Mat blueFirst = redFirst ? pixels.clone() : pixels;
        const int exchange[] = {0, 2, 2, 0};
        if (redFirst)
            cv::mixChannels(&pixels, 1, &blueFirst, 1, exchange, 2);
        return functions->encode(blueFirst, extension);
    });
    return bytes.empty() ? "OpenCV does not write such pixels as " + extension : replaceFile(path, bytes);
}

}  // namespace tarvos::core::imagefiles

#include "core/imagefiles/Radiance.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace tarvos::core::imagefiles {

namespace {

/// The longest piece of a header line that OpenCV reads at once.
constexpr std::size_t LINE_PIECE = 127;
/// OpenCV's limits for any image (CV_IO_MAX_IMAGE_WIDTH and so on).
constexpr std::int64_t MAX_EXTENT = std::int64_t{1} << 20;
constexpr std::int64_t MAX_PIXELS = std::int64_t{1} << 30;

class Reader {
public:
    Reader(const unsigned char* bytes, std::size_t size) : mNext(bytes), mEnd(bytes + size) {}

    /// The next piece of a line, its newline included, as `fgets` cuts them and C strings show them.
    bool line(std::string& piece) {
        const std::size_t most = std::min(left(), LINE_PIECE);
        if (most == 0)
            return false;
        const void* newline = std::memchr(mNext, '\n', most);
        const unsigned char* end = newline != nullptr ? static_cast<const unsigned char*>(newline) + 1 : mNext + most;
        piece.assign(mNext, end);
        piece.resize(std::strlen(piece.c_str()));
        mNext = end;
        return true;
    }

    bool header(int& width, int& height) {
        std::string piece;
        bool hasFormat = false;
        if (!line(piece))
            return false;
        do {
            if (!line(piece))
                return false;
            hasFormat = hasFormat || piece == "FORMAT=32-bit_rle_rgbe\n";
        } while (piece.empty() || piece.front() != '\n');
        return hasFormat && line(piece) && std::sscanf(piece.c_str(), "-Y %d +X %d", &height, &width) == 2;
    }

    /// One channel of a run-length encoded row.
    bool channel(std::int64_t width) {
        while (width > 0) {
            if (left() < 2)
                return false;
            const bool isRun = mNext[0] > 128;
            const int count = isRun ? mNext[0] - 128 : mNext[0];
            if (count == 0 || count > width || !pass(isRun ? 2 : std::int64_t{1} + count))
                return false;
            width -= count;
        }
        return true;
    }

    bool rows(std::int64_t width, std::int64_t height) {
        if (width < 8 || width > 0x7FFF)
            return pass(4 * width * height);
        for (; height > 0; --height) {
            if (left() < 4)
                return false;
            if (mNext[0] != 2 || mNext[1] != 2 || (mNext[2] & 0x80) != 0)
                return pass(4 * width * height);  // from here on, pixels as they are
            if ((mNext[2] << 8 | mNext[3]) != width)
                return false;
            mNext += 4;
            for (int i = 0; i < 4; ++i)
                if (!channel(width))
                    return false;
        }
        return true;
    }

private:
    const unsigned char* mNext;
    const unsigned char* mEnd;

    std::size_t left() const { return static_cast<std::size_t>(mEnd - mNext); }
    bool pass(std::int64_t count) {
        if (static_cast<std::size_t>(count) > left())
            return false;
        mNext += count;
        return true;
    }
};

}  // namespace

bool isRadiance(const unsigned char* bytes, std::size_t size) {
    return size >= 2 && bytes[0] == '#' && bytes[1] == '?';
}

bool isWholeRadiance(const unsigned char* bytes, std::size_t size) {
    Reader reader(bytes, size);
    int width = 0;
    int height = 0;
    return reader.header(width, height) && width > 0 && height > 0 && width <= MAX_EXTENT && height <= MAX_EXTENT &&
           std::int64_t{width} * height <= MAX_PIXELS && reader.rows(width, height);
}

}  // namespace tarvos::core::imagefiles

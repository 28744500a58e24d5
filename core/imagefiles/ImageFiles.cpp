#include "core/imagefiles/ImageFiles.h"

#include "core/Export.h"
#include "core/imagefiles/Radiance.h"

#include <opencv2/core/core_c.h>
#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace tarvos::core::imagefiles {

namespace {

using namespace std::string_view_literals;

constexpr int FLAGS = cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION;

struct Signature {
    std::size_t at;
    std::string_view text;
};

/// What files hold whose decoders read from memory. The others would have OpenCV write the bytes to a file in the
/// temporary directory first; they are read from the open file instead.
constexpr Signature FROM_MEMORY[] = {{0, "\x89PNG"sv},
                                     {0, "\xFF\xD8\xFF"sv},
                                     {0, "BM"sv},
                                     {0, "II*\0"sv},
                                     {0, "MM\0*"sv},
                                     {0, "II+\0"sv},
                                     {0, "MM\0+"sv},
                                     {8, "WEBP"sv},
                                     {4, "jP  "sv},
                                     {0, "P1"sv},
                                     {0, "P2"sv},
                                     {0, "P3"sv},
                                     {0, "P4"sv},
                                     {0, "P5"sv},
                                     {0, "P6"sv},
                                     {0, "P7"sv},
                                     {0, "\xFF\x4F\xFF\x51"sv}};

/// Refused: OpenCV's decoder of it, GDCM, ends the process where a file is damaged.
constexpr Signature DICOM{128, "DICM"sv};

bool holds(const unsigned char* bytes, std::size_t size, const Signature& signature) {
    return size >= signature.at + signature.text.size() &&
           std::memcmp(bytes + signature.at, signature.text.data(), signature.text.size()) == 0;
}

bool isDecodedFromMemory(const unsigned char* bytes, std::size_t size) {
    return std::any_of(std::begin(FROM_MEMORY), std::end(FROM_MEMORY),
                       [&](const Signature& signature) { return holds(bytes, size, signature); });
}

/// The endings whose encoders write to memory; the others write to a file without looking whether the disk is full.
bool isEncodedToMemory(const std::string& ending) {
    static const char* const ENDINGS[] = {".png",  ".jpg", ".jpeg", ".jpe", ".bmp", ".dib", ".tif", ".tiff",
                                          ".webp", ".pbm", ".pgm",  ".ppm", ".pnm", ".pxm", ".pam", ".jp2"};
    std::string lower = ending;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return std::find(std::begin(ENDINGS), std::end(ENDINGS), lower) != std::end(ENDINGS);
}

/// Gives a `cv::Mat` the rows of an image to live in.
class RowsOfImage : public cv::MatAllocator {
public:
    RowsOfImage(MakeRows* makeRows, void* image) : mMakeRows(makeRows), mImage(image) {}

    /// What became of the last make().
    Outcome outcome() const { return mOutcome; }

    Rows make(int width, int height) const {
        Rows rows{};
        mOutcome = mMakeRows(mImage, width, height, &rows);
        return rows;
    }

    /// OpenCV takes memory of its own where this throws.
    cv::UMatData* allocate(int dims, const int* sizes, int type, void* data, std::size_t* step,
                           cv::AccessFlag /*flags*/, cv::UMatUsageFlags /*usage*/) const override {
        if (dims != 2 || type != CV_8UC3 || data != nullptr)
            throw std::bad_alloc();
        auto storage = std::make_unique<cv::UMatData>(this);
        const Rows rows = make(sizes[1], sizes[0]);
        if (mOutcome != Outcome::DONE)
            throw std::bad_alloc();
        step[0] = rows.step;
        step[1] = 3;
        storage->data = storage->origdata = rows.first;
        storage->size = rows.step * static_cast<std::size_t>(sizes[0]);
        return storage.release();
    }
    bool allocate(cv::UMatData* storage, cv::AccessFlag /*flags*/, cv::UMatUsageFlags /*usage*/) const override {
        return storage != nullptr;
    }
    void deallocate(cv::UMatData* storage) const override { delete storage; }

private:
    MakeRows* mMakeRows;
    void* mImage;
    mutable Outcome mOutcome = Outcome::DONE;
};

Outcome decode(int file, const unsigned char* bytes, std::size_t size, RowsOfImage image) {
    cv::Mat pixels;
    if (holds(bytes, size, DICOM))
        return Outcome::FAILED;
    if (isDecodedFromMemory(bytes, size)) {
        pixels.allocator = &image;
        cv::imdecode(cv::Mat(1, static_cast<int>(size), CV_8U, const_cast<unsigned char*>(bytes)), FLAGS, &pixels);
    } else if (!isRadiance(bytes, size) || isWholeRadiance(bytes, size)) {
        pixels = cv::imread("/proc/self/fd/" + std::to_string(file), FLAGS);
    }
    if (image.outcome() != Outcome::DONE)
        return image.outcome();
    if (pixels.empty())
        return Outcome::FAILED;
    if (pixels.u->currAllocator != &image) {
        const Rows rows = image.make(pixels.cols, pixels.rows);
        if (image.outcome() == Outcome::DONE)
            pixels.copyTo(cv::Mat(pixels.size(), CV_8UC3, rows.first, rows.step));
    }
    return image.outcome();
}

/// Keeps OpenCV's exceptions on this side.
template <typename Work>
Outcome outcomeOf(Work work) {
    try {
        return work();
    } catch (const cv::Exception& error) {
        return error.code == cv::Error::StsNoMem ? Outcome::NO_MEMORY : Outcome::FAILED;
    } catch (const std::bad_alloc&) {
        return Outcome::NO_MEMORY;
    } catch (...) {
        return Outcome::FAILED;
    }
}

}  // namespace

extern "C" TARVOS_CORE_EXPORT Outcome tarvosDecodeImage(int file, const unsigned char* bytes, std::size_t size,
                                                        MakeRows* makeRows, void* image) {
    return outcomeOf([&] { return decode(file, bytes, size, RowsOfImage(makeRows, image)); });
}

extern "C" TARVOS_CORE_EXPORT Outcome tarvosEncodeImage(const IplImage* image, bool redFirst, const char* ending,
                                                        TakeBytes* take, void* taker) {
    return outcomeOf([&] {
        cv::Mat pixels = cv::cvarrToMat(image);
        if (redFirst) {
            const int exchange[] = {0, 2, 1, 1, 2, 0, 3, 3};
            cv::Mat blueFirst(pixels.size(), pixels.type());
            cv::mixChannels(&pixels, 1, &blueFirst, 1, exchange, static_cast<std::size_t>(pixels.channels()));
            pixels = blueFirst;
        }
        std::vector<unsigned char> bytes;
        if (!isEncodedToMemory(ending) || !cv::imencode(ending, pixels, bytes) || bytes.empty())
            return Outcome::FAILED;
        take(taker, bytes.data(), bytes.size());
        return Outcome::DONE;
    });
}

}  // namespace tarvos::core::imagefiles

#pragma once

#include <opencv2/core/types_c.h>

#include <cstddef>

/// What the core library asks of its private module for image files. The module brings in OpenCV's codecs and the more
/// than a hundred libraries behind them, so that only programs that load or save an image pay for them.
namespace tarvos::core::imagefiles {

enum class Outcome { DONE, FAILED, NO_MEMORY };

/// The rows of an image, `step` bytes apart.
struct Rows {
    unsigned char* first;
    std::size_t step;
};

/// Makes @p image ready for 8-bit BGR pixels of the size given and tells its @p rows. Never throws.
using MakeRows = Outcome(void* image, int width, int height, Rows* rows);
/// Decodes an image file to 8-bit BGR, the pixels as stored (no rotation by EXIF), into rows that @p makeRows hands out
/// for @p image. The file is given twice: its @p size @p bytes, and open as @p file.
using Decode = Outcome(int file, const unsigned char* bytes, std::size_t size, MakeRows* makeRows, void* image);

/// Takes the bytes of an encoded image. May throw `std::bad_alloc`, of which the module makes NO_MEMORY.
using TakeBytes = void(void* taker, const unsigned char* bytes, std::size_t size);
/// Encodes @p image, whose channels start with red instead of blue if so said, in the format that @p ending (such as
/// ".png") stands for.
using Encode = Outcome(const IplImage* image, bool redFirst, const char* ending, TakeBytes* take, void* taker);

/// The names of the two in the module.
constexpr const char* DECODE = "tarvosDecodeImage";
constexpr const char* ENCODE = "tarvosEncodeImage";

}  // namespace tarvos::core::imagefiles

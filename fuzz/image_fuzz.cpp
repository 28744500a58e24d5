/// @file
/// Programs over a few images and mosaics, beside a model that keeps the bytes of each buffer in a vector.

#include "Input.h"

#include <opencv2/core/core_c.h>
#include <tarvos/core/cvdata/TiledImage.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <numeric>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::TiledImage;

constexpr Image::BitsPerChannel BITS[] = {Image::BITS_8U,  Image::BITS_8S,  Image::BITS_16U, Image::BITS_16S,
                                          Image::BITS_32S, Image::BITS_32F, Image::BITS_64F};  // in OpenCV's order
constexpr int CHANNELS[] = {1, 3, 3, 4, 4, 3};                                                 // of each layout

/// How an image should be laid out, and what should be in its buffer, which may be larger than the rows need.
struct Model {
    bool hasBuffer = false;
    int width = 0, height = 0, layout = Image::CHANNELS_RGB, depth = 0, align = 4, step = 0;
    std::vector<unsigned char> buffer{};

    int area() const { return width * height; }
    int channels() const { return CHANNELS[layout]; }
    int row() const { return width * channels() * CV_ELEM_SIZE1(depth); }
    /// OpenCV states a single row without padding.
    int statedStep() const { return height > 1 ? step : row(); }
    auto geometry() const { return std::tuple(width, height, layout, depth, align); }
    std::size_t size() const { return static_cast<std::size_t>(step * height); }
    void layOutByRule() {
        step = row() + (align > 0 ? (align - width * channels() % align) % align : 0);
        buffer.resize(size());
    }
    void fill(int seed) { std::iota(buffer.begin(), buffer.end(), static_cast<unsigned char>(seed)); }

    /// Becomes what @p source is; the buffer stays if it can.
    void assign(const Model& source) {
        Model made = source;
        made.layOutByRule();
        const bool staysInBuffer = geometry() == made.geometry() && made.size() <= buffer.size();
        if (staysInBuffer) {
            made.buffer = buffer;
            made.hasBuffer = hasBuffer;
        } else {
            made.hasBuffer = true;
        }
        std::fill_n(made.buffer.begin(), made.size(), static_cast<unsigned char>(0));
        if (made.step == source.step)
            std::copy_n(source.buffer.begin(), std::min(made.size(), source.buffer.size()), made.buffer.begin());
        else
            made.paste(source, made.buffer.begin());
        *this = made;
    }
    void paste(const Model& source, std::vector<unsigned char>::iterator to) const {
        for (int i = 0; i < source.height; ++i)
            std::copy_n(source.buffer.begin() + i * source.step, source.row(), to + i * step);
    }
    /// What is read from @p header.
    void describe(const IplImage& header) {
        const bool isBgr = std::memcmp(header.channelSeq, "BGR", 3) == 0;
        std::tie(width, height, align, step) = std::tuple(header.width, header.height, header.align, header.widthStep);
        layout = header.nChannels == 1         ? Image::CHANNELS_GRAY
                 : header.nChannels == 4       ? (isBgr ? Image::CHANNELS_BGRA : Image::CHANNELS_RGBA)
                 : header.channelSeq[0] == 'R' ? Image::CHANNELS_RGB
                                               : Image::CHANNELS_BGR;
    }
    /// Whether the stride is OpenCV's: with any other, the padding behind the last row may be a parent's.
    bool isWhole() const {
        const int unit = std::max(align, 1);
        return step == (row() + unit - 1) / unit * unit;
    }
    /// What is made from @p header over these bytes, which are its own or only described by it.
    Model copied(const IplImage& header, bool isOwn) const {
        Model made = *this;
        made.describe(header);
        made.buffer.resize(made.size());
        if (!isOwn && !made.isWhole())
            std::fill_n(made.buffer.rbegin(), made.step - made.row(), static_cast<unsigned char>(0));
        return made;
    }
};

struct Slot {
    std::unique_ptr<Image> image = std::make_unique<Image>();
    Model model;
    long time = 0;

    std::string text() const {
        std::ostringstream text;
        text << model.width << "x" << model.height << ", layout " << model.layout << ", depth " << model.depth
             << ", align " << model.align << ", step " << model.step << ", " << model.buffer.size() << " bytes";
        return text.str();
    }
    void check() const {
        const IplImage* header = image->iplImage();
        FUZZ_CHECK((image->imageBuffer() != nullptr) == model.hasBuffer && (header != nullptr) == model.hasBuffer);
        FUZZ_CHECK(image->empty() == (model.area() == 0));
        FUZZ_CHECK(image->getTimeStamp() == time);
        FUZZ_CHECK(std::equal(model.buffer.begin(), model.buffer.end(), image->imageBuffer()));
        FUZZ_CHECK(image->width() == model.width && image->height() == model.height);
        FUZZ_CHECK(image->widthStep() == model.step);
        FUZZ_CHECK(image->channels() == model.layout && image->bitsPerChannel() == BITS[model.depth]);
        FUZZ_CHECK(image->nofChannels() == model.channels());
        if (header == nullptr)
            return;
        FUZZ_CHECK(header->width == model.width && header->height == model.height);
        FUZZ_CHECK(header->nChannels == model.channels() && header->depth == cvIplDepth(model.depth));
        FUZZ_CHECK(header->widthStep == model.statedStep() && header->imageSize == model.statedStep() * model.height);
        FUZZ_CHECK(header->imageData == reinterpret_cast<char*>(image->imageBuffer()));
    }
    void fill(Input& input) {
        model.fill(input.byte());
        std::copy(model.buffer.begin(), model.buffer.end(), image->imageBuffer());
        image->setTimeStamp(time = input.byte());
    }
    void resize(Input& input, bool isNew) {
        const int depth = isNew ? input.below(7) : model.depth;
        model = {true, input.below(9), input.below(6), input.below(6), depth, isNew ? 4 : model.align};
        model.layOutByRule();
        const auto layout = static_cast<Image::ColorChannels>(model.layout);
        image->setChannels(layout);
        if (isNew)
            image = std::make_unique<Image>(model.width, model.height, layout, BITS[depth]);
        else
            image->resizeMemory(model.width, model.height);
        fill(input);
    }
    void makeFromHeader(Input& input) {
        static const char* const SEQUENCES[] = {"BGRA", "RGBA", "YUVA", "BRGA", "GRAY"};
        model = {true, 1 + input.below(8), 1 + input.below(5), input.below(6), input.below(7)};
        IplImage header;
        cvInitImageHeader(&header, cvSize(model.width, model.height), cvIplDepth(model.depth), model.channels());
        std::memcpy(header.channelSeq, SEQUENCES[input.below(5)], 4);
        header.align = 4 * input.below(3);
        header.widthStep = model.step = model.row() + input.below(12);
        model.align = header.align;
        const int lastRow = model.isWhole() ? header.widthStep : model.row();
        model.buffer.resize(static_cast<std::size_t>(header.widthStep * (model.height - 1) + lastRow));
        model.fill(input.byte());
        header.imageData = reinterpret_cast<char*>(model.buffer.data());
        image = std::make_unique<Image>(&header);
        model = model.copied(header, false);
        time = 0;
    }
    /// Another description of the same buffer, if it has room for it.
    void describe(Input& input) {
        Model wanted = model;
        IplImage header = *image->iplImage();
        header.width = wanted.width = input.below(9);
        header.height = input.below(6);
        header.widthStep = (header.height == 1 ? 0 : wanted.row()) + input.below(12);
        wanted.describe(header);
        if (wanted.statedStep() * wanted.height > static_cast<int>(model.buffer.size()))
            return;
        image->updateFromOpencvHeader(&header);
        image->updateOpencvHeader();
        model = wanted;
    }
};

void assign(Slot& target, const Slot& source) {
    const IplImage* header = target.image->iplImage();
    const unsigned char* buffer = target.image->imageBuffer();
    *target.image = *source.image;
    if (&target == &source)
        return;
    const std::size_t previousSize = target.model.buffer.size();
    const bool staysInBuffer = target.model.geometry() == source.model.geometry();
    target.model.assign(source.model);
    FUZZ_CHECK(!staysInBuffer || target.model.size() > previousSize || target.image->imageBuffer() == buffer);
    FUZZ_CHECK(header == nullptr || target.image->iplImage() == header);
}

void copy(Slot& target, const Slot& source, bool isCloning) {
    Model made = source.model.copied(*source.image->iplImage(), true);
    target = {std::unique_ptr<Image>(isCloning ? source.image->clone() : new Image(*source.image)), std::move(made)};
}

void moveConstruct(Slot& target, Slot& source) {
    const unsigned char* buffer = source.image->imageBuffer();
    Slot made{std::make_unique<Image>(std::move(*source.image)), std::exchange(source.model, {}), source.time};
    FUZZ_CHECK(made.image->imageBuffer() == buffer);
    target = std::move(made);
}

/// A mosaic in @p target, some of whose cells are @p cell's image.
void tile(Input& input, Slot& target, const Slot& cell) {
    const Model& one = cell.model;
    const auto size = [](int count) { return static_cast<std::size_t>(count); };
    const int rows = 1 + input.below(3);
    const int cols = 1 + input.below(3);
    auto mosaic = std::make_unique<TiledImage>(size(rows), size(cols), size(one.width), size(one.height),
                                               cell.image->channels(), cell.image->bitsPerChannel());
    TiledImage* tiled = mosaic.get();
    Slot made{std::move(mosaic), {true, one.width * cols, one.height * rows, one.layout, one.depth}};
    made.model.layOutByRule();
    made.fill(input);
    for (int cells = input.below(rows * cols + 1); cells > 0; --cells) {
        const int row = input.below(rows);
        const int col = input.below(cols);
        tiled->setCellImage(size(row), size(col), cell.image.get());
        made.model.paste(one, made.model.buffer.begin() + row * one.height * made.model.step + col * one.row());
    }
    target = std::move(made);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const char* const OPERATIONS[] = {"new size", "resize",    "from header", "describe anew",
                                             "fill",     "mosaic of", "move from",   "clone of",
                                             "copy of",  "assign",    "assign",      "assign"};
    Input input(bytes, size);
    Slot slots[3];
    while (!input.atEnd()) {
        const int operation = input.below(12);
        const int to = input.below(3);
        const int from = input.below(3);
        Slot& target = slots[to];
        Slot& source = slots[from];
        if (operation < 2)
            target.resize(input, operation == 0);
        else if (operation == 2)
            target.makeFromHeader(input);
        else if (operation == 3 && target.model.hasBuffer)
            target.describe(input);
        else if (operation == 4)
            target.fill(input);
        else if (operation == 5 && source.model.area() > 0 && source.model.area() < 300)
            tile(input, target, source);
        else if (operation == 6)
            moveConstruct(target, source);
        else if (operation < 9 && source.model.hasBuffer)
            copy(target, source, operation == 7);
        else
            assign(target, source);
        Input::note(OPERATIONS[operation], " ", from, " -> ", to, ": ", target.text());
        for (const Slot& slot : slots)
            slot.check();
    }
    return 0;
}

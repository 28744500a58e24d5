#pragma once

#include "core/cvdata/Image.h"

#include <vector>

/// The bytes of the pixels, row after row, without what fills rows up.
inline std::vector<unsigned char> pixelsOf(const IplImage& header) {
    std::vector<unsigned char> pixels;
    for (int row = 0; row < header.height; ++row) {
        const char* first = header.imageData + static_cast<std::ptrdiff_t>(row) * header.widthStep;
        pixels.insert(pixels.end(), first, first + header.width * header.nChannels * (header.depth & 0xFF) / 8);
    }
    return pixels;
}

/// All bytes that the header describes, fill included.
inline std::vector<char> bytesOf(const tarvos::core::cvdata::Image& image) {
    const IplImage* header = image.iplImage();
    return {header->imageData, header->imageData + header->imageSize};
}

/// Gives every byte, fill included, a value that depends on its place.
inline void paint(IplImage& header) {
    for (int i = 0; i < header.imageSize; ++i)
        header.imageData[i] = static_cast<char>(1 + i % 251);
}

#pragma once

#include "core/cvdata/Image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

inline int bytesPerRow(const IplImage& header) {
    return header.width * header.nChannels * (header.depth & 0xFF) / 8;
}

/// The bytes of the pixels, row after row, without what fills rows up.
inline std::vector<unsigned char> pixelsOf(const IplImage& header) {
    std::vector<unsigned char> pixels;
    for (int row = 0; row < header.height; ++row) {
        const char* first = header.imageData + static_cast<std::ptrdiff_t>(row) * header.widthStep;
        pixels.insert(pixels.end(), first, first + bytesPerRow(header));
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

/// Fields, header and buffer tell one story, and all of the buffer can be written (a sanitizer or valgrind watches).
inline void expectSound(const tarvos::core::cvdata::Image& image) {
    const IplImage* header = image.iplImage();
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(header->width, image.width());
    EXPECT_EQ(header->height, image.height());
    EXPECT_EQ(header->nChannels, image.nofChannels());
    EXPECT_EQ(header->depth & 0xFF, std::abs(image.bitsPerChannel()));
    EXPECT_EQ(header->imageData, reinterpret_cast<char*>(image.imageBuffer()));
    EXPECT_GE(header->widthStep, bytesPerRow(*header));
    const std::vector<char> content = bytesOf(image);
    std::memset(header->imageData, 0x5A, content.size());
    std::copy(content.begin(), content.end(), header->imageData);
}

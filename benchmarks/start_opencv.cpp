/// @file
/// A program that only uses OpenCV's core; see start_benchmark.

#include <opencv2/core.hpp>

int main() {
    return cv::Mat(1, 1, CV_8U).empty() ? 1 : 0;
}

#include "Plot.h"

#include <opencv2/imgproc.hpp>
#include <opencv2/plot.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <algorithm>
#include <numeric>

namespace skin_tracker {

namespace {

constexpr int WIDTH = 1280;
constexpr int HEIGHT = 300;
constexpr int LINES = 10;  ///< of the grid

const cv::Scalar WHITE(255, 255, 255);
const cv::Scalar ORANGE(170, 220, 255);
const cv::Scalar LIGHT_GREY(225, 225, 225);
const cv::Scalar GREY(200, 200, 200);
const cv::Scalar BLUE(255, 64, 0);
const cv::Scalar BLACK(0, 0, 0);

void write(cv::Mat& picture, const std::string& text, const cv::Point& place) {
    cv::putText(picture, text, place, cv::FONT_HERSHEY_SIMPLEX, 0.4, BLACK, 1, cv::LINE_AA);
}

}  // namespace

void Plot::add(double time, const Tracker& tracker, const cv::Size& size) {
    mSize = size;
    mTimes.push_back(time);
    mShades.push_back(tracker.found() ? WHITE : tracker.tracking() ? ORANGE : GREY);
    if (!tracker.tracking())
        return;
    mTracked.push_back(time);
    mX.push_back(tracker.motion().centre().x);
    mY.push_back(tracker.motion().centre().y);
    mSpeed.push_back(cv::norm(tracker.motion().velocity()));
}

tarvos::core::cvdata::Image Plot::draw() const {
    const double fastest =
        std::accumulate(mSpeed.begin(), mSpeed.end(), 1.0, [](auto a, auto b) { return std::max(a, b); });
    const cv::Mat x = curve("x of the centre in pixels; orange: predicted, grey: no hand", mX, mSize.width, false);
    const cv::Mat y = curve("y of the centre in pixels, downward", mY, mSize.height, true);
    const cv::Mat speed = curve("speed in pixels a second", mSpeed, fastest, false);
    cv::Mat picture;
    cv::vconcat(std::vector{x, y, speed}, picture);
    return tarvos::core::cvdata::imageOf(picture);
}

/// @p values from 0 to @p highest over the time in seconds.
cv::Mat Plot::curve(const std::string& title, const std::vector<double>& values, double highest,
                    bool isDownward) const {
    const double first = mTimes.front();
    const double length = std::max(mTimes.back() - first, 1e-3);
    // OpenCV's plot has at least one point; where there is none it lies outside.
    const std::vector<double> none{first - 1.0};
    const auto plot = cv::plot::Plot2d::create(values.empty() ? none : mTracked, values.empty() ? none : values);
    plot->setPlotSize(WIDTH, HEIGHT);
    plot->setMinX(first);
    plot->setMaxX(first + length);
    plot->setMinY(0.0);
    plot->setMaxY(highest);
    plot->setInvertOrientation(!isDownward);
    plot->setNeedPlotLine(false);
    plot->setShowText(false);
    plot->setGridLinesNumber(LINES);
    plot->setPlotBackgroundColor(WHITE);
    plot->setPlotGridColor(LIGHT_GREY);
    plot->setPlotAxisColor(BLACK);
    plot->setPlotLineColor(BLUE);
    cv::Mat picture;
    plot->render(picture);

    const auto columnOf = [&](double time) { return cvRound((time - first) / length * (WIDTH - 1)); };
    for (std::size_t i = 0; i < mTimes.size(); ++i) {
        const double end = mTimes[std::min(i + 1, mTimes.size() - 1)];
        cv::Mat columns = picture.colRange(columnOf(mTimes[i]), columnOf(end) + 1);
        cv::min(columns, mShades[i], columns);
    }
    for (int i = 1; i < LINES; ++i) {
        const double value = highest * (isDownward ? i : LINES - i) / LINES;
        write(picture, cv::format("%.0f", value), {4, i * HEIGHT / LINES + 4});
        write(picture, cv::format("%.1f s", first + i * length / LINES), {i * WIDTH / LINES - 12, HEIGHT - 6});
    }
    write(picture, title, {60, 16});
    return picture;
}

}  // namespace skin_tracker

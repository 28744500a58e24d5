/// @file
/// What the page on pitfalls calls right, a function for each part of it.

#include <Eigen/LU>
#include <tarvos/core/Exception.h>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/TiledImage.h>
#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/core/parser/CmdLineParser.h>
#include <tarvos/core/trackingdata/State.h>
#include <tarvos/core/util/Filesystem.h>
#include <tarvos/math/EigenMap.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <vector>

using namespace tarvos::core::cvdata;
using tarvos::core::State;
using tarvos::math::Matrix;
using tarvos::math::SquareMatrix;
using tarvos::math::Vector;

namespace {

/// Ends the program if @p isRight is false.
void check(bool isRight, const char* what) {
    if (!isRight) {
        std::cerr << "not so: " << what << std::endl;
        std::exit(1);
    }
}

void use(const cv::Mat& pixels) {
    check(cv::countNonZero(pixels.reshape(1)) > 0, "the view has the pixels of the other image");
}
void use(int frames) {
    check(frames == 12, "the option is a number");
}

void images() {
    const cv::Mat red(4, 6, CV_8UC3, cv::Scalar(0, 0, 255));
    {
        check(imageOf(red).save("a.png"), "a temporary may be saved");
        Image a("a.png");
        cv::Mat m = matView(a);
        use(m);
    }
    {
        Image a = imageOf(cv::Mat::zeros(4, 6, CV_8UC3));
        const Image other = imageOf(red);
        a = other;
        cv::Mat m = matView(a);
        use(m);
    }
    {
        const cv::Mat& m = red;
        Image a = imageOf(m);
        check(a.width() == 6 && a.height() == 4, "an image of a matrix has its size");
    }
    {
        const Image rgb(6, 4, Image::CHANNELS_RGB, Image::BITS_8U);
        Image copy(rgb);
        check(copy.channels() == Image::CHANNELS_BGR, "a copy loses the layout");
        Image b;
        b = rgb;
        check(b.channels() == Image::CHANNELS_RGB, "an assignment keeps the layout");
        b.setChannels(Image::CHANNELS_RGB);
    }
    {
        std::vector<Image> frames;
        const Image frame = imageOf(red);
        const long t = 40;
        frames.push_back(frame);
        frames.back().setTimeStamp(t);
        check(frames.back().getTimeStamp() == 40, "the copy has a time stamp of its own");
    }
    {
        Image a = imageOf(cv::Mat(4, 3, CV_32F));
        matView(a) *= 2;
        check(reinterpret_cast<float*>(a.row(1)) == matView(a).ptr<float>(1),
              "a row begins where the view's does");
    }
    {
        TiledImage mosaic(1, 2, 6, 4, Image::CHANNELS_BGR, Image::BITS_8U);
        Image cell = imageOf(red);
        const std::size_t row = 0, col = 1;
        mosaic.setCellImage(row, col, &cell);
        check(matView(mosaic).at<cv::Vec3b>(3, 11)[2] == 255, "the cell has the image's pixels");
    }
}

struct Box : VectorPose {
    Box() : VectorPose(4) {}
    Box* clone() const override { return new Box(*this); }
};

/// A pose whose data is computed when it is read.
struct Lazy : VectorPose {
    Lazy() : VectorPose(1) { mUpdateFlag = 0; }
    Lazy* clone() const override { return new Lazy(*this); }
    void updateData() override {
        (*mData)[0] = mX;
        mUpdateFlag = 1;
    }
    double mX = 7;
};

void states() {
    Box pose;
    const Vector start = Vector::of(1, 2, 3, 4);
    pose.setData(start);
    State s(pose, 2);
    s.setPoseData(start);
    check(dynamic_cast<Box*>(s.pose()) != nullptr, "the state has a pose of the class");
    {
        Vector v(static_cast<unsigned int>(s.stateDimension()));
        s.getStateData(v);
        check(v[3] == 4, "the state has the pose that was set");
    }
    State other(pose, 2);
    other.setTimeStamp(3);
    s = other;
    check(s.getTimeStamp() == 3 && s.getPoseData()[0] == 0, "an assignment copies time and pose");
    Lazy lazy;
    check(lazy.currentData()[0] == 7 && lazy.getUpdateFlag() == 1,
          "reading brings the data up to date");
}

void features() {
    Vector v(3);
    v[2] = 1;
    SquareMatrix c(3);
    tarvos::math::eigenMap(c).setIdentity();
    c(0, 1) = c(1, 0) = 0.5;
    GM gm(3);
    gm.mCovariance = c;
    gm.mCovarianceInverse = c.invert(Matrix::INVERSION_LU);
    gm.mDeterminant = static_cast<float>(tarvos::math::eigenMap(c).determinant());
    check(gm.mDeterminant == 0.75F, "the determinant is the covariance's");
}

void services() {
    const char* words[] = {"app", "-frames", "12"};
    tarvos::core::parser::CmdLineParser parser(3, const_cast<char**>(words)), &p = parser;
    parser.addOption("frames", "how many", "1", true);
    if (!p.unknownWords().empty())
        std::cerr << "unknown: " << p.unknownWords().front() << std::endl;
    p.parse();
    if (auto n = parser.value<int>("frames"))
        use(*n);
    try {
        tarvos::core::util::Filesystem::cp("missing", "copy");
    } catch (const tarvos::core::Exception&) {
    } catch (const std::exception& e) {
        std::cerr << e.what();
    }
}

}  // namespace

int main() {
    images();
    states();
    features();
    services();
}

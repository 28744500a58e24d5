/// @file
/// What a user of the library waits for, each operation beside the same done without the library.

#include "Compare.h"

#include <Eigen/Dense>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/TiledImage.h>
#include <tarvos/core/cvdata/features/Blobs.h>
#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/core/cvdata/features/ColourHist2d.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/core/parser/CmdLineParser.h>
#include <tarvos/core/trackingdata/State.h>
#include <tarvos/core/util/Filesystem.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace tarvos::core;
using namespace tarvos::core::cvdata;
using Eigen::VectorXd;
using tarvos::math::Vector;
namespace fs = std::filesystem;

void addImages() {
    const auto image = std::make_shared<Image>(640, 480, Image::CHANNELS_BGR, Image::BITS_8U);
    const auto target = std::make_shared<Image>(*image);
    const cv::Mat mat = matView(*image).clone();
    cv::Mat matTarget = mat.clone();
    compare(
        "Image assignment 640x480", "cv::Mat::copyTo", [=] { return &(*target = *image); },
        [=]() mutable {
            mat.copyTo(matTarget);
            return matTarget.data;
        });
    compare(
        "Image clone 640x480", "cv::Mat::clone", [=] { return std::unique_ptr<Image>(image->clone()); },
        [=] { return mat.clone(); });

    const auto mosaic = std::make_shared<TiledImage>(4, 4, 160, 120, Image::CHANNELS_BGR, Image::BITS_8U);
    const auto cell = std::make_shared<Image>(160, 120, Image::CHANNELS_BGR, Image::BITS_8U);
    const cv::Mat small = matView(*cell).clone();
    compare(
        "TiledImage cell 160x120", "copyTo of a region",
        [=] {
            mosaic->setCellImage(1, 2, cell.get());
            return mosaic->imageBuffer();
        },
        [=]() mutable {
            small.copyTo(matTarget(cv::Rect(320, 120, 160, 120)));
            return matTarget.data;
        });
}

/// A picture with smooth and with noisy parts.
cv::Mat picture() {
    cv::Mat pixels(480, 640, CV_8UC3);
    cv::randu(pixels, 0, 256);
    cv::GaussianBlur(pixels, pixels, cv::Size(31, 31), 6.0);
    return pixels;
}

void addImageFiles(const std::string& directory) {
    const cv::Mat pixels = picture();
    const auto image = std::make_shared<Image>(imageOf(pixels));
    for (const char* ending : {".png", ".jpg", ".bmp", ".ppm", ".tiff", ".webp"}) {
        const std::string path = directory + "/picture" + ending;
        const std::string written = directory + "/written" + ending;
        cv::imwrite(path, pixels);
        compare(
            std::string("Image from ") + ending, "cv::imread", [=] { return Image(path); },
            [=] { return cv::imread(path); });
        compare(
            std::string("Image::save ") + ending, "cv::imwrite", [=] { return image->save(written); },
            [=] { return cv::imwrite(written, pixels); });
    }
}

/// A target's state as one would write it with Eigen: pose, velocity and acceleration.
using PlainState = std::vector<VectorXd>;

void addStates() {
    const auto state = std::make_shared<State>(VectorPose(6), 3);
    const auto other = std::make_shared<State>(*state);
    const auto plain = std::make_shared<PlainState>(3, VectorXd::Zero(6));
    const auto plainOther = std::make_shared<PlainState>(*plain);
    const auto packed = std::make_shared<Vector>(18);
    const auto plainPacked = std::make_shared<VectorXd>(18);
    compare(
        "State pack", "VectorXd segments",
        [=] {
            state->getStateIncData(*packed, -1);
            return packed->data();
        },
        [=] {
            *plainPacked << (*plain)[0], (*plain)[1], (*plain)[2];
            return plainPacked->data();
        });
    compare(
        "State unpack", "VectorXd segments",
        [=] {
            state->setIncDataFromVector(*packed, -1);
            return state->pose();
        },
        [=] {
            for (std::size_t i = 0; i < 3; ++i)
                (*plain)[i] = plainPacked->segment(6 * static_cast<Eigen::Index>(i), 6);
            return plain->data();
        });
    compare(
        "State copy", "std::vector of VectorXd", [=] { return State(*state); }, [=] { return PlainState(*plain); });
    compare(
        "State assignment", "std::vector of VectorXd", [=] { return &(*other = *state); },
        [=] { return &(*plainOther = *plain); });
}

struct PlainComponent {
    Eigen::Matrix3d covariance, inverse;
    Eigen::Vector3d mean;
    float determinant, weight;
};

struct PlainBlob {
    double values[5];
    std::int32_t label, area, box[4];
    Eigen::Matrix2d covariance, inverse;
    Eigen::Vector2d centroid;
};

void addFeatures() {
    const auto histogram = std::make_shared<ColourHist2d>(32, 32, 32);
    const auto other = std::make_shared<ColourHist2d>(*histogram);
    const VectorXd bins = VectorXd::Zero(32 * 32 * 32);
    Vector entries(32 * 32 * 32);
    VectorXd target = bins;
    compare(
        "ColourHist2d set 32x32x32", "VectorXd assignment",
        [=] {
            histogram->setData(entries);
            return &histogram->data();
        },
        [=]() mutable {
            target = bins;
            return target.data();
        });
    compare(
        "ColourHist2d clear 32x32x32", "VectorXd::setZero",
        [=] {
            histogram->clear();
            return &histogram->data();
        },
        [=]() mutable { return target.setZero().data(); });
    compare(
        "ColourHist2d copy 32x32x32", "VectorXd copy", [=] { return ColourHist2d(*histogram); },
        [=] { return VectorXd(bins); });

    const auto model = std::make_shared<ColorGMM>(8, 3);
    const std::vector<std::shared_ptr<PlainComponent>> components(8, std::make_shared<PlainComponent>());
    compare(
        "ColorGMM copy of 8 components", "structs in std::shared_ptr", [=] { return ColorGMM(*model); },
        [=] {
            auto copy = components;
            for (auto& component : copy)
                component = std::make_shared<PlainComponent>(*component);
            return copy;
        });

    const auto blobs = std::make_shared<Blobs>();
    blobs->mBlobs.resize(100);
    const std::vector<PlainBlob> records(100);
    compare(
        "Blobs copy of 100 records", "std::vector of structs", [=] { return Blobs(*blobs); },
        [=] { return std::vector<PlainBlob>(records); });
}

/// A command line of 30 options that are all given, read by our parser and by OpenCV's, which wants "-name=value".
void addParser() {
    static std::vector<std::string> words = {"program"}, joined = {"program"}, names;
    static std::vector<char*> line, joinedLine;
    std::string keys;
    for (int i = 0; i < 30; ++i) {
        names.push_back("option" + std::to_string(i));
        words.insert(words.end(), {"-" + names.back(), "7"});
        joined.push_back("-" + names.back() + "=7");
        keys += "{" + names.back() + "|0|an option}";
    }
    for (std::string& word : words)
        line.push_back(word.data());
    for (std::string& word : joined)
        joinedLine.push_back(word.data());
    compare(
        "CmdLineParser of 30 options", "cv::CommandLineParser",
        [] {
            parser::CmdLineParser parser(static_cast<int>(line.size()), line.data());
            for (const std::string& name : names)
                parser.addOption(name, "an option", "0", false);
            parser.parse();
            return parser.getValueInt(names.back());
        },
        [keys] {
            const cv::CommandLineParser parser(static_cast<int>(joinedLine.size()), joinedLine.data(), keys);
            return parser.get<int>(names.back());
        });
}

void addFilesystem(const std::string& directory) {
    const std::string many = directory + "/many";
    fs::create_directory(many);
    for (int i = 0; i < 10000; ++i)
        std::ofstream(many + "/entry" + std::to_string(i) + (i % 3 == 0 ? ".png" : ".txt"));
    compare(
        "Filesystem::ls of 10000 entries", "std::filesystem", [=] { return util::Filesystem::ls(many, ".png"); },
        [=] {
            std::vector<std::string> names;
            for (const fs::directory_entry& entry : fs::directory_iterator(many))
                if (entry.is_regular_file() && entry.path().extension() == ".png")
                    names.push_back(entry.path().filename().string());
            return names;
        });

    const std::string from = directory + "/large", to = directory + "/copy";
    std::ofstream(from, std::ios::binary) << std::string(64 << 20, 'x');
    compare(
        "Filesystem::cp of 64 MB", "std::filesystem::copy_file",
        [=] { return util::Filesystem::cp(from, to) && fs::remove(to); },
        [=] { return fs::copy_file(from, to) && fs::remove(to); });
}

}  // namespace

int main(int argc, char** argv) {
    std::string directory = (fs::temp_directory_path() / "tarvos-benchmark-XXXXXX").string();
    if (mkdtemp(directory.data()) == nullptr)
        return 1;
    addImages();
    addImageFiles(directory);
    addFeatures();
    addStates();
    addParser();
    addFilesystem(directory);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    fs::remove_all(directory);
}

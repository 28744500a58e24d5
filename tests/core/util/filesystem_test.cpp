#include "core/util/Filesystem.h"

#include "core/Exception.h"
#include "support/TemporaryDirectory.h"

#include <boost/filesystem/exception.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

using tarvos::core::Exception;
using tarvos::core::util::Filesystem;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace {

class FilesystemTest : public testing::Test {
protected:
    const TemporaryDirectory directory;

    /// The message of the Exception that @p operation throws and reports.
    static std::string messageOf(const std::function<void()>& operation) {
        testing::internal::CaptureStderr();
        try {
            operation();
        } catch (const Exception& error) {
            EXPECT_EQ(testing::internal::GetCapturedStderr(), "Exception Msg: " + error.whatString() + "\n");
            return error.whatString();
        }
        testing::internal::GetCapturedStderr();
        return "nothing was thrown";
    }
};

TEST_F(FilesystemTest, MakesOneDirectory) {
    EXPECT_TRUE(Filesystem::mkdir("d"));
    EXPECT_FALSE(Filesystem::mkdir("d"));
    TemporaryDirectory::write("f");
    testing::internal::CaptureStderr();
    EXPECT_THROW(Filesystem::mkdir("f"), boost::filesystem::filesystem_error);
    EXPECT_THROW(Filesystem::mkdir("missing/d"), boost::filesystem::filesystem_error);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(FilesystemTest, RemovesFilesAndTrees) {
    std::filesystem::create_directories("tree/branch");
    TemporaryDirectory::write("tree/branch/leaf");
    std::filesystem::create_directory("kept");
    TemporaryDirectory::write("kept/file");
    std::filesystem::create_directory_symlink("kept", "tree/link");
    for (const char* path : {"tree/branch/leaf", "tree", "tree", "never"}) {
        EXPECT_TRUE(Filesystem::rm(path));
        EXPECT_FALSE(Filesystem::exists(path));
    }
    EXPECT_TRUE(Filesystem::exists("kept/file")) << "what a link points to stays";
    std::filesystem::create_symlink("loop", "loop");
    EXPECT_THAT(messageOf([] { Filesystem::rm("loop"); }),
                StartsWith("Filesystem exception: rm(loop) failed with "));
}

TEST_F(FilesystemTest, MovesAndCopies) {
    TemporaryDirectory::write("a", "text");
    EXPECT_TRUE(Filesystem::cp("a", "b"));
    EXPECT_TRUE(Filesystem::mv("a", "c"));
    EXPECT_FALSE(Filesystem::exists("a"));
    TemporaryDirectory::write("other", "other text");
    EXPECT_EQ(messageOf([] { Filesystem::cp("other", "b"); }),
              "Filesystem exception: cp(other, b) failed. Does b already exist?");
    EXPECT_EQ(std::filesystem::file_size("b"), 4U);
    EXPECT_EQ(messageOf([] { Filesystem::cp("missing", "d"); }),
              "Filesystem exception: cp(missing, d) failed. Does d already exist?");
    EXPECT_THAT(messageOf([] { Filesystem::mv("missing", "d"); }),
                StartsWith("Filesystem exception: mv(missing, d) failed with "));
}

TEST_F(FilesystemTest, ExistsFollowsLinksAndTakesAnyPath) {
    EXPECT_FALSE(Filesystem::exists(""));
    EXPECT_TRUE(Filesystem::exists("."));
    EXPECT_TRUE(Filesystem::exists(directory.path()));
    std::filesystem::create_symlink("nowhere", "dangling");
    EXPECT_FALSE(Filesystem::exists("dangling"));
}

TEST_F(FilesystemTest, ListsNames) {
    for (const char* name : {"a", "b", "a.txt", "b.TXT", "txt"})
        TemporaryDirectory::write(name);
    std::filesystem::create_directory("s");
    std::filesystem::create_directory("c.txt");
    std::filesystem::create_symlink("nowhere", "dangling.txt");
    std::filesystem::create_directory_symlink("s", "link");
    std::vector<std::string> files{"old"};
    std::vector<std::string> dirs;
    Filesystem::ls(directory.path(), files, dirs);
    EXPECT_EQ(files.front(), "old");
    EXPECT_THAT(files, UnorderedElementsAre("old", "a", "b", "a.txt", "b.TXT", "txt", "dangling.txt"));
    EXPECT_THAT(dirs, UnorderedElementsAre("s", "c.txt", "link"));
    EXPECT_THAT(Filesystem::ls(".", ".txt"), UnorderedElementsAre("a.txt"));
    EXPECT_THAT(Filesystem::ls(".", "txt"), UnorderedElementsAre("a.txt", "txt"));
    EXPECT_EQ(Filesystem::ls(".", "").size(), 5U);
}

TEST_F(FilesystemTest, ListingTellsWhatIsWrong) {
    TemporaryDirectory::write("f");
    std::vector<std::string> names;
    const std::function<void(const std::string&)> listings[] = {
        [&](const std::string& dir) { Filesystem::ls(dir, names, names); },
        [](const std::string& dir) { Filesystem::ls(dir, ".txt"); }};
    for (const auto& ls : listings) {
        EXPECT_EQ(messageOf([&] { ls("x"); }), "\nNot found: " + directory.path() + "/x");
        EXPECT_EQ(messageOf([&] { ls(""); }), "\nNot found: ");
        EXPECT_EQ(messageOf([&] { ls("f"); }), "\n'f' is a file, but must be a directory.");
    }
    std::filesystem::create_symlink("loop", "loop");
    EXPECT_THAT(messageOf([&] { Filesystem::ls(".", names, names); }), StartsWith("loop "));
}

}  // namespace

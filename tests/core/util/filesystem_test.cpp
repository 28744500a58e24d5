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

    /// The message of the Exception that @p operation throws, which it must report too.
    static std::string messageOf(const std::function<void()>& operation) {
        std::string message = "nothing was thrown";
        testing::internal::CaptureStderr();
        try {
            operation();
        } catch (const Exception& error) {
            message = Exception(error).whatString();  // a copy says nothing
            EXPECT_EQ(error.what(), message);
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Exception Msg: " + message + "\n");
        return message;
    }
};

TEST_F(FilesystemTest, MakesAndRemoves) {
    EXPECT_TRUE(Filesystem::mkdir("tree"));
    EXPECT_FALSE(Filesystem::mkdir("tree"));
    EXPECT_TRUE(Filesystem::mkdir("kept"));
    TemporaryDirectory::write("tree/leaf");
    TemporaryDirectory::write("kept/file");
    std::filesystem::create_directory_symlink(directory.path() + "/kept", "tree/link");
    EXPECT_THROW(Filesystem::mkdir("tree/leaf"), boost::filesystem::filesystem_error);
    EXPECT_THROW(Filesystem::mkdir("missing/d"), boost::filesystem::filesystem_error);
    for (const char* path : {"tree/leaf", "tree", "tree", "never"}) {
        EXPECT_TRUE(Filesystem::rm(path));
        EXPECT_FALSE(Filesystem::exists(path));
    }
    EXPECT_TRUE(Filesystem::exists("kept/file")) << "what a link points to stays";
    EXPECT_FALSE(Filesystem::exists(""));
    std::filesystem::create_symlink("loop", "loop");
    EXPECT_THAT(messageOf([] { Filesystem::rm("loop"); }), StartsWith("Filesystem exception: rm(loop) failed with "));
}

TEST_F(FilesystemTest, MovesAndCopies) {
    TemporaryDirectory::write("a", "text");
    EXPECT_TRUE(Filesystem::cp("a", "b"));
    EXPECT_TRUE(Filesystem::mv("a", "c"));
    TemporaryDirectory::write("other", "other text");
    for (const std::string from : {"other", "missing"})
        EXPECT_EQ(messageOf([&] { Filesystem::cp(from, "b"); }),
                  "Filesystem exception: cp(" + from + ", b) failed. Does b already exist?");
    EXPECT_EQ(std::filesystem::file_size("b"), 4U);
    EXPECT_THAT(messageOf([] { Filesystem::mv("missing", "d"); }),
                StartsWith("Filesystem exception: mv(missing, d) failed with "));
}

TEST_F(FilesystemTest, ListsNames) {
    for (const char* name : {"a", "a.txt", "b.TXT", "txt"}) TemporaryDirectory::write(name);
    std::filesystem::create_directory("c.txt");
    std::filesystem::create_symlink("nowhere", "dangling.txt");
    std::filesystem::create_directory_symlink("c.txt", "link");
    std::vector<std::string> files{"old"};
    std::vector<std::string> dirs;
    Filesystem::ls(directory.path(), files, dirs);
    EXPECT_THAT(files, UnorderedElementsAre("old", "a", "a.txt", "b.TXT", "txt", "dangling.txt"));
    EXPECT_THAT(dirs, UnorderedElementsAre("c.txt", "link"));
    EXPECT_THAT(Filesystem::ls(".", ".txt"), UnorderedElementsAre("a.txt"));
    EXPECT_EQ(Filesystem::ls(".", "").size(), 4U);

    const std::pair<std::string, std::string> wrong[] = {{"x", "\nNot found: " + directory.path() + "/x"},
                                                         {"", "\nNot found: "},
                                                         {"a", "\n'a' is a file, but must be a directory."}};
    for (const auto& [dir, message] : wrong) {
        EXPECT_EQ(messageOf([&, d = dir] { Filesystem::ls(d, files, dirs); }), message);
        EXPECT_EQ(messageOf([d = dir] { Filesystem::ls(d, ".txt"); }), message);
    }
    std::filesystem::create_symlink("loop", "loop");
    EXPECT_THAT(messageOf([&] { Filesystem::ls(".", files, dirs); }), StartsWith("loop "));
}

}  // namespace

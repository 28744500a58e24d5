#include "support/Files.h"
#include "support/Output.h"

#include <tarvos/core/Exception.h>
#include <tarvos/core/util/Filesystem.h>

#include <sys/stat.h>

using tarvos::core::Exception;
using tarvos::core::util::Filesystem;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

namespace {

struct FilesystemTest : testing::Test {
    const TemporaryDirectory directory;

    /// The message of the Exception that @p operation throws, which it must report too.
    static std::string messageOf(const std::function<void()>& operation) {
        std::string message = "nothing was thrown";
        const std::string heard = captureStderr([&] {
            try {
                operation();
            } catch (const Exception& error) {
                message = Exception(error).whatString();  // a copy says nothing
                EXPECT_STREQ(error.what(), message.c_str());
            }
        });
        EXPECT_EQ(heard, std::string("Exception Msg: ") + message.c_str() + "\n");
        return message;
    }

    static void expectRefused(const std::string& from, const std::string& to) {
        EXPECT_EQ(messageOf([&] { Filesystem::cp(from, to); }),
                  "Filesystem exception: cp(" + from + ", " + to + ") failed. Does " + to + " already exist?");
    }
};

TEST_F(FilesystemTest, MakesAndRemoves) {
    EXPECT_TRUE(Filesystem::mkdir("tree"));
    EXPECT_FALSE(Filesystem::mkdir("tree"));
    writeFile("tree/leaf");
    EXPECT_THROW(Filesystem::mkdir("tree/leaf"), fs::filesystem_error);
    EXPECT_THROW(Filesystem::mkdir("missing/d"), fs::filesystem_error);
    for (const char* path : {"tree/leaf/below", "tree/leaf", "tree/", "tree", "never"}) {
        EXPECT_TRUE(Filesystem::rm(path));
        EXPECT_FALSE(Filesystem::exists(path));
    }
    EXPECT_FALSE(Filesystem::exists(""));
    fs::create_symlink("nowhere", "dangling");
    EXPECT_FALSE(Filesystem::exists("dangling"));
    EXPECT_THAT(messageOf([] { Filesystem::rm("tree" + std::string(300, 'x')); }),
                StartsWith("Filesystem exception: rm(treexxx"));
}

TEST_F(FilesystemTest, RemovesALinkWhateverItPointsTo) {
    for (const std::string& target : {std::string("nowhere"), std::string("link"), std::string(300, 'x')}) {
        fs::create_symlink(target, "link");
        EXPECT_TRUE(Filesystem::rm("link"));
        EXPECT_EQ(entriesOf("."), 0) << "to " << target;
    }
}

TEST_F(FilesystemTest, WorksWhereTheCurrentDirectoryHasNoPath) {
    for (int depth = 0; depth < 20; ++depth) {  // deeper than a path can be long
        Filesystem::mkdir(std::string(250, 'd'));
        ASSERT_EQ(chdir(std::string(250, 'd').c_str()), 0);
    }
    writeFile("a");
    EXPECT_TRUE(Filesystem::mv("a", "b"));
    EXPECT_THAT(Filesystem::ls(".", ""), UnorderedElementsAre("b"));
    Filesystem::mkdir("gone");
    ASSERT_EQ(chdir("gone"), 0);
    Filesystem::rm("../gone");
    EXPECT_FALSE(Filesystem::exists("x"));
    EXPECT_EQ(messageOf([] { Filesystem::ls("x", ""); }), "\nNot found: x");
}

TEST_F(FilesystemTest, RmDoesNotFollowSymlinks) {
    fs::create_directories("kept/sub");
    writeFile("kept/file");
    fs::create_directory("tree");
    for (const char* link : {"tree/link", "link", "slashed"})
        fs::create_directory_symlink(directory.path() + "/kept", link);
    for (const char* path : {"tree", "link", "slashed/", "slashed///"})
        Filesystem::rm(path);
    EXPECT_EQ(entriesOf("."), 1) << "what was linked to";
    for (const std::string path : {"kept/.", "kept/sub/..", "."})
        EXPECT_THAT(messageOf([&] { Filesystem::rm(path); }),
                    StartsWith("Filesystem exception: rm(" + path + ") failed with filesystem error: will not remove"));
    EXPECT_TRUE(Filesystem::exists("kept/file"));
}

TEST_F(FilesystemTest, PathsContainingNulAreRejected) {
    writeFile("kept", "text");
    const std::string name("kept\0x", 6);
    EXPECT_FALSE(Filesystem::exists(name));
    EXPECT_TRUE(Filesystem::rm(name));
    EXPECT_THROW(Filesystem::mkdir(name), fs::filesystem_error);
    EXPECT_THAT(messageOf([&] { Filesystem::mv("kept", name); }), StartsWith("Filesystem exception: mv(kept, "));
    EXPECT_THAT(messageOf([&] { Filesystem::mv(name, "new"); }), StartsWith("Filesystem exception: mv(kept"));
    expectRefused("kept", name);
    expectRefused(name, "new");
    EXPECT_EQ(messageOf([&] { Filesystem::ls(name, ""); }), "\nNot found: " + directory.path() + "/" + name);
}

TEST_F(FilesystemTest, MovesAndCopies) {
    writeFile("a", "text");
    chmod("a", 04751);
    EXPECT_TRUE(Filesystem::cp("a", "b"));
    EXPECT_EQ(contentOf("b"), "text");
    EXPECT_EQ(modeOf("b"), "751") << "the permissions, but no set-user-id";
    for (const std::string stated :
         {"/proc/version", "/sys/devices/system/cpu/online"}) {  // whose sizes are not theirs
        EXPECT_TRUE(Filesystem::cp(stated, "copy"));
        EXPECT_EQ(contentOf("copy"), contentOf(stated)) << stated;
        Filesystem::rm("copy");
    }
    EXPECT_TRUE(Filesystem::mv("a", "c"));
    EXPECT_FALSE(Filesystem::exists("a"));
    EXPECT_THAT(messageOf([] { Filesystem::mv("missing", "d"); }),
                StartsWith("Filesystem exception: mv(missing, d) failed with "));
}

TEST_F(FilesystemTest, CopiesRegularFilesOnlyNeverOverwritesAndLeavesNoPart) {
    writeFile("old", "text");
    writeFile("large", std::string(100000, 'x'));
    mkfifo("pipe", 0600);
    fs::create_directory("dir");
    fs::create_symlink("nowhere", "dangling");
    for (const std::string to : {"old", "dir", "dangling"})
        expectRefused("large", to);
    for (const std::string from : {"missing", "pipe", "dir", "/dev/null"})
        expectRefused(from, "new");
    EXPECT_EQ(contentOf("old"), "text");
    writeFile("huge");
    fs::resize_file("huge", std::uintmax_t{5} << 30);
    for (const std::string from : {"large", "huge", "/proc/cpuinfo"})
        expectFailureOnAFullDisk("cp of " + from, [=] { return Filesystem::cp(from, "new"); });
    EXPECT_FALSE(Filesystem::exists("new"));
}

TEST_F(FilesystemTest, ListsNames) {
    for (const char* name : {"a", "a.txt", "b.TXT", "txt"})
        writeFile(name);
    fs::create_directory("c.txt");
    fs::create_symlink("nowhere", "dangling.txt");
    fs::create_directory_symlink("c.txt", "link");
    std::vector<std::string> files{"old"}, dirs;
    Filesystem::ls(directory.path(), files, dirs);
    EXPECT_THAT(files, UnorderedElementsAre("old", "a", "a.txt", "b.TXT", "txt", "dangling.txt"));
    EXPECT_THAT(dirs, UnorderedElementsAre("c.txt", "link"));
    EXPECT_THAT(Filesystem::ls(".", ".txt"), UnorderedElementsAre("a.txt"));
    EXPECT_THAT(Filesystem::ls("./", ""), UnorderedElementsAre("a", "a.txt", "b.TXT", "txt"));

    EXPECT_EQ(messageOf([&] { Filesystem::ls("x", files, dirs); }), "\nNot found: " + directory.path() + "/x");
    EXPECT_EQ(messageOf([] { Filesystem::ls("", ""); }), "\nNot found: ");
    EXPECT_EQ(messageOf([] { Filesystem::ls("a", ""); }), "\n'a' is a file, but must be a directory.");
    fs::create_symlink("loop", "loop");
    EXPECT_THAT(messageOf([&] { Filesystem::ls(".", files, dirs); }), StartsWith("loop "));
}

}  // namespace

#include "core/util/Resources.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>

using tarvos::core::util::Resources;

namespace {

class ResourcesTest : public testing::Test {
protected:
    ResourcesTest() {
        unsetenv("TARVOSDATADIR");
        unsetenv("TARVOS");
        std::filesystem::create_directories("1/2/3/4/5");
        std::filesystem::current_path("1/2/3/4/5");
    }
    ~ResourcesTest() override {
        unsetenv("TARVOSDATADIR");
        unsetenv("TARVOS");
    }

    static void makeDataDir(const std::string& path) {
        std::filesystem::create_directories(path);
        TemporaryDirectory::write(path + "/DATA_DIR_ID.txt");
    }

    /// Looks for the data directory of the application "app" and compares what is found and what is said.
    static void expectFound(const std::string& path, const std::string& said, const std::string& app = "app",
                            const std::string& given = "") {
        testing::internal::CaptureStderr();
        const Resources resources(given, app);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Searching for data dir...\n" + said);
        EXPECT_EQ(resources.getDataDirPath(), path);
    }
    static void expectFound(const std::string& path) {
        expectFound(path, "Data directory found at: " + path + "\n");
    }

    const TemporaryDirectory directory;
};

TEST_F(ResourcesTest, UsesAGivenDirectoryUntested) {
    expectFound("no/where", "Using given default data dir location:no/where\n", "app", "no/where");
}

TEST_F(ResourcesTest, ClimbsTheLadderInOrder) {
    expectFound("", "Data directory not found!\n");
    makeDataDir(directory.path() + "/last/data");
    setenv("TARVOS", (directory.path() + "/last").c_str(), 1);
    std::filesystem::create_directory("data");  // without the marker
    expectFound(directory.path() + "/last/data/");
    for (const char* path : {"../../../../data/", "../../../data/", "../../data/", "../data/", "./data/"}) {
        makeDataDir(path);
        expectFound(path);
    }
    setenv("TARVOSDATADIR", "", 1);
    expectFound("./data/");
    makeDataDir(directory.path() + "/first/data");
    setenv("TARVOSDATADIR", (directory.path() + "/first").c_str(), 1);
    expectFound(directory.path() + "/first/data/");
}

TEST_F(ResourcesTest, PrefersTheApplicationsOwnDirectory) {
    makeDataDir("data");
    const std::string found = "Data directory found at: ./data/\n";
    expectFound("./data/", found + "Found  specific data directory at : ./data/\n", "");
    std::filesystem::create_directory("data/app");
    expectFound("./data/app", found + "Found app specific data directory at : ./data/app\n");
    std::filesystem::create_directories("data/tutorials/app");
    expectFound("./data/tutorials/app",
                found + "Found app specific data directory at : ./data/tutorials/app\n");
    expectFound("./data/tutorials/", found + "Found  specific data directory at : ./data/tutorials/\n", "");
}

TEST_F(ResourcesTest, FindsFiles) {
    makeDataDir("data");
    TemporaryDirectory::write("here.png");
    TemporaryDirectory::write("data/there.png");
    TemporaryDirectory::write("data/here.png");
    testing::internal::CaptureStderr();
    const Resources resources("", "app");
    testing::internal::GetCapturedStderr();
    testing::internal::CaptureStderr();
    EXPECT_EQ(resources.findFile("here.png"), "here.png");
    EXPECT_EQ(resources.findFile("there.png"), "./data//there.png");
    EXPECT_EQ(resources.findFile("nowhere.png"), "");
    EXPECT_EQ(resources.findFile(directory.path()), directory.path());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace

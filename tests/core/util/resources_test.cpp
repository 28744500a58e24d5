#include "support/Files.h"
#include "support/Output.h"

#include <tarvos/core/util/Resources.h>

#include <cstdlib>

using tarvos::core::util::Resources;

namespace {

struct ResourcesTest : testing::Test {
    ResourcesTest() {
        unsetenv("TARVOSDATADIR");
        unsetenv("TARVOS");
        std::filesystem::create_directories("1/2/3/4/5");
        std::filesystem::current_path("1/2/3/4/5");
    }

    static void makeDataDir(const std::string& path) {
        std::filesystem::create_directories(path);
        writeFile(path + "/DATA_DIR_ID.txt");
    }

    /// Looks for the data directory of the application "app", which is to be @p path after saying @p lines.
    static void expectFound(const std::string& path, const std::string& lines, const std::string& given = "") {
        std::string found;
        EXPECT_EQ(captureStderr([&] { found = Resources(given, "app").getDataDirPath(); }),
                  "Searching for data dir...\n" + lines + "\n");
        EXPECT_EQ(found, path);
    }

    const TemporaryDirectory directory;
};

TEST_F(ResourcesTest, ClimbsTheLadderInOrder) {
    const std::string first = directory.path() + "/first", last = directory.path() + "/last";
    expectFound("no/where", "Using given default data dir location:no/where", "no/where");
    expectFound("", "Data directory not found!");
    EXPECT_EQ(Resources("", "app").findFile("etc/passwd"), "") << "not at the root";
    std::filesystem::create_directory("data");  // without the marker
    setenv("TARVOS", last.c_str(), 1);
    setenv("TARVOSDATADIR", first.c_str(), 1);
    const std::string ladder[] = {last + "/data/", "../../../../data/", "../../../data/", "../../data/",
                                  "../data/",      "./data/",           first + "/data/"};
    for (const std::string& path : ladder) {
        makeDataDir(path);
        expectFound(path, "Data directory found at: " + path);
    }
}

TEST_F(ResourcesTest, PrefersTheApplicationsOwnDirectoryAndFindsFilesThere) {
    makeDataDir("data");
    const std::string found = "Data directory found at: ./data/";
    for (const std::string path : {"./data/app", "./data/tutorials/app"}) {
        std::filesystem::create_directories(path);
        expectFound(path, found + "\nFound app specific data directory at : " + path);
    }
    for (const char* name : {"here.png", "data/tutorials/app/there.png", "data/tutorials/app/here.png"})
        writeFile(name);
    EXPECT_EQ(captureStderr([] { EXPECT_EQ(Resources("", "").getDataDirPath(), "./data/tutorials/"); }),
              "Searching for data dir...\n" + found + "\nFound  specific data directory at : ./data/tutorials/\n");
    const Resources resources("", "app");
    EXPECT_EQ(resources.findFile("here.png"), "here.png");
    EXPECT_EQ(resources.findFile("there.png"), "./data/tutorials/app/there.png");
    EXPECT_EQ(resources.findFile("nowhere.png"), "");
}

}  // namespace

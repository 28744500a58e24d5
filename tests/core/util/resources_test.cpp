#include "core/util/Resources.h"

#include "support/Output.h"
#include "support/TemporaryDirectory.h"

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

    static void makeDataDir(const std::string& path) {
        std::filesystem::create_directories(path);
        TemporaryDirectory::write(path + "/DATA_DIR_ID.txt");
    }

    /// Looks for the data directory of the application @p app; the path, behind what was said on the way.
    static std::string search(const std::string& app = "app", const std::string& given = "") {
        std::string path;
        return errorsOf([&] { path = Resources(given, app).getDataDirPath(); }) + path;
    }
    static std::string foundAt(const std::string& path) {
        return "Searching for data dir...\nData directory found at: " + path + "\n";
    }

    const TemporaryDirectory directory;
};

TEST_F(ResourcesTest, ClimbsTheLadderInOrder) {
    const std::string root = directory.path();
    EXPECT_EQ(search("app", "no/where"),
              "Searching for data dir...\nUsing given default data dir location:no/where\nno/where");
    EXPECT_EQ(search(), "Searching for data dir...\nData directory not found!\n");
    makeDataDir(root + "/last/data");
    setenv("TARVOS", (root + "/last").c_str(), 1);
    std::filesystem::create_directory("data");  // without the marker
    EXPECT_EQ(search(), foundAt(root + "/last/data/") + root + "/last/data/");
    for (const std::string path : {"../../../../data/", "../../../data/", "../../data/", "../data/", "./data/"}) {
        makeDataDir(path);
        EXPECT_EQ(search(), foundAt(path) + path);
    }
    makeDataDir(root + "/first/data");
    setenv("TARVOSDATADIR", (root + "/first").c_str(), 1);
    EXPECT_EQ(search(), foundAt(root + "/first/data/") + root + "/first/data/");
    unsetenv("TARVOSDATADIR");
    unsetenv("TARVOS");
}

TEST_F(ResourcesTest, PrefersTheApplicationsOwnDirectoryAndFindsFilesThere) {
    makeDataDir("data");
    const std::string found = foundAt("./data/") + "Found ";
    std::filesystem::create_directory("data/app");
    std::filesystem::create_directories("data/tutorials/app");
    EXPECT_EQ(search(), found + "app specific data directory at : ./data/tutorials/app\n./data/tutorials/app");

    for (const char* name : {"here.png", "data/tutorials/app/there.png", "data/tutorials/app/here.png"})
        TemporaryDirectory::write(name);
    const Resources resources("", "app");
    EXPECT_EQ(resources.findFile("here.png"), "here.png");
    EXPECT_EQ(resources.findFile("there.png"), "./data/tutorials/app/there.png");
    EXPECT_EQ(resources.findFile("nowhere.png"), "");
    std::filesystem::remove_all("data/tutorials");
    EXPECT_EQ(search(), found + "app specific data directory at : ./data/app\n./data/app");
    EXPECT_EQ(search("other"), foundAt("./data/") + "./data/");
}

}  // namespace

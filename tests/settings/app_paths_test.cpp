#include "core/settings/app_paths.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

class AppPathsTest : public testing::Test {
 protected:
  ~AppPathsTest() override { fs::remove_all(root_); }

  static fs::path makeRoot() {
    std::string pattern = (fs::temp_directory_path() / "app-paths-XXXXXX").string();
    return ::mkdtemp(pattern.data());
  }

  const fs::path root_ = makeRoot();
};

TEST_F(AppPathsTest, EveryReadCreatesTheFolderForTheUserAlone) {
  const AppPaths paths((root_ / "share/data").string(), "/home/nobody");
  const fs::path folder = root_ / "share/data/Tarnwick";
  EXPECT_EQ(paths.supportDir(), folder);
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
  EXPECT_EQ(paths.supportDir(), folder);

  fs::remove_all(root_ / "share");
  EXPECT_EQ(paths.supportDir(), folder);
  EXPECT_TRUE(fs::is_directory(folder));
}

TEST_F(AppPathsTest, WithoutADataFolderItIsBelowTheHomeFolder) {
  const AppPaths paths("", root_.string());
  EXPECT_EQ(paths.supportDir(), root_ / "Library/Application Support/Tarnwick");
  EXPECT_TRUE(fs::is_directory(root_ / "Library/Application Support/Tarnwick"));
}

TEST_F(AppPathsTest, AFolderThatCannotBeCreatedIsNamedAllTheSame) {
  std::ofstream(root_ / "file") << "in the way";
  const AppPaths paths((root_ / "file/data").string(), "/home/nobody");
  EXPECT_EQ(paths.supportDir(), root_ / "file/data/Tarnwick");
  EXPECT_TRUE(fs::is_regular_file(root_ / "file"));
}

}  // namespace
}  // namespace tarnwick

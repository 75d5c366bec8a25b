#include "velmoria/platform/posix/file_settings_store.h"

#include <cstdlib>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/temporary_folder.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* former = std::getenv(name)) former_ = former, wasSet_ = true;
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  ~ScopedVariable() { wasSet_ ? setenv(name_, former_.c_str(), 1) : unsetenv(name_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
  std::string former_;
  bool wasSet_ = false;
};

class FileSettingsStoreTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  FileSettingsStore store_{folder_.Path("settings")};
};

TEST_F(FileSettingsStoreTest, FileIsReadableForPeople) {
  store_.SaveSetting("App v1", "Profile", "1Name", "SupportsOracle");
  store_.SaveSetting("App v1", "Profile", "1Value", "True");
  EXPECT_EQ(ReadText(folder_.Path("settings/App v1.settings")),
            "# Written by the program; a backslash starts an escape.\n"
            "\n[Profile]\n1Name=SupportsOracle\n1Value=True\n");
}

TEST_F(FileSettingsStoreTest, ReadingMakesNoFolder) {
  EXPECT_EQ(store_.GetSetting("App", "S", "K", "x"), "x");
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("settings")));
}

TEST_F(FileSettingsStoreTest, FolderIsTheUsersAlone) {
  store_.SaveSetting("App", "S", "K", "v");
  struct stat status{};
  ASSERT_EQ(stat(folder_.Path("settings").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(FileSettingsStoreTest, ChangeByAnotherProcessIsSeen) {
  store_.SaveSetting("App", "S", "K", "old");
  EXPECT_EQ(store_.GetSetting("App", "S", "K", ""), "old");
  FileSettingsStore(folder_.Path("settings")).SaveSetting("App", "S", "K", "new");
  EXPECT_EQ(store_.GetSetting("App", "S", "K", ""), "new");
}

TEST_F(FileSettingsStoreTest, SavingThePresentValueWritesNothing) {
  store_.SaveSetting("App", "S", "K", "v");
  struct stat before{};
  struct stat after{};
  stat(store_.PathOf("App").c_str(), &before);
  store_.SaveSetting("App", "S", "K", "v");
  store_.ReplaceSection("App", "S", {{"K", "v"}});
  stat(store_.PathOf("App").c_str(), &after);
  EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(FileSettingsStoreTest, FileEditedWithCommentsAndForeignLineEndsIsRead) {
  std::filesystem::create_directory(folder_.Path("settings"));
  WriteText(store_.PathOf("App"), "\xEF\xBB\xBF# comment\r\n[S]\r\nnonsense\r\n; K=no\r\nK=v\r\n\r\nL=\r\n");
  EXPECT_EQ(store_.GetSetting("App", "S", "K", ""), "v");
  EXPECT_EQ(store_.GetSetting("App", "S", "L", "x"), "");
}

TEST_F(FileSettingsStoreTest, ApplicationNameMayHoldWhatAFileNameMayNot) {
  store_.SaveSetting("../a/b%", "S", "K", "v");
  EXPECT_EQ(store_.GetSetting("../a/b%", "S", "K", ""), "v");
  EXPECT_TRUE(std::filesystem::exists(folder_.Path("settings/%2E.%2Fa%2Fb%25.settings")));
}

TEST_F(FileSettingsStoreTest, WritersOfSeveralThreadsLoseNothing) {
  std::vector<std::thread> writers;
  for (int writer = 0; writer < 4; ++writer) {
    writers.emplace_back([&, writer] {
      FileSettingsStore own(folder_.Path("settings"));
      for (int key = 0; key < 10; ++key) {
        own.SaveSetting("App", "S" + std::to_string(writer), std::to_string(key), "v");
      }
    });
  }
  for (auto& writer : writers) writer.join();
  for (int writer = 0; writer < 4; ++writer) {
    for (int key = 0; key < 10; ++key) {
      EXPECT_EQ(store_.GetSetting("App", "S" + std::to_string(writer), std::to_string(key), ""), "v");
    }
  }
}

TEST_F(FileSettingsStoreTest, FolderThatCannotBeMadeIsAFailureAndLeavesReadingWhole) {
  WriteText(folder_.Path("file"), "");
  FileSettingsStore store(folder_.Path("file/settings"));
  EXPECT_THROW(store.SaveSetting("App", "S", "K", "v"), Error);
  EXPECT_EQ(store.GetSetting("App", "S", "K", "none"), "none");
}

TEST_F(FileSettingsStoreTest, NoTemporaryFileStaysBehind) {
  store_.SaveSetting("App", "S", "K", "v");
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_.Path("settings"))) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"App.settings", "App.settings.lock"}));
}

TEST(FileSettingsStoreFolderTest, OwnVariableComesFirst) {
  const ScopedVariable own("VELMORIA_SETTINGS_DIR", "/own");
  const ScopedVariable xdg("XDG_CONFIG_HOME", "/xdg");
  EXPECT_EQ(FileSettingsStore().PathOf("App"), "/own/App.settings");
}

TEST(FileSettingsStoreFolderTest, ThenTheConfigurationFolder) {
  const ScopedVariable own("VELMORIA_SETTINGS_DIR", nullptr);
  const ScopedVariable xdg("XDG_CONFIG_HOME", "/xdg");
  EXPECT_EQ(FileSettingsStore().PathOf("App"), "/xdg/velmoria/App.settings");
}

TEST(FileSettingsStoreFolderTest, ThenTheHomeFolder) {
  const ScopedVariable own("VELMORIA_SETTINGS_DIR", nullptr);
  const ScopedVariable xdg("XDG_CONFIG_HOME", "relative");
  const ScopedVariable home("HOME", "/home/me");
  EXPECT_EQ(FileSettingsStore().PathOf("App"), "/home/me/.config/velmoria/App.settings");
}

}  // namespace
}  // namespace velmoria::test

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include "tests/support/scoped_permissions.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/platform/posix/file_settings_store.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;

class DamagedSettingsTest : public testing::Test {
 protected:
  DamagedSettingsTest() { std::filesystem::create_directory(folder_.Path("settings")); }
  void Save(const char* value) { store_.SaveSetting("App", "S", "New", value); }
  std::string Get(const char* key) { return store_.GetSetting("App", "S", key, "(none)"); }
  std::string Kept(const char* number = "") const { return ReadText(path_ + ".damaged" + number); }
  std::vector<std::string> Names() const { return NamesIn(folder_.Path("settings")); }

  TemporaryFolder folder_;
  FileSettingsStore store_{folder_.Path("settings")};
  std::string path_ = store_.PathOf("App");
};

TEST_F(DamagedSettingsTest, WhatCanBeReadIsReadAndTheRestIsToldOnce) {
  WriteText(path_, "[S]\nK=v\ngarbage\nL=w\nmore");
  EXPECT_EQ(Get("K"), "v");
  EXPECT_EQ(Get("L"), "w");
  EXPECT_EQ(store_.TakeDamage("App"),
            "The settings file '" + path_ + "' has damaged lines: 3, 5. It will be kept beside the next one saved.");
  EXPECT_EQ(store_.TakeDamage("App"), "");
}

TEST_F(DamagedSettingsTest, DamageIsToldAlsoWhenNothingWasReadBefore) {
  WriteText(path_, "garbage\n");
  EXPECT_THAT(store_.TakeDamage("App"), HasSubstr("has damaged lines: 1."));
}

TEST_F(DamagedSettingsTest, ManyDamagedLinesAreToldByTheFirstTen) {
  std::string text = "[S]\n";
  for (int line = 0; line < 30; ++line) text += "garbage\n";
  WriteText(path_, text);
  EXPECT_THAT(store_.TakeDamage("App"), HasSubstr("has damaged lines: 2, 3, 4, 5, 6, 7, 8, 9, 10, 11 and others. It"));
}

TEST_F(DamagedSettingsTest, OtherDamageIsToldAgain) {
  WriteText(path_, "garbage\n");
  EXPECT_THAT(store_.TakeDamage("App"), HasSubstr("lines: 1."));
  WriteText(path_, "\n\n\ngarbage\n");
  EXPECT_THAT(store_.TakeDamage("App"), HasSubstr("lines: 4."));
}

TEST_F(DamagedSettingsTest, DamagedFileIsKeptByteForByteBesideTheFirstOneSaved) {
  const std::string text = "[S]\nK=v\n\0\xff garbage\nL=wor"s;
  WriteText(path_, text);
  Save("1");
  EXPECT_EQ(Kept(), text);
  EXPECT_EQ(ReadText(path_), "# Written by the program; a backslash starts an escape.\n\n[S]\nK=v\nL=wor\nNew=1\n");
  EXPECT_EQ(store_.TakeDamage("App"), "");
}

TEST_F(DamagedSettingsTest, KeptFileIsTheUsersAlone) {
  WriteText(path_, "garbage\n");
  Save("1");
  struct stat status{};
  ASSERT_EQ(stat((path_ + ".damaged").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(DamagedSettingsTest, FileKeptEarlierIsNeverOverwritten) {
  for (const char* text : {"first\n", "second\n", "third\n"}) {
    WriteText(path_, text);
    Save(text);
  }
  EXPECT_EQ(Kept(), "first\n");
  EXPECT_EQ(Kept("-2"), "second\n");
  EXPECT_EQ(Kept("-3"), "third\n");
}

TEST_F(DamagedSettingsTest, ReadingLeavesTheDamagedFileInPlace) {
  WriteText(path_, "[S]\nNew=1\ngarbage\n");
  EXPECT_EQ(Get("New"), "1");
  EXPECT_NE(store_.TakeDamage("App"), "");
  EXPECT_EQ(ReadText(path_), "[S]\nNew=1\ngarbage\n");
  EXPECT_THAT(Names(), ElementsAre("App.settings"));
}

TEST_F(DamagedSettingsTest, SavingWhatStandsKeepsTheDamagedFileAsideToo) {
  WriteText(path_, "[S]\nNew=1\ngarbage\n");
  Save("1");
  EXPECT_EQ(Kept(), "[S]\nNew=1\ngarbage\n");
  EXPECT_EQ(ReadText(path_), "# Written by the program; a backslash starts an escape.\n\n[S]\nNew=1\n");
  EXPECT_EQ(store_.TakeDamage("App"), "");
}

TEST_F(DamagedSettingsTest, KeyThatStandsTwiceIsKeptWithItsSecondValue) {
  WriteText(path_, "[S]\nK=first\nK=second\n");
  EXPECT_EQ(Get("K"), "first");
  Save("1");
  EXPECT_EQ(Kept(), "[S]\nK=first\nK=second\n");
}

TEST_F(DamagedSettingsTest, FolderInItsPlaceIsToldAndMovedAside) {
  std::filesystem::create_directory(path_);
  WriteText(path_ + "/inside", "mine");
  EXPECT_EQ(Get("K"), "(none)");
  EXPECT_THAT(store_.TakeDamage("App"), HasSubstr("cannot be read: Is a directory. It"));
  Save("1");
  EXPECT_EQ(Get("New"), "1");
  EXPECT_EQ(ReadText(path_ + ".damaged/inside"), "mine");
}

TEST_F(DamagedSettingsTest, SecondFolderInItsPlaceTakesAnotherName) {
  for (const char* name : {"/first", "/second"}) {
    std::filesystem::remove(path_);
    std::filesystem::create_directory(path_);
    WriteText(path_ + name, "mine");
    Save("1");
  }
  EXPECT_EQ(ReadText(path_ + ".damaged/first"), "mine");
  EXPECT_EQ(ReadText(path_ + ".damaged-2/second"), "mine");
}

TEST_F(DamagedSettingsTest, FileThatMayNotBeReadIsToldAndMovedAside) {
  const ScopedUser user(folder_.Path());
  std::filesystem::remove(folder_.Path("settings"));
  std::filesystem::create_directory(folder_.Path("settings"));
  WriteText(path_, "[S]\nK=v\n");
  chmod(path_.c_str(), 0);
  EXPECT_EQ(Get("K"), "(none)");
  EXPECT_THAT(store_.TakeDamage("App"), HasSubstr("cannot be read: Permission denied. It"));
  Save("1");
  EXPECT_EQ(Get("New"), "1");
  chmod((path_ + ".damaged").c_str(), 0600);
  EXPECT_EQ(Kept(), "[S]\nK=v\n");
}

TEST_F(DamagedSettingsTest, FileThatMayBeReadAgainIsNoLongerDamaged) {
  const ScopedUser user(folder_.Path());
  std::filesystem::remove(folder_.Path("settings"));
  std::filesystem::create_directory(folder_.Path("settings"));
  WriteText(path_, "[S]\nK=v\n");
  {
    const ScopedMode closed(path_, 0);
    EXPECT_NE(store_.TakeDamage("App"), "");
  }
  EXPECT_EQ(Get("K"), "v");
  EXPECT_EQ(store_.TakeDamage("App"), "");
}

TEST_F(DamagedSettingsTest, PipeInItsPlaceIsToldAndMovedAside) {
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_THAT(store_.TakeDamage("App"), HasSubstr("cannot be read: Not a file. It"));
  Save("1");
  EXPECT_EQ(Get("New"), "1");
  EXPECT_TRUE(std::filesystem::is_fifo(path_ + ".damaged"));
}

TEST_F(DamagedSettingsTest, SocketInItsPlaceIsToldAndMovedAside) {
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  ASSERT_LT(path_.size(), sizeof address.sun_path);
  path_.copy(address.sun_path, path_.size());
  const FileDescriptor server(socket(AF_UNIX, SOCK_STREAM, 0));
  ASSERT_EQ(bind(server.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_THAT(store_.TakeDamage("App"), HasSubstr("cannot be read: "));
  Save("1");
  EXPECT_TRUE(std::filesystem::is_socket(path_ + ".damaged"));
}

TEST_F(DamagedSettingsTest, LinkThatLeadsToNoFileIsMovedAsideAndNotWhatItLeadsTo) {
  std::filesystem::create_directory(folder_.Path("mine"));
  std::filesystem::create_symlink("../mine", path_);
  EXPECT_THAT(store_.TakeDamage("App"), HasSubstr("Is a directory"));
  Save("1");
  EXPECT_EQ(std::filesystem::read_symlink(path_ + ".damaged"), "../mine");
  EXPECT_TRUE(std::filesystem::is_directory(folder_.Path("mine")));
  EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(path_)));
}

TEST_F(DamagedSettingsTest, LinkThatLeadsToItselfIsMovedAside) {
  std::filesystem::create_symlink("App.settings", path_);
  EXPECT_EQ(Get("K"), "(none)");
  EXPECT_THAT(store_.TakeDamage("App"), HasSubstr("cannot be read: Too many levels of symbolic links. It"));
  EXPECT_EQ(store_.TakeDamage("App"), "");
  Save("1");
  EXPECT_EQ(Get("New"), "1");
  EXPECT_TRUE(std::filesystem::is_symlink(path_ + ".damaged"));
}

TEST_F(DamagedSettingsTest, DamagedFileBehindALinkIsKeptInTheSettingsFolder) {
  WriteText(folder_.Path("real"), "garbage\n");
  std::filesystem::create_symlink("../real", path_);
  Save("1");
  EXPECT_EQ(Kept(), "garbage\n");
  EXPECT_TRUE(std::filesystem::is_symlink(path_));
  EXPECT_THAT(ReadText(folder_.Path("real")), HasSubstr("New=1"));
}

TEST_F(DamagedSettingsTest, SavingThatFailsLeavesTheDamagedFileInItsPlaceAndKeepsNoSecond) {
  const std::string text = "[S]\n" + std::string(2000, 'x') + "\n";
  WriteText(path_, text);
  {
    const ScopedFileSizeLimit full(1000);  // room for the new file, and none to keep the old one
    EXPECT_THROW(Save("1"), Error);
  }
  EXPECT_EQ(ReadText(path_), text);
  EXPECT_THAT(Names(), ElementsAre("App.settings", "App.settings.lock"));
}

// In a sticky folder nobody but its owner replaces a file.
TEST_F(DamagedSettingsTest, ReplacingThatFailsAtTheLastStepKeepsNothing) {
  std::filesystem::create_directory(folder_.Path("sticky"));
  WriteText(folder_.Path("sticky/real"), "garbage\n");
  chmod(folder_.Path("sticky/real").c_str(), 0666);
  chmod(folder_.Path("sticky").c_str(), 01777);
  std::filesystem::create_symlink("../sticky/real", path_);
  ASSERT_EQ(chmod(folder_.Path("settings").c_str(), 0777), 0);
  const ScopedUser user(folder_.Path());
  if (!user.IsOther()) GTEST_SKIP() << "Does not apply: only root can make a folder of another user's";
  EXPECT_THROW(Save("1"), Error);
  EXPECT_EQ(ReadText(path_), "garbage\n");
  EXPECT_THAT(Names(), ElementsAre("App.settings", "App.settings.lock"));
}

}  // namespace
}  // namespace velmoria::test

#include "velmoria/platform/posix/file_settings_store.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/scoped_permissions.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

class FileSettingsStoreTest : public testing::Test {
 protected:
  void ExpectRefused(RuntimeFailure failure) {
    try {
      store_.SaveSetting("App", "S", "K", "new");
      ADD_FAILURE();
    } catch (const Error& error) { EXPECT_EQ(error.Number(), static_cast<int>(failure)); }
  }
  std::string Get(const char* key = "K") { return store_.GetSetting("App", "S", key, "(none)"); }
  std::vector<std::string> Names() const { return NamesIn(folder_.Path("settings")); }
  static struct stat StatusOf(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status;
  }

  TemporaryFolder folder_;
  FileSettingsStore store_{folder_.Path("settings")};
  std::string path_ = store_.PathOf("App");
};

TEST_F(FileSettingsStoreTest, FileIsReadableForPeople) {
  store_.SaveSetting("App v1", "Profile", "1Name", "SupportsOracle");
  store_.SaveSetting("App v1", "Profile", "1Value", "True");
  EXPECT_EQ(ReadText(folder_.Path("settings/App v1.settings")),
            "# Written by the program; a backslash starts an escape.\n"
            "\n[Profile]\n1Name=SupportsOracle\n1Value=True\n");
}

TEST_F(FileSettingsStoreTest, ReadingMakesNoFolder) {
  EXPECT_EQ(Get(), "(none)");
  EXPECT_EQ(store_.TakeDamage("App"), "");
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("settings")));
}

TEST_F(FileSettingsStoreTest, FolderAndFileAreTheUsersAlone) {
  store_.SaveSetting("App", "S", "K", "v");
  EXPECT_EQ(StatusOf(folder_.Path("settings")).st_mode & 0777U, 0700U);
  EXPECT_EQ(StatusOf(path_).st_mode & 0777U, 0600U);
}

TEST_F(FileSettingsStoreTest, PermissionsGivenByTheUserStay) {
  store_.SaveSetting("App", "S", "K", "v");
  const ScopedMode mode(path_, 0640);
  store_.SaveSetting("App", "S", "K", "new");
  EXPECT_EQ(StatusOf(path_).st_mode & 0777U, 0640U);
}

TEST_F(FileSettingsStoreTest, OwnerOfTheFileStays) {
  store_.SaveSetting("App", "S", "K", "v");
  if (geteuid() != 0) GTEST_SKIP() << "Does not apply: only root can write another user's file";
  ASSERT_EQ(chown(path_.c_str(), ScopedUser::Nobody, 12345), 0);
  store_.SaveSetting("App", "S", "K", "new");
  EXPECT_EQ(StatusOf(path_).st_uid, ScopedUser::Nobody);
  EXPECT_EQ(StatusOf(path_).st_gid, 12345U);
}

TEST_F(FileSettingsStoreTest, ChangeByAnotherProcessIsSeen) {
  store_.SaveSetting("App", "S", "K", "old");
  EXPECT_EQ(Get(), "old");
  FileSettingsStore(folder_.Path("settings")).SaveSetting("App", "S", "K", "new");
  EXPECT_EQ(Get(), "new");
}

TEST_F(FileSettingsStoreTest, FileThatWasRemovedIsGone) {
  store_.SaveSetting("App", "S", "K", "v");
  EXPECT_EQ(Get(), "v");
  std::filesystem::remove(path_);
  EXPECT_EQ(Get(), "(none)");
}

TEST_F(FileSettingsStoreTest, SavingThePresentValueWritesNothing) {
  store_.SaveSetting("App", "S", "K", "v");
  const auto before = StatusOf(path_);
  store_.SaveSetting("App", "S", "K", "v");
  store_.ReplaceSection("App", "S", {{"K", "v"}});
  store_.DeleteSetting("App", "Nowhere");
  EXPECT_EQ(before.st_ino, StatusOf(path_).st_ino);
}

TEST_F(FileSettingsStoreTest, LayoutMadeByHandStaysUntilAValueChanges) {
  std::filesystem::create_directory(folder_.Path("settings"));
  const std::string text = "\xEF\xBB\xBF# comment\r\n[S]\r\n\r\n; K=no\r\nK = v\r\nL=\r\n";
  WriteText(path_, text);
  store_.SaveSetting("App", "S", "K", "v");
  EXPECT_EQ(ReadText(path_), text);
  store_.SaveSetting("App", "S", "K", "w");
  EXPECT_EQ(ReadText(path_),
            "# Written by the program; a backslash starts an escape.\n# comment\n\n[S]\n; K=no\nK=w\nL=\n");
}

TEST_F(FileSettingsStoreTest, NothingToSaveMakesNoFile) {
  store_.DeleteSetting("App", "Nowhere");
  store_.ReplaceSection("App", "Nowhere", {});
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(FileSettingsStoreTest, EmptyFileIsNoDamage) {
  std::filesystem::create_directory(folder_.Path("settings"));
  WriteText(path_, "");
  EXPECT_EQ(Get(), "(none)");
  EXPECT_EQ(store_.TakeDamage("App"), "");
}

TEST_F(FileSettingsStoreTest, NoTemporaryFileStaysBehind) {
  store_.SaveSetting("App", "S", "K", "v");
  store_.SaveSetting("App", "S", "K", "w");
  EXPECT_EQ(Names(), (std::vector<std::string>{"App.settings", "App.settings.lock"}));
}

TEST_F(FileSettingsStoreTest, DiskThatIsFullLeavesWhatWasThere) {
  store_.SaveSetting("App", "S", "K", "v");
  {
    const ScopedFileSizeLimit full(10);
    ExpectRefused(RuntimeFailure::PathFileAccess);
  }
  EXPECT_EQ(Get(), "v");
  EXPECT_EQ(Names(), (std::vector<std::string>{"App.settings", "App.settings.lock"}));
}

TEST_F(FileSettingsStoreTest, FolderThatCannotBeMadeIsAFailureAndLeavesReadingWhole) {
  WriteText(folder_.Path("settings"), "");
  ExpectRefused(RuntimeFailure::PathNotFound);
  EXPECT_EQ(Get(), "(none)");
  EXPECT_EQ(store_.TakeDamage("App"), "");
}

TEST_F(FileSettingsStoreTest, FolderThatMayNotBeWrittenIsReadAllTheSame) {
  const ScopedUser user(folder_.Path());
  store_.SaveSetting("App", "S", "K", "v");
  const ScopedMode closed(folder_.Path("settings"), 0500);
  ExpectRefused(RuntimeFailure::PermissionDenied);
  EXPECT_EQ(Get(), "v");
}

TEST_F(FileSettingsStoreTest, FileThatMayNotBeWrittenIsReadAndNotReplaced) {
  const ScopedUser user(folder_.Path());
  store_.SaveSetting("App", "S", "K", "v");
  const ScopedMode closed(path_, 0400);
  ExpectRefused(RuntimeFailure::PermissionDenied);
  EXPECT_EQ(Get(), "v");
}

TEST_F(FileSettingsStoreTest, LockThatCannotBeTakenIsAFailure) {
  std::filesystem::create_directories(path_ + ".lock");
  ExpectRefused(RuntimeFailure::PathFileAccess);
}

TEST_F(FileSettingsStoreTest, FileNameTooLongIsAFailureOfReadingToo) {
  const std::string application(300, 'a');
  store_.SaveSetting("App", "S", "K", "v");
  EXPECT_THROW(store_.GetSetting(application, "S", "K", ""), Error);
  EXPECT_THROW(store_.SaveSetting(application, "S", "K", "v"), Error);
}

TEST_F(FileSettingsStoreTest, LinkedFileIsReplacedBehindTheLink) {
  std::filesystem::create_directories(folder_.Path("mine"));
  std::filesystem::create_directories(folder_.Path("settings"));
  WriteText(folder_.Path("mine/real"), "[S]\nK=v\n");
  std::filesystem::create_symlink("real", folder_.Path("mine/second"));
  std::filesystem::create_symlink("../mine/second", path_);
  EXPECT_EQ(Get(), "v");
  store_.SaveSetting("App", "S", "K", "new");
  EXPECT_EQ(Get(), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(path_));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.Path("mine/second")));
  EXPECT_EQ(SettingsText(ReadText(folder_.Path("mine/real"))).Find("S", "K")->c_str(), std::string("new"));
}

TEST_F(FileSettingsStoreTest, LinkToAFileNotThereYetIsFollowedToo) {
  std::filesystem::create_directories(folder_.Path("settings"));
  std::filesystem::create_symlink(folder_.Path("real"), path_);
  EXPECT_EQ(Get(), "(none)");
  store_.SaveSetting("App", "S", "K", "v");
  EXPECT_EQ(Get(), "v");
  EXPECT_TRUE(std::filesystem::is_regular_file(folder_.Path("real")));
}

TEST_F(FileSettingsStoreTest, LinkIntoAFolderNotThereIsAFailureAndStays) {
  std::filesystem::create_directories(folder_.Path("settings"));
  std::filesystem::create_symlink(folder_.Path("away/real"), path_);
  ExpectRefused(RuntimeFailure::FileNotFound);
  EXPECT_TRUE(std::filesystem::is_symlink(path_));
}

TEST_F(FileSettingsStoreTest, LinkedFolderIsTheFolder) {
  std::filesystem::create_directories(folder_.Path("mine"));
  std::filesystem::create_symlink("mine", folder_.Path("settings"));
  store_.SaveSetting("App", "S", "K", "v");
  EXPECT_TRUE(std::filesystem::exists(folder_.Path("mine/App.settings")));
}

struct NameRow {
  const char* Application;
  const char* File;
};

TEST_F(FileSettingsStoreTest, ApplicationNameMayHoldWhatAFileNameMayNot) {
  for (const auto& row :
       {NameRow{"../a/b%", "%2E.%2Fa%2Fb%25.settings"}, NameRow{"", "%.settings"}, NameRow{".", "%2E.settings"},
        NameRow{"a.b", "a.b.settings"}, NameRow{"a\nb", "a%0Ab.settings"}, NameRow{"Größe 漢", "Größe 漢.settings"}}) {
    store_.SaveSetting(row.Application, "S", "K", row.File);
    EXPECT_EQ(store_.GetSetting(row.Application, "S", "K", ""), row.File);
    EXPECT_TRUE(std::filesystem::exists(folder_.Path("settings/") + row.File)) << row.File;
  }
}

TEST(FileSettingsStoreFolderTest, OwnVariableComesFirst) {
  const ScopedVariable own("VELMORIA_SETTINGS_DIR", "/own");
  const ScopedVariable xdg("XDG_CONFIG_HOME", "/xdg");
  EXPECT_EQ(FileSettingsStore().PathOf("App"), "/own/App.settings");
}

TEST(FileSettingsStoreFolderTest, ConfigurationFolderComesSecond) {
  const ScopedVariable xdg("XDG_CONFIG_HOME", "/xdg");
  for (const char* empty : {static_cast<const char*>(nullptr), ""}) {
    const ScopedVariable own("VELMORIA_SETTINGS_DIR", empty);
    EXPECT_EQ(FileSettingsStore().PathOf("App"), "/xdg/velmoria/App.settings");
  }
}

TEST(FileSettingsStoreFolderTest, RelativeFolderIsTakenFromWhereTheStoreWasMade) {
  const ScopedVariable own("VELMORIA_SETTINGS_DIR", "settings");
  EXPECT_EQ(FileSettingsStore().PathOf("App"), (std::filesystem::current_path() / "settings/App.settings").string());
}

TEST(FileSettingsStoreFolderTest, WithoutAFolderNothingIsReadAndWritingFails) {
  FileSettingsStore store("");
  EXPECT_EQ(store.PathOf("App"), "");
  EXPECT_EQ(store.GetSetting("App", "S", "K", "none"), "none");
  EXPECT_EQ(store.TakeDamage("App"), "");
  EXPECT_THROW(store.SaveSetting("App", "S", "K", "v"), Error);
}

}  // namespace
}  // namespace velmoria::test

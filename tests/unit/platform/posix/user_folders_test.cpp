#include "velmoria/platform/posix/user_folders.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>

#include "tests/support/scoped_permissions.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

struct FolderRow {
  const char* Variable;
  const char* Home;
  const char* Configuration;
  const char* State;
};

TEST(UserFoldersTest, VariableComesBeforeTheHomeFolderUnlessItIsRelative) {
  for (const auto& row : {FolderRow{"/xdg", "/home/me", "/xdg/velmoria", "/xdg/velmoria"},
                          FolderRow{nullptr, "/home/me", "/home/me/.config/velmoria", "/home/me/.local/state/velmoria"},
                          FolderRow{"", "/home/me", "/home/me/.config/velmoria", "/home/me/.local/state/velmoria"},
                          FolderRow{"xdg", "/home/me", "/home/me/.config/velmoria", "/home/me/.local/state/velmoria"},
                          FolderRow{"/xdg", nullptr, "/xdg/velmoria", "/xdg/velmoria"}}) {
    const ScopedVariable configuration("XDG_CONFIG_HOME", row.Variable);
    const ScopedVariable state("XDG_STATE_HOME", row.Variable);
    const ScopedVariable home("HOME", row.Home);
    EXPECT_EQ(ConfigurationFolder(), row.Configuration);
    EXPECT_EQ(StateFolder(), row.State);
  }
}

TEST(UserFoldersTest, WithoutAHomeVariableTheUserDataBaseTellsTheHomeFolder) {
  const auto* user = getpwuid(geteuid());
  ASSERT_TRUE(user);
  const std::string expected = std::string(user->pw_dir) + "/.config/velmoria";
  const ScopedVariable configuration("XDG_CONFIG_HOME", nullptr);
  for (const char* name : {static_cast<const char*>(nullptr), "", "relative"}) {
    const ScopedVariable home("HOME", name);
    EXPECT_EQ(ConfigurationFolder(), expected);
  }
}

TEST(UserFoldersTest, UserWithoutAnyHomeHasNoFolders) {
  const TemporaryFolder folder;
  const ScopedUser user(folder.Path(), 54321);
  if (!user.IsOther() || getpwuid(geteuid())) GTEST_SKIP() << "Does not apply: only root can be a user nobody knows";
  const ScopedVariable configuration("XDG_CONFIG_HOME", nullptr);
  const ScopedVariable state("XDG_STATE_HOME", nullptr);
  const ScopedVariable home("HOME", nullptr);
  EXPECT_EQ(ConfigurationFolder(), "");
  EXPECT_EQ(StateFolder(), "");
}

TEST(UserFoldersTest, FolderIsMadeWithThoseAboveItForTheUserAlone) {
  const TemporaryFolder folder;
  MakeFolder(folder.Path("a/b/c"));
  for (const char* name : {"a", "a/b", "a/b/c"}) {
    struct stat status{};
    ASSERT_EQ(stat(folder.Path(name).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
  }
}

TEST(UserFoldersTest, FolderThatIsThereStaysAsItIs) {
  const TemporaryFolder folder;
  MakeFolder(folder.Path("a"));
  const ScopedMode mode(folder.Path("a"), 0755);
  MakeFolder(folder.Path("a/"));
  struct stat status{};
  ASSERT_EQ(stat(folder.Path("a").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0755U);
}

struct RefusedRow {
  const char* Folder;
  RuntimeFailure Failure;
};

TEST(UserFoldersTest, FolderThatCannotBeMadeIsAFailure) {
  const TemporaryFolder folder;
  const ScopedUser user(folder.Path());
  WriteText(folder.Path("file"), "");
  MakeFolder(folder.Path("closed"));
  const ScopedMode closed(folder.Path("closed"), 0500);
  for (const auto& row : {RefusedRow{"file/below", RuntimeFailure::PathNotFound},
                          RefusedRow{"closed/below", RuntimeFailure::PermissionDenied},
                          RefusedRow{"closed/below/further", RuntimeFailure::PermissionDenied}}) {
    try {
      MakeFolder(folder.Path(row.Folder));
      ADD_FAILURE() << row.Folder;
    } catch (const Error& error) { EXPECT_EQ(error.Number(), static_cast<int>(row.Failure)) << row.Folder; }
  }
}

TEST(UserFoldersTest, NoFolderCannotBeMade) {
  try {
    MakeFolder("");
    ADD_FAILURE();
  } catch (const Error& error) { EXPECT_EQ(error.Number(), 76); }
}

}  // namespace
}  // namespace velmoria::test

#include "velmoria/platform/posix/log_file_path.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/scoped_variable.h"

namespace velmoria::test {
namespace {

using namespace std::string_literals;

struct PathRow {
  std::string Name;
  std::string Path;
};

TEST(LogFilePathTest, NameOfAnotherSystemLiesInTheStateFolderUnderItsLastComponent) {
  const ScopedVariable state("XDG_STATE_HOME", "/state");
  for (const auto& row :
       {PathRow{"c:\\VelmoriaMessages.log", "/state/velmoria/VelmoriaMessages.log"},
        PathRow{"C:\\Program Files\\Sales\\my log.txt", "/state/velmoria/my log.txt"},
        PathRow{"d:/logs/sales.log", "/state/velmoria/sales.log"}, PathRow{"d:sales.log", "/state/velmoria/sales.log"},
        PathRow{"\\\\server\\share\\sales.log", "/state/velmoria/sales.log"},
        PathRow{"logs\\sales.log", "/state/velmoria/sales.log"},
        PathRow{"logs\\today/sales.log", "/state/velmoria/sales.log"},
        PathRow{"/var/log/odd\\name.log", "/state/velmoria/name.log"},
        PathRow{"c:\\Größe\\Ärger.log", "/state/velmoria/Ärger.log"}}) {
    EXPECT_EQ(LogFilePath(row.Name), row.Path) << row.Name;
  }
}

TEST(LogFilePathTest, WithoutTheVariableTheStateFolderIsInTheHomeFolder) {
  const ScopedVariable state("XDG_STATE_HOME", nullptr);
  const ScopedVariable home("HOME", "/home/me");
  EXPECT_EQ(LogFilePath("c:\\VelmoriaMessages.log"), "/home/me/.local/state/velmoria/VelmoriaMessages.log");
}

TEST(LogFilePathTest, EveryOtherNameIsAPathAsItStands) {
  const auto here = std::filesystem::current_path().string();
  for (const auto& row :
       {PathRow{"/var/log/sales.log", "/var/log/sales.log"}, PathRow{"sales.log", here + "/sales.log"},
        PathRow{"logs/sales.log", here + "/logs/sales.log"}, PathRow{"7:sales.log", here + "/7:sales.log"},
        PathRow{"é:sales.log", here + "/é:sales.log"}, PathRow{":sales.log", here + "/:sales.log"},
        PathRow{"cd:sales.log", here + "/cd:sales.log"}, PathRow{"c", here + "/c"}}) {
    EXPECT_EQ(LogFilePath(row.Name), row.Path) << row.Name;
  }
}

TEST(LogFilePathTest, NameThatCanBeNoPathAndHasNoLastComponentLiesUnderTheDefaultOne) {
  const ScopedVariable state("XDG_STATE_HOME", "/state");
  for (const auto& name :
       {""s, "c:"s, "c:\\"s, "c:\\logs\\"s, "c:/logs/"s, "\\"s, "a\0b"s, "/var/log/a\0b"s, "c:\\a\0b"s}) {
    EXPECT_EQ(LogFilePath(name), "/state/velmoria/VelmoriaMessages.log") << name;
  }
}

TEST(LogFilePathTest, FolderNamesNoFile) {
  for (const char* name : {"/", "/var/log/", "logs/"}) EXPECT_EQ(LogFilePath(name), "") << name;
}

}  // namespace
}  // namespace velmoria::test

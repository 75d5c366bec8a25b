#include "velmoria/platform/posix/temporary_file.h"

#include <csignal>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/open_files.h"
#include "tests/support/scoped_permissions.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"

namespace velmoria::test {
namespace {

std::vector<std::span<const std::byte>> PiecesOf(const std::vector<std::string>& texts) {
  std::vector<std::span<const std::byte>> pieces;
  for (const auto& text : texts) pieces.push_back(std::as_bytes(std::span(text)));
  return pieces;
}

std::optional<std::string> TextIn(const TemporaryFile& file, std::int64_t offset, std::size_t size) {
  std::string text(size, '?');
  return file.Read(std::as_writable_bytes(std::span(text)), offset) ? std::optional(text) : std::nullopt;
}

class TemporaryFileTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  ScopedVariable variable_{"TMPDIR", folder_.Path().c_str()};
};

TEST_F(TemporaryFileTest, LiesInTheFolderWithoutANameForItsOwnerAlone) {
  std::optional<TemporaryFile> file(std::in_place);
  ASSERT_TRUE(file->IsOpen());
  EXPECT_TRUE(NamesIn(folder_.Path()).empty());
  const auto open = NamelessFilesIn(folder_.Path());
  ASSERT_EQ(open.size(), 1U);
  struct stat status{};
  ASSERT_EQ(stat(open[0].c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600U);
  EXPECT_EQ(status.st_nlink, 0U);
  file.reset();
  EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
}

TEST_F(TemporaryFileTest, BothWaysToMakeItLeaveNoName) {
  for (const auto make : {OpenWithoutName, OpenAndUnlink}) {
    const auto made = make(folder_.Path());
    if (!made.IsOpen() && make == OpenWithoutName) continue;  // not every file system has such files
    ASSERT_TRUE(made.IsOpen());
    EXPECT_TRUE(NamesIn(folder_.Path()).empty());
    EXPECT_EQ(fcntl(made.Number(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    struct stat status{};
    fstat(made.Number(), &status);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    EXPECT_EQ(status.st_nlink, 0U);
  }
}

TEST_F(TemporaryFileTest, WithoutTheVariableItLiesInTmp) {
  for (const char* const value : {static_cast<const char*>(nullptr), ""}) {
    const ScopedVariable none("TMPDIR", value);
    const auto before = NamelessFilesIn("/tmp").size();
    const TemporaryFile file;
    EXPECT_EQ(NamelessFilesIn("/tmp").size(), before + 1);
  }
}

TEST_F(TemporaryFileTest, AFolderThatIsNoneGivesAFileThatTakesNothing) {
  WriteText(folder_.Path("file"), "x");
  for (const auto& folder : {folder_.Path("missing"), folder_.Path("file"), std::string("/proc/self")}) {
    const ScopedVariable variable("TMPDIR", folder.c_str());
    TemporaryFile file;
    EXPECT_FALSE(file.IsOpen()) << folder;
    EXPECT_FALSE(file.Write(PiecesOf({"text"}), 0));
    EXPECT_FALSE(TextIn(file, 0, 1));
  }
}

TEST_F(TemporaryFileTest, PiecesLieOneBehindTheOther) {
  std::vector<std::string> texts;
  std::string whole;
  for (int number = 0; number < 200; ++number) {
    texts.emplace_back(static_cast<std::size_t>(number % 7), static_cast<char>('a' + number % 26));
    whole += texts.back();
  }
  TemporaryFile file;
  ASSERT_TRUE(file.Write(PiecesOf(texts), 10));
  EXPECT_EQ(TextIn(file, 10, whole.size()), whole);
  EXPECT_EQ(TextIn(file, 13, 5), whole.substr(3, 5));
}

TEST_F(TemporaryFileTest, WhatDoesNotLieThereCannotBeRead) {
  TemporaryFile file;
  ASSERT_TRUE(file.Write(PiecesOf({"text"}), 0));
  EXPECT_FALSE(TextIn(file, 0, 5));
  EXPECT_FALSE(TextIn(file, 4, 1));
  EXPECT_EQ(TextIn(file, 4, 0), "");
}

TEST_F(TemporaryFileTest, WhatTheDiskTakesOnlyInPartIsNotWritten) {
  TemporaryFile file;
  ASSERT_TRUE(file.Write(PiecesOf({"text"}), 0));
  const ScopedFileSizeLimit limit(1000);
  EXPECT_FALSE(file.Write(PiecesOf({std::string(990, 'x'), "more than there is room for"}), 4));
  EXPECT_EQ(TextIn(file, 0, 4), "text");
}

TEST_F(TemporaryFileTest, NothingIsTriedThatTheOperatingSystemEndsAProcessFor) {
  const ScopedFileSizeLimit limit(1000);
  TemporaryFile file;
  std::signal(SIGXFSZ, SIG_DFL);
  EXPECT_FALSE(file.Write(PiecesOf({std::string(1001, 'x')}), 0));
  EXPECT_TRUE(file.Write(PiecesOf({std::string(1000, 'x')}), 0));
}

}  // namespace
}  // namespace velmoria::test

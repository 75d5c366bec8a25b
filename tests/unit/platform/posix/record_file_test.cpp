#include "velmoria/platform/posix/record_file.h"

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/processes.h"
#include "tests/support/scoped_permissions.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/platform/posix/file_descriptor.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

// A record of several lines, longer than any buffer: "<writer> <number> begin", filling, "... end".
std::string LongRecord(int writer, int number) {
  const auto name = std::to_string(writer) + " " + std::to_string(number);
  return name + " begin\n" + std::string(20000, static_cast<char>('a' + writer)) + "\n" + name + " end\n";
}

void AppendRecords(const std::string& path, int writer, int count) {
  RecordFile file(path);
  for (int number = 0; number < count; ++number) file.Append(LongRecord(writer, number));
}

// Takes each record off the text, of whichever writer, and expects each writer's in order.
void ExpectWholeRecords(std::string text, int writers, int count) {
  std::vector<int> next(static_cast<std::size_t>(writers));
  while (!text.empty()) {
    const int writer = text.front() - '0';
    ASSERT_TRUE(writer >= 0 && writer < writers);
    const auto record = LongRecord(writer, next[static_cast<std::size_t>(writer)]++);
    ASSERT_TRUE(text.starts_with(record));
    text.erase(0, record.size());
  }
  EXPECT_THAT(next, testing::Each(count));
}

class RecordFileTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  std::string path_ = folder_.Path("records.log");
};

TEST_F(RecordFileTest, FileIsMadeByTheFirstRecord) {
  RecordFile file(path_);
  EXPECT_FALSE(std::filesystem::exists(path_));
  file.Append("one\n");
  file.Append("two\n");
  EXPECT_EQ(ReadText(path_), "one\ntwo\n");
}

TEST_F(RecordFileTest, MissingFoldersAreMade) {
  RecordFile(folder_.Path("a/b/records.log")).Append("one\n");
  EXPECT_EQ(ReadText(folder_.Path("a/b/records.log")), "one\n");
}

TEST_F(RecordFileTest, ExistingFileIsContinued) {
  WriteText(path_, "before\n");
  RecordFile(path_).Append("one\n");
  EXPECT_EQ(ReadText(path_), "before\none\n");
}

TEST_F(RecordFileTest, FileMovedAwayIsMadeAnew) {
  RecordFile file(path_);
  file.Append("one\n");
  std::filesystem::rename(path_, path_ + ".old");
  file.Append("two\n");
  EXPECT_EQ(ReadText(path_), "two\n");
  EXPECT_EQ(ReadText(path_ + ".old"), "one\n");
}

TEST_F(RecordFileTest, RecordThatTheDiskCannotTakeIsLostAndTheNextOneIsWhole) {
  RecordFile file(path_);
  file.Append("one\n");
  {
    const ScopedFileSizeLimit full(8);
    file.Append("second\n");
    file.Append("third\n");
  }
  file.Append("fourth\n");
  file.Append("fifth\n");
  EXPECT_EQ(ReadText(path_), "one\nseco\nfourth\nfifth\n");
}

TEST_F(RecordFileTest, FullDeviceTakesNothing) {
  RecordFile file("/dev/full");
  EXPECT_NO_THROW(file.Append("one\n"));
}

TEST_F(RecordFileTest, FolderInTheWayLosesTheRecordUntilItIsGone) {
  std::filesystem::create_directory(path_);
  RecordFile file(path_);
  EXPECT_NO_THROW(file.Append("one\n"));
  std::filesystem::remove(path_);
  file.Append("two\n");
  EXPECT_EQ(ReadText(path_), "two\n");
}

TEST_F(RecordFileTest, PipeIsNotWrittenEvenWithAReader) {
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_NO_THROW(RecordFile(path_).Append("one\n"));
  const FileDescriptor reader(open(path_.c_str(), O_RDONLY | O_NONBLOCK));
  ASSERT_TRUE(reader.IsOpen());
  RecordFile(path_).Append("two\n");
  char byte = 0;
  EXPECT_EQ(read(reader.Number(), &byte, 1), 0);
}

TEST_F(RecordFileTest, FileThatMayNotBeWrittenLosesTheRecord) {
  const ScopedUser user(folder_.Path());
  WriteText(path_, "before\n");
  const ScopedMode mode(path_, 0400);
  EXPECT_NO_THROW(RecordFile(path_).Append("one\n"));
  EXPECT_EQ(ReadText(path_), "before\n");
}

TEST_F(RecordFileTest, FileThatMayNotBeReadIsWrittenAllTheSame) {
  const ScopedUser user(folder_.Path());
  {
    WriteText(path_, "before\n");
    const ScopedMode mode(path_, 0200);
    RecordFile(path_).Append("one\n");
  }
  EXPECT_EQ(ReadText(path_), "before\none\n");
}

TEST_F(RecordFileTest, FolderThatCannotBeMadeIsAFailureUntilItCan) {
  WriteText(folder_.Path("way"), "");
  RecordFile file(folder_.Path("way/on/records.log"));
  EXPECT_NO_THROW(file.Append("lost\n"));
  std::filesystem::remove(folder_.Path("way"));
  std::filesystem::create_symlink("nowhere", folder_.Path("way"));
  EXPECT_THROW(file.Append("lost\n"), Error);
  std::filesystem::remove(folder_.Path("way"));
  file.Append("one\n");
  EXPECT_EQ(ReadText(folder_.Path("way/on/records.log")), "one\n");
}

TEST_F(RecordFileTest, NoPathIsNoFile) { EXPECT_THROW(RecordFile("").Append("one\n"), Error); }

TEST_F(RecordFileTest, RecordsOfSeveralThreadsStayWhole) {
  std::vector<std::thread> writers;
  for (int writer = 0; writer < 4; ++writer) writers.emplace_back(AppendRecords, path_, writer, 50);
  for (auto& writer : writers) writer.join();
  ExpectWholeRecords(ReadText(path_), 4, 50);
}

TEST_F(RecordFileTest, RecordsOfSeveralProcessesStayWhole) {
  std::vector<pid_t> writers;
  for (int writer = 0; writer < 3; ++writer) {
    writers.push_back(StartProcess([&] { AppendRecords(path_, writer, 50); }));
  }
  for (const auto writer : writers) EXPECT_TRUE(EndsWell(writer));
  ExpectWholeRecords(ReadText(path_), 3, 50);
}

}  // namespace
}  // namespace velmoria::test

#include "velmoria/platform/posix/spdlog_log_service.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <syslog.h>

#include "tests/support/processes.h"
#include "tests/support/scoped_permissions.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/platform/posix/file_descriptor.h"

namespace velmoria::test {
namespace {

using namespace std::string_literals;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

// What reaches the system log: a stand-in for syslog(3), which nobody could read back.
std::vector<std::pair<int, std::string>> systemLog;

void WriteToSystemLog(int priority, const char* text) { systemLog.emplace_back(priority, text); }

// What the process prints as errors goes to a file, for the length of a scope.
class CapturedErrors {
 public:
  explicit CapturedErrors(std::string path) : path_(std::move(path)), former_(dup(STDERR_FILENO)) {
    const FileDescriptor file(open(path_.c_str(), O_WRONLY | O_CREAT, 0600));
    dup2(file.Number(), STDERR_FILENO);
  }
  ~CapturedErrors() { dup2(former_.Number(), STDERR_FILENO); }
  CapturedErrors(const CapturedErrors&) = delete;
  CapturedErrors& operator=(const CapturedErrors&) = delete;

  std::string Text() const { return ReadText(path_); }

 private:
  std::string path_;
  FileDescriptor former_;
};

class SpdlogLogServiceTest : public testing::Test {
 public:
  SpdlogLogServiceTest() { systemLog.clear(); }

 protected:
  void ExpectQuietLoss(const std::string& path) {
    const CapturedErrors errors(folder_.Path("errors"));
    EXPECT_NO_THROW(log_.Start(path, LogServiceMode::File));
    EXPECT_NO_THROW(log_.Write("lost", LogEventType::Error));
    EXPECT_NO_THROW(log_.Write("lost too", LogEventType::Information));
    EXPECT_EQ(errors.Text(), "") << path;
  }
  void ExpectWritten(const std::string& path) {
    log_.Start(path, LogServiceMode::File);
    log_.Write("written again", LogEventType::Error);
    EXPECT_THAT(ReadText(path), ContainsRegex("^[^\n]* written again\n$"));
  }

  TemporaryFolder folder_;
  std::string file_ = folder_.Path("messages.log");
  SpdlogLogService log_{WriteToSystemLog};
};

TEST_F(SpdlogLogServiceTest, RecordHasTimeProcessAndText) {
  log_.Start(file_, LogServiceMode::File);
  log_.Write("15065-Error", LogEventType::Error);
  EXPECT_THAT(ReadText(file_),
              ContainsRegex("^[0-9-]{10} [0-9:.]{12} " + std::to_string(getpid()) + " 15065-Error\n$"));
}

TEST_F(SpdlogLogServiceTest, FurtherLinesOfARecordAreIndentedHoweverTheyEnd) {
  log_.Start(file_, LogServiceMode::File);
  log_.Write("heading\r\ntext\nextra\rmore\r\n\r\nlast", LogEventType::Information);
  EXPECT_THAT(ReadText(file_), HasSubstr(" heading\n    text\n    extra\n    more\n    \n    last\n"));
}

TEST_F(SpdlogLogServiceTest, ExistingFileIsContinued) {
  WriteText(file_, "before\n");
  log_.Start(file_, LogServiceMode::File);
  log_.Write("after", LogEventType::Error);
  EXPECT_THAT(ReadText(file_), testing::StartsWith("before\n"));
  EXPECT_THAT(ReadText(file_), testing::EndsWith(" after\n"));
}

TEST_F(SpdlogLogServiceTest, StartAloneMakesNoFile) {
  log_.Start(file_, LogServiceMode::File);
  EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(SpdlogLogServiceTest, StartWithAnotherFileLeavesTheFirst) {
  log_.Start(file_, LogServiceMode::File);
  log_.Write("one", LogEventType::Error);
  log_.Start(file_ + "2", LogServiceMode::File);
  log_.Write("two", LogEventType::Error);
  EXPECT_THAT(ReadText(file_), testing::EndsWith(" one\n"));
  EXPECT_THAT(ReadText(file_ + "2"), ContainsRegex("^[^\n]* two\n$"));
}

TEST_F(SpdlogLogServiceTest, DefaultNameWhichCanBeNoPathLiesInTheStateFolder) {
  const ScopedVariable state("XDG_STATE_HOME", folder_.Path("state").c_str());
  log_.Start("c:\\VelmoriaMessages.log", LogServiceMode::File);
  log_.Write("text", LogEventType::Error);
  EXPECT_THAT(ReadText(folder_.Path("state/velmoria/VelmoriaMessages.log")), testing::EndsWith(" text\n"));
}

TEST_F(SpdlogLogServiceTest, FolderThatCannotBeMadeLosesTheTextQuietly) {
  std::filesystem::create_symlink("nowhere", folder_.Path("way"));
  ExpectQuietLoss(folder_.Path("way/on/messages.log"));
  std::filesystem::remove(folder_.Path("way"));
  ExpectWritten(folder_.Path("way/on/messages.log"));
}

TEST_F(SpdlogLogServiceTest, FileInTheWayOfTheFolderLosesTheTextQuietly) {
  WriteText(folder_.Path("way"), "");
  ExpectQuietLoss(folder_.Path("way/messages.log"));
  std::filesystem::remove(folder_.Path("way"));
  ExpectWritten(folder_.Path("way/messages.log"));
}

TEST_F(SpdlogLogServiceTest, FolderInTheWayLosesTheTextQuietly) {
  std::filesystem::create_directory(file_);
  ExpectQuietLoss(file_);
  std::filesystem::remove(file_);
  ExpectWritten(file_);
}

TEST_F(SpdlogLogServiceTest, FolderThatMayNotBeWrittenLosesTheTextQuietly) {
  const ScopedUser user(folder_.Path());
  std::filesystem::create_directory(folder_.Path("closed"));
  {
    const ScopedMode closed(folder_.Path("closed"), 0500);
    ExpectQuietLoss(folder_.Path("closed/messages.log"));
    ExpectQuietLoss(folder_.Path("closed/below/messages.log"));
  }
  ExpectWritten(folder_.Path("closed/messages.log"));
}

TEST_F(SpdlogLogServiceTest, FileThatMayNotBeWrittenLosesTheTextQuietly) {
  const ScopedUser user(folder_.Path());
  WriteText(file_, "");
  {
    const ScopedMode closed(file_, 0400);
    ExpectQuietLoss(file_);
  }
  ExpectWritten(file_);
}

TEST_F(SpdlogLogServiceTest, FullDiskLosesTheTextQuietly) {
  ExpectQuietLoss("/dev/full");
  {
    const ScopedFileSizeLimit full(0);
    ExpectQuietLoss(file_);
  }
  ExpectWritten(file_);
}

TEST_F(SpdlogLogServiceTest, RecordBehindOneCutOffBeginsALineAlsoAfterARestart) {
  log_.Start(file_, LogServiceMode::File);
  {
    const ScopedFileSizeLimit full(10);
    log_.Write("cut off", LogEventType::Error);
  }
  log_.Start(file_, LogServiceMode::File);
  log_.Write("whole", LogEventType::Error);
  EXPECT_THAT(ReadText(file_), ContainsRegex("^[0-9-]{10}\n[0-9-]{10} [0-9:.]{12} [0-9]+ whole\n$"));
}

TEST_F(SpdlogLogServiceTest, NameOfNoFileLosesTheTextQuietly) {
  for (const auto& name : {"/"s, folder_.Path() + "/"}) ExpectQuietLoss(name);
  ExpectWritten(file_);
}

TEST_F(SpdlogLogServiceTest, NameThatCanBeNoPathLosesNothing) {
  const ScopedVariable state("XDG_STATE_HOME", folder_.Path("state").c_str());
  for (const auto& name : {""s, "c:\\"s, "a\0b"s}) {
    log_.Start(name, LogServiceMode::File);
    log_.Write("text", LogEventType::Error);
  }
  EXPECT_EQ(std::ranges::count(ReadText(folder_.Path("state/velmoria/VelmoriaMessages.log")), '\n'), 3);
}

// "<writer>.<number> begin", a long line, "<writer>.<number> end".
std::string LongText(int writer, int number, std::string_view lineBreak) {
  const auto name = std::to_string(writer).append(".").append(std::to_string(number));
  std::string text;
  text.append(name).append(" begin").append(lineBreak).append(10000, 'x').append(lineBreak).append(name).append(" end");
  return text;
}

TEST_F(SpdlogLogServiceTest, TextsOfSeveralThreadsAndProcessesStayWhole) {
  const auto write = [&](int writer) {
    SpdlogLogService own;
    own.Start(file_, LogServiceMode::File);
    for (int number = 0; number < 25; ++number) own.Write(LongText(writer, number, "\n"), LogEventType::Error);
  };
  const auto process = StartProcess([&] { write(9); });
  std::vector<std::thread> threads;
  for (int writer = 0; writer < 3; ++writer) threads.emplace_back(write, writer);
  for (auto& thread : threads) thread.join();
  EXPECT_TRUE(EndsWell(process));
  const auto file = ReadText(file_);
  for (const int writer : {0, 1, 2, 9}) {
    for (int number = 0; number < 25; ++number) {
      const auto at = file.find(LongText(writer, number, "\n    ").append("\n"));
      EXPECT_NE(at, std::string::npos) << writer << "." << number;
    }
  }
  EXPECT_EQ(std::ranges::count(file, '\n'), 300);
}

TEST_F(SpdlogLogServiceTest, SystemLogTakesTheEventTypeAsItsPriority) {
  log_.Start({}, LogServiceMode::System);
  log_.Write("one", LogEventType::Error);
  log_.Write("two", LogEventType::Warning);
  log_.Write("three", LogEventType::Information);
  EXPECT_THAT(systemLog, ElementsAre(Pair(LOG_USER | LOG_ERR, "one"), Pair(LOG_USER | LOG_WARNING, "two"),
                                     Pair(LOG_USER | LOG_INFO, "three")));
}

TEST_F(SpdlogLogServiceTest, SystemLogTakesARecordAsOneLine) {
  log_.Start({}, LogServiceMode::Automatic);
  log_.Write("heading\r\ntext\0with nul"s, LogEventType::Error);
  EXPECT_THAT(systemLog, ElementsAre(Pair(LOG_USER | LOG_ERR, "heading | text with nul")));
}

TEST_F(SpdlogLogServiceTest, AutomaticMeansTheSystemLogWhateverTheFileName) {
  log_.Start(file_, LogServiceMode::Automatic);
  log_.Write("text", LogEventType::Error);
  EXPECT_EQ(systemLog.size(), 1U);
  EXPECT_FALSE(std::filesystem::exists(file_));
}

// Who listens to the system's own log is not for a test to know: only that nothing is printed and nothing fails.
TEST_F(SpdlogLogServiceTest, OwnSystemLogPrintsNothing) {
  const CapturedErrors errors(folder_.Path("errors"));
  SpdlogLogService log;
  EXPECT_NO_THROW(log.Start({}, LogServiceMode::System));
  EXPECT_NO_THROW(log.Write("velmoria unit test", LogEventType::Information));
  EXPECT_EQ(errors.Text(), "");
}

}  // namespace
}  // namespace velmoria::test

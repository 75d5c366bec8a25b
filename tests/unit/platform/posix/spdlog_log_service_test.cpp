#include "velmoria/platform/posix/spdlog_log_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

class SpdlogLogServiceTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  std::string file_ = folder_.Path("messages.log");
  SpdlogLogService log_;
};

TEST_F(SpdlogLogServiceTest, IsOffUntilItIsStarted) {
  log_.Write("lost", LogEventType::Error);
  EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(SpdlogLogServiceTest, RecordHasTimeProcessAndText) {
  log_.Start(file_, LogServiceMode::File);
  log_.Write("15065-Error", LogEventType::Error);
  EXPECT_THAT(ReadText(file_), ContainsRegex("^[0-9-]+ [0-9:.]+ [0-9]+ 15065-Error\n$"));
}

TEST_F(SpdlogLogServiceTest, FurtherLinesOfARecordAreIndented) {
  log_.Start(file_, LogServiceMode::File);
  log_.Write("heading\r\ntext\r\nextra", LogEventType::Information);
  EXPECT_THAT(ReadText(file_), HasSubstr(" heading\n    text\n    extra\n"));
}

TEST_F(SpdlogLogServiceTest, TextIsNeverTakenForAFormat) {
  log_.Start(file_, LogServiceMode::File);
  log_.Write("{} {0} %s", LogEventType::Warning);
  EXPECT_THAT(ReadText(file_), HasSubstr(" {} {0} %s\n"));
}

TEST_F(SpdlogLogServiceTest, ExistingFileIsContinued) {
  WriteText(file_, "before\n");
  log_.Start(file_, LogServiceMode::File);
  log_.Write("after", LogEventType::Error);
  EXPECT_THAT(ReadText(file_), testing::StartsWith("before\n"));
  EXPECT_THAT(ReadText(file_), testing::EndsWith(" after\n"));
}

TEST_F(SpdlogLogServiceTest, StartedWithOffWritesNoMore) {
  log_.Start(file_, LogServiceMode::File);
  log_.Start(file_, LogServiceMode::Off);
  log_.Write("lost", LogEventType::Error);
  EXPECT_EQ(ReadText(file_), "");
}

TEST_F(SpdlogLogServiceTest, TwoServicesWriteToOneFile) {
  SpdlogLogService other;
  log_.Start(file_, LogServiceMode::File);
  other.Start(folder_.Path("./messages.log"), LogServiceMode::File);
  log_.Write("one", LogEventType::Error);
  other.Write("two", LogEventType::Error);
  EXPECT_THAT(ReadText(file_), ContainsRegex(" one\n.* two\n$"));
}

TEST_F(SpdlogLogServiceTest, FileThatCannotBeOpenedIsAFailureAndLeavesTheServiceOff) {
  EXPECT_THROW(log_.Start(folder_.Path(), LogServiceMode::File), Error);
  EXPECT_NO_THROW(log_.Write("lost", LogEventType::Error));
}

TEST_F(SpdlogLogServiceTest, SystemLogTakesTexts) {
  log_.Start({}, LogServiceMode::System);
  EXPECT_NO_THROW(log_.Write("velmoria unit test", LogEventType::Information));
}

}  // namespace
}  // namespace velmoria::test

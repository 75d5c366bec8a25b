#include <memory>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fakes.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/platform/posix/spdlog_log_service.h"

namespace velmoria::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// What reaches the system log; a stand-in for syslog(3), which nobody could read back.
std::vector<std::string> systemLog;

std::vector<std::string> FakeRecords(const LogService& service, const std::string&) {
  std::vector<std::string> records;
  for (const auto& line : dynamic_cast<const FakeLogService&>(service).Lines) records.push_back(line.Text);
  return records;
}

// A record starts with time and process; its further lines are indented.
std::vector<std::string> FileRecords(const LogService&, const std::string& path) {
  const std::regex start("(^|\n)[0-9-]{10} [0-9:.]{12} [0-9]+ ");
  const auto text = ReadText(path);
  std::vector<std::string> records(std::sregex_token_iterator(text.begin(), text.end(), start, -1), {});
  for (auto& record : records) {
    if (record.ends_with('\n')) record.pop_back();
  }
  if (!records.empty()) records.erase(records.begin());
  return records;
}

std::vector<std::string> SystemRecords(const LogService&, const std::string&) { return systemLog; }

std::shared_ptr<LogService> MakeFake() { return std::make_shared<FakeLogService>(); }

std::shared_ptr<LogService> MakeReal() {
  return std::make_shared<SpdlogLogService>([](int, const char* text) { systemLog.emplace_back(text); });
}

struct ServiceMaker {
  const char* Name;
  std::shared_ptr<LogService> (*Make)();
  LogServiceMode Mode;
  std::vector<std::string> (*Records)(const LogService&, const std::string& path);
};

class LogServiceTest : public testing::TestWithParam<ServiceMaker> {
 public:
  LogServiceTest() { systemLog.clear(); }

 protected:
  void Start() { log_->Start(path_, GetParam().Mode); }
  std::vector<std::string> Records() const { return GetParam().Records(*log_, path_); }

  TemporaryFolder folder_;
  std::string path_ = folder_.Path("messages.log");
  std::shared_ptr<LogService> log_ = GetParam().Make();
};

INSTANTIATE_TEST_SUITE_P(All, LogServiceTest,
                         testing::Values(ServiceMaker{"FakeFile", MakeFake, LogServiceMode::File, FakeRecords},
                                         ServiceMaker{"FakeSystem", MakeFake, LogServiceMode::System, FakeRecords},
                                         ServiceMaker{"FakeAutomatic", MakeFake, LogServiceMode::Automatic,
                                                      FakeRecords},
                                         ServiceMaker{"File", MakeReal, LogServiceMode::File, FileRecords},
                                         ServiceMaker{"System", MakeReal, LogServiceMode::System, SystemRecords},
                                         ServiceMaker{"Automatic", MakeReal, LogServiceMode::Automatic, SystemRecords}),
                         [](const auto& test) { return test.param.Name; });

TEST_P(LogServiceTest, IsOffUntilItIsStarted) {
  log_->Write("lost", LogEventType::Error);
  EXPECT_THAT(Records(), IsEmpty());
}

TEST_P(LogServiceTest, TextsOfEveryEventTypeAreTakenInTheirOrder) {
  Start();
  log_->Write("one", LogEventType::Error);
  log_->Write("two", LogEventType::Warning);
  log_->Write("three", LogEventType::Information);
  EXPECT_THAT(Records(), ElementsAre("one", "two", "three"));
}

TEST_P(LogServiceTest, StartedWithOffTakesNoMore) {
  Start();
  log_->Write("one", LogEventType::Error);
  log_->Start(path_, LogServiceMode::Off);
  log_->Write("lost", LogEventType::Error);
  EXPECT_THAT(Records(), ElementsAre("one"));
}

TEST_P(LogServiceTest, StartedAgainItGoesOn) {
  Start();
  log_->Write("one", LogEventType::Error);
  Start();
  log_->Write("two", LogEventType::Error);
  EXPECT_THAT(Records(), ElementsAre("one", "two"));
}

TEST_P(LogServiceTest, TextIsNeverTakenForAFormat) {
  Start();
  log_->Write("{} {0} {:d} %s %n %v", LogEventType::Error);
  EXPECT_THAT(Records(), ElementsAre("{} {0} {:d} %s %n %v"));
}

TEST_P(LogServiceTest, LinesOfATextAreOneRecord) {
  Start();
  log_->Write("one\r\ntwo\nthree\rfour", LogEventType::Error);
  log_->Write("five", LogEventType::Error);
  EXPECT_THAT(Records(), SizeIs(2));
}

TEST_P(LogServiceTest, EmptyTextIsARecord) {
  Start();
  log_->Write("", LogEventType::Error);
  EXPECT_THAT(Records(), ElementsAre(""));
}

TEST_P(LogServiceTest, LongTextStaysWhole) {
  Start();
  const std::string text(200000, 'x');
  log_->Write(text, LogEventType::Error);
  EXPECT_THAT(Records(), ElementsAre(text));
}

TEST_P(LogServiceTest, TextIsUtf8) {
  Start();
  log_->Write("Größe 漢字 🚀", LogEventType::Error);
  EXPECT_THAT(Records(), ElementsAre("Größe 漢字 🚀"));
}

}  // namespace
}  // namespace velmoria::test

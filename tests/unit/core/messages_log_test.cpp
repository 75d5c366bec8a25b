#include <memory>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/core/messages.h"
#include "velmoria/platform/posix/spdlog_log_service.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

constexpr const char* kApplication = "Velmoria v1.0-0";
constexpr const char* kDefaultFile = "c:\\VelmoriaMessages.log";

class MessagesLogTest : public testing::Test {
 protected:
  void Record(std::int32_t number, zSeverityFlags severity, zTypeFlags type = tfUnknown) {
    messages_.SetupItem(
        {.Number = zErrors{number}, .Description = "text", .TypeFlags = type, .SeverityFlags = severity});
  }
  std::string Stored(const char* key) {
    return apartment_.Settings().GetSetting(kApplication, "Exceptions", key, "(none)");
  }

  ScopedApartment apartment_;
  Messages& messages_ = apartment_.Messages();
  FakeLogService& log_ = apartment_.Log();
};

TEST_F(MessagesLogTest, NothingStoredGivesTheDefaults) {
  EXPECT_EQ(messages_.LogSeverityFlags(), svfAll);
  EXPECT_EQ(messages_.LogTypeFlags(), tfAll);
  EXPECT_EQ(messages_.LogMode(), lmOff);
  EXPECT_EQ(messages_.LogFileName(), kDefaultFile);
  EXPECT_TRUE(messages_.LogOverwrite());
}

TEST_F(MessagesLogTest, LogIsStartedOnceAtTheStart) {
  EXPECT_EQ(log_.Starts, 1);
  EXPECT_EQ(log_.Mode, LogServiceMode::Off);
}

TEST_F(MessagesLogTest, WithTheLogOffAMessageIsRecordedAndNotWritten) {
  Record(13, svfError);
  EXPECT_EQ(messages_.Count(), 1);
  EXPECT_TRUE(log_.Lines.empty());
}

TEST_F(MessagesLogTest, DetailsOfTheMessageAreWritten) {
  messages_.SetLogMode(lmAutomatic);
  Record(13, svfError);
  ASSERT_EQ(log_.Lines.size(), 1U);
  EXPECT_EQ(log_.Lines[0].Text, messages_.Item(1)->Details());
}

TEST_F(MessagesLogTest, EachModeStartsTheServiceInItsOwn) {
  struct Row {
    zLogModes Mode;
    LogServiceMode Service;
  };
  for (const auto& [mode, service] : {Row{lmAutomatic, LogServiceMode::Automatic}, Row{lmWindows, LogServiceMode::File},
                                      Row{lmWinNT, LogServiceMode::System}, Row{lmOff, LogServiceMode::Off},
                                      Row{zLogModes{9}, LogServiceMode::Off}}) {
    messages_.SetLogMode(mode);
    EXPECT_EQ(log_.Mode, service);
    EXPECT_EQ(log_.FileName, kDefaultFile);
  }
}

TEST_F(MessagesLogTest, TypeFlagsLeaveOutTheWarningsOfTheDatabaseEngine) {
  messages_.SetupLogging({.LogTypeFlags = tfVelmoria});
  auto engine = Make<rdoEngine>();
  engine->rdoErrors().push_back({.Number = 1205, .Description = "deadlock"});
  apartment_.State().rdoEngine = engine;
  Record(15123, svfError);
  Record(3021, svfWarning, tfDAO);
  EXPECT_EQ(messages_.Count(), 3);
  ASSERT_EQ(log_.Lines.size(), 1U);
  EXPECT_EQ(log_.Lines[0].Text, messages_.Item("15123")->Details());
}

TEST_F(MessagesLogTest, TypeFlagsOfTheLibraryLeaveOutTheDaoWarningsBesideAMessage) {
  messages_.SetupLogging({.LogTypeFlags = tfVelmoria});
  apartment_.State().DaoErrors = {{.Number = 3146, .Description = "ODBC call failed"}, {.Number = 15032}};
  Record(15032, svfError);
  ASSERT_TRUE(messages_.Item("3146"));
  EXPECT_EQ(messages_.Item("3146")->TypeFlags(), tfDAO);
  ASSERT_EQ(log_.Lines.size(), 1U);
  EXPECT_EQ(log_.Lines[0].Text, messages_.Item("15032")->Details());
}

TEST_F(MessagesLogTest, CatalogueMessageCountsAsVelmoriaWithoutTheFlag) {
  messages_.SetupLogging({.LogTypeFlags = tfRDO});
  Record(15065, svfError, tfUnknown);
  EXPECT_TRUE(log_.Lines.empty());
}

TEST_F(MessagesLogTest, TypeZeroIsAlwaysWritten) {
  messages_.SetupLogging({.LogTypeFlags = tfUnknown});
  Record(13, svfError);
  EXPECT_EQ(log_.Lines.size(), 1U);
}

TEST_F(MessagesLogTest, SeverityFlagsSelect) {
  messages_.SetupLogging({.LogSeverityFlags = svfWarning});
  Record(13, svfError);
  Record(14, svfInfo);
  Record(15, svfWarning);
  ASSERT_EQ(log_.Lines.size(), 1U);
  EXPECT_EQ(log_.Lines[0].Text, messages_.Item("15")->Details());
}

TEST_F(MessagesLogTest, SeverityZeroIsAlwaysWrittenAsAnError) {
  messages_.SetupLogging({.LogSeverityFlags = svfNone});
  Record(13, svfNone);
  ASSERT_EQ(log_.Lines.size(), 1U);
  EXPECT_EQ(log_.Lines[0].Type, LogEventType::Error);
}

TEST_F(MessagesLogTest, EventTypeFollowsTheSeverity) {
  messages_.SetLogMode(lmAutomatic);
  Record(11, svfWarning);
  Record(12, svfInfo);
  Record(13, svfError);
  Record(14, svfWarning | svfError);
  ASSERT_EQ(log_.Lines.size(), 4U);
  EXPECT_EQ(log_.Lines[0].Type, LogEventType::Warning);
  EXPECT_EQ(log_.Lines[1].Type, LogEventType::Information);
  EXPECT_EQ(log_.Lines[2].Type, LogEventType::Error);
  EXPECT_EQ(log_.Lines[3].Type, LogEventType::Error);
}

TEST_F(MessagesLogTest, SuspendedMessagesAreNotWritten) {
  messages_.SetLogMode(lmAutomatic);
  messages_.SetSuspendRoutine("Test.Routine");
  Record(13, svfError);
  EXPECT_TRUE(log_.Lines.empty());
}

TEST_F(MessagesLogTest, DeclinedRepeatIsNotWritten) {
  messages_.SetLogMode(lmAutomatic);
  Record(13, svfError);
  Record(13, svfError);
  EXPECT_EQ(log_.Lines.size(), 1U);
}

TEST_F(MessagesLogTest, RepeatedInformationIsWrittenEachTime) {
  messages_.SetLogMode(lmAutomatic);
  Record(15129, svfInfo);
  Record(15129, svfInfo);
  EXPECT_EQ(messages_.Count(), 1);
  EXPECT_EQ(log_.Lines.size(), 2U);
}

TEST_F(MessagesLogTest, SettingAPresentValueDoesNotRestart) {
  messages_.SetLogMode(messages_.LogMode());
  messages_.SetLogSeverityFlags(messages_.LogSeverityFlags());
  messages_.SetLogTypeFlags(messages_.LogTypeFlags());
  messages_.SetLogFileName(messages_.LogFileName());
  messages_.SetLogOverwrite(messages_.LogOverwrite());
  EXPECT_EQ(log_.Starts, 1);
}

TEST_F(MessagesLogTest, SettingAnotherValueRestarts) {
  messages_.SetLogMode(lmWindows);
  EXPECT_EQ(log_.Starts, 2);
  messages_.SetLogSeverityFlags(svfError);
  EXPECT_EQ(log_.Starts, 3);
  messages_.SetLogTypeFlags(tfRDO);
  EXPECT_EQ(log_.Starts, 4);
  messages_.SetLogFileName("other.log");
  EXPECT_EQ(log_.Starts, 5);
  EXPECT_EQ(log_.FileName, "other.log");
}

TEST_F(MessagesLogTest, OverwriteRestartsAndChangesNothingElse) {
  messages_.SetLogMode(lmWindows);
  messages_.SetLogOverwrite(false);
  EXPECT_EQ(log_.Starts, 3);
  EXPECT_EQ(log_.FileName, kDefaultFile);
  EXPECT_EQ(log_.Mode, LogServiceMode::File);
}

TEST_F(MessagesLogTest, SetupLoggingRestartsOnceEvenWithThePresentValues) {
  messages_.SetupLogging();
  messages_.SetupLogging();
  EXPECT_EQ(log_.Starts, 3);
}

TEST_F(MessagesLogTest, SetupLoggingStoresAllFive) {
  messages_.SetupLogging({lmWindows, svfError, tfDAO, "a.log", true});
  EXPECT_EQ(messages_.LogMode(), lmWindows);
  EXPECT_EQ(messages_.LogSeverityFlags(), svfError);
  EXPECT_EQ(messages_.LogTypeFlags(), tfDAO);
  EXPECT_EQ(messages_.LogFileName(), "a.log");
  EXPECT_TRUE(messages_.LogOverwrite());
}

TEST_F(MessagesLogTest, SetupLoggingWithoutArgumentsLogsEverything) {
  messages_.SetupLogging();
  EXPECT_EQ(messages_.LogMode(), lmAutomatic);
  EXPECT_EQ(static_cast<std::int32_t>(messages_.LogSeverityFlags()), 7);
  EXPECT_EQ(messages_.LogTypeFlags(), tfAll);
  EXPECT_FALSE(messages_.LogOverwrite());
}

TEST_F(MessagesLogTest, SetupLoggingWithAnEmptyFileNameKeepsTheOldOne) {
  messages_.SetLogFileName("kept.log");
  messages_.SetupLogging({.LogMode = lmWindows, .LogFileName = ""});
  EXPECT_EQ(messages_.LogFileName(), "kept.log");
}

TEST_F(MessagesLogTest, LogThatFailsLosesTheTextAndNothingElse) {
  messages_.SetLogMode(lmAutomatic);
  log_.FailWrites = true;
  EXPECT_NO_THROW(Record(13, svfError));
  EXPECT_EQ(messages_.Count(), 1);
}

TEST_F(MessagesLogTest, LogThatCannotBeStartedStopsNothing) {
  log_.FailStarts = true;
  EXPECT_NO_THROW(messages_.SetLogMode(lmWindows));
  EXPECT_NO_THROW(messages_.SetupLogging());
  Record(13, svfError);
  EXPECT_EQ(messages_.Count(), 1);
  EXPECT_EQ(log_.Starts, 3);
}

TEST_F(MessagesLogTest, TextBehindARestartIsWrittenAgain) {
  messages_.SetLogMode(lmAutomatic);
  log_.FailWrites = true;
  Record(13, svfError);
  log_.FailWrites = false;
  messages_.SetLogMode(lmWinNT);
  Record(14, svfError);
  ASSERT_EQ(log_.Lines.size(), 1U);
  EXPECT_EQ(log_.Lines[0].Text, messages_.Item("14")->Details());
}

TEST_F(MessagesLogTest, ClearKeepsTheLogSettings) {
  messages_.SetupLogging({lmWinNT, svfError, tfDAO, "a.log", true});
  messages_.Clear();
  EXPECT_EQ(messages_.LogMode(), lmWinNT);
  EXPECT_EQ(messages_.LogFileName(), "a.log");
  EXPECT_EQ(log_.Starts, 2);
}

TEST_F(MessagesLogTest, DefaultFileNameStaysWhatItIsWhereItCanBeNoPath) {
  messages_.SetLogMode(lmWindows);
  apartment_.State().End();
  EXPECT_EQ(Stored("LogFileName"), kDefaultFile);
  EXPECT_EQ(log_.FileName, kDefaultFile);
}

TEST_F(MessagesLogTest, SettingsAreStoredAsTextAtTheEnd) {
  messages_.SetupLogging({lmWinNT, svfAll, tfRDO, "x.log", true});
  EXPECT_EQ(Stored("LogMode"), "(none)");
  apartment_.State().End();
  EXPECT_EQ(Stored("LogMode"), "3");
  EXPECT_EQ(Stored("LogSeverityFlags"), "-1");
  EXPECT_EQ(Stored("LogTypeFlags"), "8");
  EXPECT_EQ(Stored("LogFileName"), "x.log");
  EXPECT_EQ(Stored("LogOverwrite"), "True");
}

TEST_F(MessagesLogTest, AllFiveSettingsAreStoredInOneStep) {
  messages_.SetupLogging({lmWinNT, svfAll, tfRDO, "x.log", true});
  messages_.SaveLogSettings(apartment_.State());
  EXPECT_EQ(apartment_.Settings().Writes, 1);
  EXPECT_EQ(apartment_.Settings().Keys(kApplication, "Exceptions").size(), 5U);
}

void LogForReal(ApartmentState& state) { state.Platform.Log = std::make_shared<SpdlogLogService>(); }

TEST(MessagesLogFileTest, DetailsReachTheFileOfTheirName) {
  const TemporaryFolder folder;
  ScopedApartment apartment(std::make_shared<FakeSettingsStore>(), LogForReal);
  apartment.Messages().SetupLogging({.LogMode = lmWindows, .LogFileName = folder.Path("a.log")});
  apartment.Messages().SetupItem({.Number = zErrors{13}, .Description = "lost", .SeverityFlags = svfError});
  EXPECT_THAT(ReadText(folder.Path("a.log")), testing::HasSubstr(" 13-Error-"));
  EXPECT_THAT(ReadText(folder.Path("a.log")), testing::EndsWith("\n    lost\n"));
}

TEST(MessagesLogFileTest, ExistingFileIsContinuedWhateverOverwriteSays) {
  const TemporaryFolder folder;
  WriteText(folder.Path("a.log"), "before\n");
  ScopedApartment apartment(std::make_shared<FakeSettingsStore>(), LogForReal);
  apartment.Messages().SetupLogging({.LogMode = lmWindows, .LogFileName = folder.Path("a.log"), .LogOverwrite = true});
  apartment.Messages().SetupItem({.Number = zErrors{13}, .SeverityFlags = svfError});
  EXPECT_THAT(ReadText(folder.Path("a.log")), testing::StartsWith("before\n"));
}

TEST(MessagesLogFileTest, UnderTheDefaultNameTheFileLiesInTheStateFolder) {
  const TemporaryFolder folder;
  const ScopedVariable state("XDG_STATE_HOME", folder.Path().c_str());
  ScopedApartment apartment(std::make_shared<FakeSettingsStore>(), LogForReal);
  apartment.Messages().SetLogMode(lmWindows);
  apartment.Messages().SetupItem({.Number = zErrors{13}, .SeverityFlags = svfError});
  EXPECT_EQ(apartment.Messages().LogFileName(), kDefaultFile);
  EXPECT_NE(ReadText(folder.Path("velmoria/VelmoriaMessages.log")), "");
}

TEST(MessagesLogFileTest, SeveralApartmentsWriteToOneFileWithoutTearingItsLines) {
  const TemporaryFolder folder;
  const auto write = [&folder](std::int32_t first) {
    ScopedApartment apartment(std::make_shared<FakeSettingsStore>(), LogForReal);
    apartment.Messages().SetupLogging({.LogMode = lmWindows, .LogFileName = folder.Path("a.log")});
    for (std::int32_t number = first; number < first + 50; ++number) {
      apartment.Messages().SetupItem({.Number = zErrors{number},
                                      .Description = "begin " + std::string(5000, 'x') + "\r\nend",
                                      .SeverityFlags = svfError});
    }
  };
  std::vector<std::thread> threads;
  for (const std::int32_t first : {1000, 2000, 3000}) threads.emplace_back(write, first);
  for (auto& thread : threads) thread.join();
  const auto text = ReadText(folder.Path("a.log"));
  const std::regex record("[0-9-]+ [0-9:.]+ [0-9]+ [123]0[0-9]{2}-Error-[^\n]*\n    begin x+\n    end\n");
  std::size_t records = 0;
  std::size_t matched = 0;
  for (std::size_t at = 0; at < text.size(); ++records) {
    const auto end = text.find("\n    end\n", at);
    if (end == std::string::npos) break;
    const auto one = text.substr(at, end + 9 - at);
    const auto filling = one.find("begin ");
    const bool isWhole = filling != std::string::npos && one.compare(filling + 6, 5000, std::string(5000, 'x')) == 0;
    if (isWhole && std::regex_match(one.substr(0, filling + 7) + one.substr(filling + 5006), record)) ++matched;
    at = end + 9;
  }
  EXPECT_EQ(records, 150U);
  EXPECT_EQ(matched, 150U);
}

}  // namespace
}  // namespace velmoria::test

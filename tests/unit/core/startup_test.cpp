#include <filesystem>
#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/processes.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/brokering/business_context.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/profile.h"
#include "velmoria/core/reporting.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/databases.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/servers.h"
#include "velmoria/platform/posix/file_settings_store.h"
#include "velmoria/properties/attribute.h"

namespace velmoria::test {
namespace {

class Anybody : public Reporting {
 public:
  std::string_view ReportedType() const noexcept override { return "Anybody"; }
  void Fail() const { Raise(errItem_Class, "Fail", {"'x'"}); }
};

std::shared_ptr<FakeSettingsStore> UnreadableStore() {
  auto store = std::make_shared<FakeSettingsStore>();
  store->FailReads = true;
  return store;
}

TEST(StartupTest, EveryGlobalIsThereAndNothingIsReported) {
  const ScopedApartment apartment;
  const auto& state = apartment.State();
  EXPECT_TRUE(state.StartedFlag);
  EXPECT_TRUE(state.Messages);
  EXPECT_TRUE(state.Profile);
  EXPECT_TRUE(state.DefaultKeyFormat);
  EXPECT_TRUE(state.ServersData);
  EXPECT_TRUE(state.DatabasesData);
  EXPECT_TRUE(state.Databases->Registered());
  EXPECT_TRUE(state.Servers->Registered());
  EXPECT_TRUE(state.ConnectionContext);
  EXPECT_TRUE(state.BusinessContext);
  EXPECT_EQ(state.Messages->Count(), 0);
}

TEST(StartupTest, SecondRunLeavesTheSameObjectsInPlace) {
  const ScopedApartment apartment;
  auto& state = apartment.State();
  const auto* messages = state.Messages.get();
  const auto* servers = state.Servers.get();
  const auto* context = state.BusinessContext.get();
  Main(state);
  EXPECT_EQ(state.Messages.get(), messages);
  EXPECT_EQ(state.Servers.get(), servers);
  EXPECT_EQ(state.BusinessContext.get(), context);
  EXPECT_EQ(apartment.Log().Starts, 1);
}

TEST(StartupTest, DefaultKeyFormatIsPlain) {
  const ScopedApartment apartment;
  const auto& format = *apartment.State().DefaultKeyFormat;
  EXPECT_EQ(format.Name(), "");
  EXPECT_EQ(format.Separator(), "");
  EXPECT_FALSE(format.Locked());
  EXPECT_FALSE(format.IncludeNames());
  EXPECT_FALSE(format.Mixed());
  EXPECT_FALSE(format.EmptyKey());
}

TEST(StartupTest, DefaultContextSupportsEverythingAndSelectsNothing) {
  const ScopedApartment apartment;
  const auto& context = *apartment.State().BusinessContext;
  EXPECT_TRUE(context.SupportsAdd());
  EXPECT_TRUE(context.SupportsRemove());
  EXPECT_TRUE(context.SupportsLoad());
  EXPECT_EQ(context.ServerName(), "");
  EXPECT_EQ(context.ClassName(), "");
  EXPECT_EQ(context.ActionName(), "");
  EXPECT_FALSE(context.ServerLocked());
  EXPECT_FALSE(context.ClassLocked());
  EXPECT_FALSE(context.ActionLocked());
  EXPECT_FALSE(context.Locked());
  EXPECT_EQ(context.CollectionType(), cltDefault);
  EXPECT_EQ(context.ObjectType(), otDefault);
}

TEST(StartupTest, FailingStepBecomesOneWarningUnderItsOwnNumber) {
  const ScopedApartment apartment(UnreadableStore());
  ASSERT_EQ(apartment.Messages().Count(), 1);
  const auto warning = apartment.Messages().Item(1);
  EXPECT_EQ(warning->Number(), 70);
  EXPECT_EQ(warning->SeverityFlags(), svfWarning);
  EXPECT_EQ(warning->TypeFlags(), tfUnknown);
  EXPECT_EQ(warning->TypeName(), "FrameworkGlobals");
  EXPECT_EQ(warning->RoutineName(), "Main");
  EXPECT_NE(warning->ErrLine(), 0);
  EXPECT_EQ(warning->Description(), RuntimeFailureText(RuntimeFailure::PermissionDenied));
}

TEST(StartupTest, StepsBehindAFailingOneStillRun) {
  const ScopedApartment apartment(UnreadableStore());
  EXPECT_FALSE(apartment.State().Profile);
  EXPECT_TRUE(apartment.State().Servers);
  EXPECT_TRUE(apartment.State().BusinessContext);
}

TEST(StartupTest, FailureAtTheStartIsNotWhatLaterErrorsAreRaisedAs) {
  const ScopedApartment apartment(UnreadableStore());
  ExpectRaised(errItem_Class, [] { Anybody().Fail(); }, {.Text = "Index: 'x'", .Count = 2});
}

TEST(StartupTest, DamagedSettingsAreOneWarning) {
  const auto store = std::make_shared<FakeSettingsStore>();
  store->Damage = "damaged lines: 3";
  const ScopedApartment apartment(store);
  ASSERT_EQ(apartment.Messages().Count(), 1);
  const auto warning = apartment.Messages().Item(1);
  EXPECT_EQ(warning->Number(), 75);
  EXPECT_EQ(warning->SeverityFlags(), svfWarning);
  EXPECT_EQ(warning->TypeName(), "FrameworkGlobals");
  EXPECT_EQ(warning->RoutineName(), "Main");
  EXPECT_EQ(warning->Description(), "damaged lines: 3");
  EXPECT_TRUE(apartment.State().Profile);
}

TEST(StartupTest, DamagedSettingsAreNotWhatLaterErrorsAreRaisedAs) {
  const auto store = std::make_shared<FakeSettingsStore>();
  store->Damage = "damaged lines: 3";
  const ScopedApartment apartment(store);
  ExpectRaised(errItem_Class, [] { Anybody().Fail(); }, {.Text = "Index: 'x'", .Count = 2});
}

TEST(StartupTest, DamagedSettingsAreLogged) {
  const auto store = std::make_shared<FakeSettingsStore>();
  store->SaveSetting("Velmoria v1.0-0", "Exceptions", "LogMode", "1");
  store->Damage = "damaged lines: 3";
  const ScopedApartment apartment(store);
  ASSERT_EQ(apartment.Log().Lines.size(), 1U);
  EXPECT_EQ(apartment.Log().Lines[0].Type, LogEventType::Warning);
  EXPECT_EQ(apartment.Log().Lines[0].Text, apartment.Messages().Item(1)->Details());
}

// A store whose readings fail as one of the library's own errors does.
class ReportingStore final : public SettingsStore, public Reporting {
 public:
  std::string_view ReportedType() const noexcept override { return "Store"; }
  std::string GetSetting(std::string_view, std::string_view, std::string_view, std::string_view) override {
    Raise(errFile_Server, "GetSetting", {"'x'"});
  }
  void SaveSettings(std::string_view, std::string_view, const Entries&) override {}
  void DeleteSetting(std::string_view, std::string_view) override {}
  void ReplaceSection(std::string_view, std::string_view, const Entries&) override {}
  std::string TakeDamage(std::string_view) override { return {}; }
};

TEST(StartupTest, CatalogueErrorBecomesAWarningUnderItsCatalogueNumber) {
  const ScopedApartment apartment(std::make_shared<FakeSettingsStore>(), [](ApartmentState& state) {
    state.Platform.Settings = std::make_shared<ReportingStore>();
  });
  ASSERT_EQ(apartment.Messages().Count(), 1);
  EXPECT_EQ(apartment.Messages().Item(1)->Number(), 15047);
  EXPECT_EQ(apartment.Messages().SeverityFlags(), svfWarning);
  EXPECT_FALSE(apartment.State().Profile);
}

void SettingsInTheFile(ApartmentState& state) { state.Platform.Settings = std::make_shared<FileSettingsStore>(); }

class StartupOverAFileTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  ScopedVariable variable_{"VELMORIA_SETTINGS_DIR", folder_.Path().c_str()};
  std::string path_ = folder_.Path("Velmoria v1.0-0.settings");
};

TEST_F(StartupOverAFileTest, WhatCanBeReadOfADamagedFileIsReadAndTheFileIsKeptAtTheEnd) {
  const std::string text =
      "[Exceptions]\nLogFileName=a.log\ngarbage\n[Profile]\n1Name=SupportsRMS\n1DataType=5\n1Value=True\n2Na";
  WriteText(path_, text);
  {
    const ScopedApartment apartment(nullptr, SettingsInTheFile);
    ASSERT_EQ(apartment.Messages().Count(), 1);
    EXPECT_EQ(apartment.Messages().Item(1)->Number(), 75);
    EXPECT_EQ(apartment.Messages().LogFileName(), "a.log");
    EXPECT_EQ(apartment.State().Profile->Item({"SupportsRMS"})->Value(), Variant(true));
    EXPECT_EQ(ReadText(path_), text);
  }
  EXPECT_EQ(ReadText(path_ + ".damaged"), text);
  const ScopedApartment next(nullptr, SettingsInTheFile);
  EXPECT_EQ(next.Messages().Count(), 0);
  EXPECT_EQ(next.Messages().LogFileName(), "a.log");
  EXPECT_EQ(next.State().Profile->Item({"SupportsRMS"})->Value(), Variant(true));
}

TEST_F(StartupOverAFileTest, DamageIsReportedInOneRunAlsoWhenNoSettingChangesInIt) {
  { const ScopedApartment first(nullptr, SettingsInTheFile); }
  const auto damaged = ReadText(path_) + "garbage\n";
  WriteText(path_, damaged);
  {
    const ScopedApartment second(nullptr, SettingsInTheFile);
    EXPECT_EQ(second.Messages().Count(), 1);
  }
  EXPECT_EQ(ReadText(path_ + ".damaged"), damaged);
  const ScopedApartment third(nullptr, SettingsInTheFile);
  EXPECT_EQ(third.Messages().Count(), 0);
}

TEST_F(StartupOverAFileTest, FolderInThePlaceOfTheFileIsOneWarningAndStopsNothing) {
  std::filesystem::create_directory(path_);
  {
    const ScopedApartment apartment(nullptr, SettingsInTheFile);
    ASSERT_EQ(apartment.Messages().Count(), 1);
    EXPECT_EQ(apartment.Messages().Item(1)->Number(), 75);
    ASSERT_TRUE(apartment.State().Profile);
    apartment.State().Profile->SetupItem({"Mine", "kept", dtString});
  }
  const ScopedApartment next(nullptr, SettingsInTheFile);
  EXPECT_EQ(next.Messages().Count(), 0);
  EXPECT_EQ(next.State().Profile->Item({"Mine"})->Value(), Variant("kept"));
  EXPECT_TRUE(std::filesystem::is_directory(path_ + ".damaged"));
}

TEST_F(StartupOverAFileTest, FolderThatCannotHoldSettingsStopsNothing) {
  const ScopedVariable nowhere("VELMORIA_SETTINGS_DIR", "/dev/null/settings");
  const ScopedApartment apartment(nullptr, SettingsInTheFile);
  EXPECT_TRUE(apartment.State().Profile);
  EXPECT_EQ(apartment.Messages().Count(), 0);
  EXPECT_NO_THROW(apartment.State().End());
}

// An apartment with settings of one colour, which saves them again and again.
void SaveInApartment(const char* colour, zLogModes mode, int times) {
  const ScopedApartment apartment(nullptr, SettingsInTheFile);
  auto& profile = *apartment.State().Profile;
  for (const char* name : {"A", "B", "C"}) profile.SetupItem({name, colour, dtString})->SetValue(colour);
  apartment.Messages().SetupLogging({.LogMode = mode, .LogFileName = colour});
  for (int time = 0; time < times; ++time) profile.Update();
}

// What another apartment would read now is all of one colour, or not there yet.
void ExpectOneColour(const std::string& path) {
  const SettingsText text(ReadText(path));
  ASSERT_TRUE(text.DamagedLines().empty());
  if (const auto* colour = text.Find("Profile", "1Value")) {
    for (const char* key : {"2Value", "3Value"}) ASSERT_EQ(*text.Find("Profile", key), *colour);
  }
  const auto* fileName = text.Find("Exceptions", "LogFileName");
  const auto* mode = text.Find("Exceptions", "LogMode");
  EXPECT_EQ(fileName && mode ? *mode : "", !fileName ? "" : *fileName == "red" ? "2" : "3");
}

TEST_F(StartupOverAFileTest, ApartmentsOfSeveralProcessesAndThreadsNeverMixTheirSettings) {
  const auto process = StartProcess([] { SaveInApartment("red", lmWindows, 60); });
  std::thread thread(SaveInApartment, "blue", lmWinNT, 60);
  int status = 0;
  while (waitpid(process, &status, WNOHANG) == 0) ExpectOneColour(path_);
  thread.join();
  EXPECT_EQ(status, 0);
  ExpectOneColour(path_);
  EXPECT_NE(ReadText(path_), "");
}

TEST_F(StartupOverAFileTest, SettingsOfOneRunAreThoseOfTheNext) {
  {
    const ScopedApartment first(nullptr, SettingsInTheFile);
    first.Messages().SetupLogging({lmWinNT, svfError, tfDAO, "c:\\new\\a.log", false});
    first.State().Profile->SetupItem({"Größe = 1", " \r\n\t[x]\\ ", dtString});
  }
  const ScopedApartment second(nullptr, SettingsInTheFile);
  EXPECT_EQ(second.Messages().LogMode(), lmWinNT);
  EXPECT_EQ(second.Messages().LogFileName(), "c:\\new\\a.log");
  EXPECT_EQ(second.State().Profile->Item({"größe = 1"})->Value(), Variant(" \r\n\t[x]\\ "));
}

}  // namespace
}  // namespace velmoria::test

#include <memory>

#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"

namespace velmoria::test {
namespace {

constexpr const char* kApplication = "Velmoria v1.0-0";

TEST(MessagesLogSettingsTest, SettingsOfOneRunAreTheDefaultsOfTheNext) {
  const auto store = std::make_shared<FakeSettingsStore>();
  {
    ScopedApartment first(store);
    first.Messages().SetupLogging({lmWindows, svfError, tfDAO, "a.log", false});
  }
  const ScopedApartment second(store);
  EXPECT_EQ(second.Messages().LogMode(), lmWindows);
  EXPECT_EQ(second.Messages().LogSeverityFlags(), svfError);
  EXPECT_EQ(second.Messages().LogTypeFlags(), tfDAO);
  EXPECT_EQ(second.Messages().LogFileName(), "a.log");
  EXPECT_FALSE(second.Messages().LogOverwrite());
  EXPECT_EQ(second.Log().Starts, 1);
  EXPECT_EQ(second.Log().Mode, LogServiceMode::File);
}

TEST(MessagesLogSettingsTest, TheLastApartmentToEndDecides) {
  const auto store = std::make_shared<FakeSettingsStore>();
  {
    ScopedApartment outer(store);
    outer.Messages().SetLogMode(lmWinNT);
    ScopedApartment inner(store);
    inner.Messages().SetLogMode(lmWindows);
  }
  EXPECT_EQ(store->GetSetting(kApplication, "Exceptions", "LogMode", ""), "3");
}

TEST(MessagesLogSettingsTest, SettingThatIsNoNumberLeavesItsDefault) {
  const auto store = std::make_shared<FakeSettingsStore>();
  store->SaveSetting(kApplication, "Exceptions", "LogMode", "loud");
  store->SaveSetting(kApplication, "Exceptions", "LogTypeFlags", "4");
  const ScopedApartment apartment(store);
  EXPECT_EQ(apartment.Messages().LogMode(), lmOff);
  EXPECT_EQ(apartment.Messages().LogTypeFlags(), tfVelmoria);
}

TEST(MessagesLogSettingsTest, TextThatIsNoValueStaysAsLongAsItsSettingKeepsTheDefault) {
  const auto store = std::make_shared<FakeSettingsStore>();
  for (const char* key : {"LogMode", "LogTypeFlags", "LogOverwrite"}) {
    store->SaveSetting(kApplication, "Exceptions", key, "maybe");
  }
  {
    ScopedApartment apartment(store);
    apartment.Messages().SetLogTypeFlags(tfRDO);
  }
  EXPECT_EQ(store->GetSetting(kApplication, "Exceptions", "LogMode", ""), "maybe");
  EXPECT_EQ(store->GetSetting(kApplication, "Exceptions", "LogOverwrite", ""), "maybe");
  EXPECT_EQ(store->GetSetting(kApplication, "Exceptions", "LogTypeFlags", ""), "8");
}

TEST(MessagesLogSettingsTest, SettingsThatCouldNotBeReadAreNotOverwrittenAtTheEnd) {
  const auto store = std::make_shared<FakeSettingsStore>();
  store->SaveSetting(kApplication, "Exceptions", "LogMode", "2");
  store->FailReads = true;
  {
    const ScopedApartment apartment(store);
    store->FailReads = false;
  }
  EXPECT_EQ(store->GetSetting(kApplication, "Exceptions", "LogMode", ""), "2");
}

TEST(MessagesLogSettingsTest, OtherKeysOfTheSectionStay) {
  const auto store = std::make_shared<FakeSettingsStore>();
  store->SaveSetting(kApplication, "Exceptions", "Mine", "kept");
  { const ScopedApartment apartment(store); }
  EXPECT_EQ(store->GetSetting(kApplication, "Exceptions", "Mine", ""), "kept");
  EXPECT_EQ(store->GetSetting(kApplication, "Exceptions", "LogMode", ""), "0");
}

TEST(MessagesLogSettingsTest, SettingsThatAreNotStoredHaveTheirDefaults) {
  const auto store = std::make_shared<FakeSettingsStore>();
  store->SaveSetting(kApplication, "Exceptions", "LogFileName", "a.log");
  store->SaveSetting(kApplication, "Exceptions", "LogOverwrite", "False");
  const ScopedApartment apartment(store);
  EXPECT_EQ(apartment.Messages().LogFileName(), "a.log");
  EXPECT_FALSE(apartment.Messages().LogOverwrite());
  EXPECT_EQ(apartment.Messages().LogSeverityFlags(), svfAll);
  EXPECT_EQ(apartment.Messages().LogTypeFlags(), tfAll);
  EXPECT_EQ(apartment.Messages().LogMode(), lmOff);
}

TEST(MessagesLogSettingsTest, StoreThatFailsStopsNothing) {
  const auto store = std::make_shared<FakeSettingsStore>();
  store->FailReads = store->FailWrites = true;
  const ScopedApartment apartment(store);
  EXPECT_EQ(apartment.Messages().LogFileName(), "c:\\VelmoriaMessages.log");
  EXPECT_NO_THROW(apartment.State().End());
}

}  // namespace
}  // namespace velmoria::test

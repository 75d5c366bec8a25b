#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/support/fakes.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/platform/posix/file_settings_store.h"

namespace velmoria::test {
namespace {

struct StoreMaker {
  const char* Name;
  std::shared_ptr<SettingsStore> (*Make)(const TemporaryFolder&);
  void (*Damage)(SettingsStore&);  // something of "App" that cannot be read, beside what can
};

class SettingsStoreTest : public testing::TestWithParam<StoreMaker> {
 protected:
  std::string Get(std::string_view key, std::string_view section = "Section") {
    return store_->GetSetting("App", section, key, "(none)");
  }
  /// Expects a text back as a value, and under names with it and of it.
  void ExpectRoundTrip(const std::string& text) {
    store_->SaveSetting("App", "S" + text, "K" + text, text);
    EXPECT_EQ(Get("K" + text, "S" + text), text);
    store_->SaveSetting("App", text, text, text);
    EXPECT_EQ(Get(text, text), text);
  }

  TemporaryFolder folder_;
  std::shared_ptr<SettingsStore> store_ = GetParam().Make(folder_);
};

std::shared_ptr<SettingsStore> MakeFake(const TemporaryFolder&) { return std::make_shared<FakeSettingsStore>(); }

std::shared_ptr<SettingsStore> MakeFile(const TemporaryFolder& folder) {
  return std::make_shared<FileSettingsStore>(folder.Path("settings"));
}

void DamageFake(SettingsStore& store) { dynamic_cast<FakeSettingsStore&>(store).Damage = "damaged"; }

void DamageFile(SettingsStore& store) {
  const auto path = dynamic_cast<FileSettingsStore&>(store).PathOf("App");
  WriteText(path, ReadText(path) + "garbage\n");
}

INSTANTIATE_TEST_SUITE_P(All, SettingsStoreTest,
                         testing::Values(StoreMaker{"Fake", MakeFake, DamageFake},
                                         StoreMaker{"File", MakeFile, DamageFile}),
                         [](const auto& test) { return test.param.Name; });

TEST_P(SettingsStoreTest, UnknownKeyGivesTheTextPassed) { EXPECT_EQ(Get("Key"), "(none)"); }

TEST_P(SettingsStoreTest, SavedValueIsRead) {
  store_->SaveSetting("App", "Section", "Key", "value");
  EXPECT_EQ(Get("Key"), "value");
}

TEST_P(SettingsStoreTest, EmptyValueIsAValue) {
  store_->SaveSetting("App", "Section", "Key", "");
  EXPECT_EQ(Get("Key"), "");
}

TEST_P(SettingsStoreTest, EmptyNamesAreNames) {
  store_->SaveSetting("", "", "", "value");
  store_->SaveSetting("App", "", "Key", "other");
  EXPECT_EQ(store_->GetSetting("", "", "", "(none)"), "value");
  EXPECT_EQ(Get("Key", ""), "other");
  EXPECT_EQ(Get("", ""), "(none)");
}

TEST_P(SettingsStoreTest, LaterValueTakesThePlaceOfTheEarlier) {
  store_->SaveSetting("App", "Section", "Key", "one");
  store_->SaveSetting("App", "Section", "Key", "two");
  EXPECT_EQ(Get("Key"), "two");
}

TEST_P(SettingsStoreTest, SectionsAndKeysAreComparedWithoutRegardToCase) {
  store_->SaveSetting("App", "Section É", "Key Ж", "value");
  EXPECT_EQ(Get("kEY ж", "sECTION é"), "value");
  store_->SaveSetting("App", "SECTION é", "KEY ж", "other");
  EXPECT_EQ(Get("Key Ж", "Section É"), "other");
}

TEST_P(SettingsStoreTest, ApplicationsAreTakenAsTheyStand) {
  store_->SaveSetting("App", "Section", "Key", "value");
  EXPECT_EQ(store_->GetSetting("aPP", "Section", "Key", "(none)"), "(none)");
}

TEST_P(SettingsStoreTest, SectionsAndApplicationsAreApart) {
  store_->SaveSetting("App", "Section", "Key", "here");
  store_->SaveSetting("App", "Other", "Key", "there");
  store_->SaveSetting("App2", "Section", "Key", "elsewhere");
  EXPECT_EQ(Get("Key"), "here");
  EXPECT_EQ(Get("Key", "Other"), "there");
  EXPECT_EQ(store_->GetSetting("App2", "Section", "Key", ""), "elsewhere");
}

TEST_P(SettingsStoreTest, DeletedSectionIsGoneAndOthersStay) {
  store_->SaveSetting("App", "Section", "Key", "here");
  store_->SaveSetting("App", "Other", "Key", "there");
  store_->SaveSetting("App2", "Section", "Key", "elsewhere");
  store_->DeleteSetting("App", "section");
  EXPECT_EQ(Get("Key"), "(none)");
  EXPECT_EQ(Get("Key", "Other"), "there");
  EXPECT_EQ(store_->GetSetting("App2", "Section", "Key", ""), "elsewhere");
}

TEST_P(SettingsStoreTest, DeletingAnUnknownSectionIsNoFailure) {
  store_->SaveSetting("App", "Section", "Key", "here");
  EXPECT_NO_THROW(store_->DeleteSetting("App", "Nowhere"));
  EXPECT_EQ(Get("Key"), "here");
}

TEST_P(SettingsStoreTest, SavedEntriesJoinTheOthersOfTheirSection) {
  store_->SaveSetting("App", "Section", "Old", "1");
  store_->SaveSetting("App", "Section", "Key", "2");
  store_->SaveSettings("App", "sECTION", {{"kEY", "3"}, {"New", "4"}});
  EXPECT_EQ(Get("Old"), "1");
  EXPECT_EQ(Get("Key"), "3");
  EXPECT_EQ(Get("New"), "4");
}

TEST_P(SettingsStoreTest, ReplacedSectionHoldsTheNewEntriesOnly) {
  store_->SaveSetting("App", "Section", "Old", "1");
  store_->SaveSetting("App", "Other", "Key", "there");
  store_->ReplaceSection("App", "sECTION", {{"New", "2"}, {"Newer", "3"}});
  EXPECT_EQ(Get("Old"), "(none)");
  EXPECT_EQ(Get("New"), "2");
  EXPECT_EQ(Get("Newer"), "3");
  EXPECT_EQ(Get("Key", "Other"), "there");
}

TEST_P(SettingsStoreTest, SectionReplacedByNothingIsEmpty) {
  store_->SaveSetting("App", "Section", "Old", "1");
  store_->ReplaceSection("App", "Section", {});
  EXPECT_EQ(Get("Old"), "(none)");
}

TEST_P(SettingsStoreTest, LastOfSeveralEntriesOfOneKeyCounts) {
  store_->ReplaceSection("App", "Section", {{"Key", "1"}, {"kEY", "2"}});
  EXPECT_EQ(Get("Key"), "2");
}

using namespace std::string_view_literals;
constexpr std::string_view kAnyTexts[] = {" blanks at both ends "sv,
                                          "  "sv,
                                          "\t"sv,
                                          "a=b"sv,
                                          "=b"sv,
                                          "[x]"sv,
                                          "]"sv,
                                          "["sv,
                                          "#no comment"sv,
                                          "; neither"sv,
                                          "back\\slash"sv,
                                          "\\"sv,
                                          "\\\\"sv,
                                          "\\n"sv,
                                          "\\x41"sv,
                                          "\\s"sv,
                                          "two\r\nlines"sv,
                                          "\n"sv,
                                          "\r"sv,
                                          "\n\n[Section]\nKey=v\n"sv,
                                          "tab\there"sv,
                                          "nul\0inside"sv,
                                          "\0"sv,
                                          "\x01\x7f"sv,
                                          "\x1b[1m"sv,
                                          "Ärger über Größe, 漢字 🚀"sv,
                                          "\xEF\xBB\xBFmark"sv,
                                          "'quotes\"'"sv,
                                          "\xff\xfe"sv,
                                          "\xc3"sv,
                                          "\xed\xa0\x80"sv,
                                          "\xc2\x85\xe2\x80\xa8"sv,
                                          " "sv,
                                          "%s {} |1|"sv,
                                          "c:\\VelmoriaMessages.log"sv};

TEST_P(SettingsStoreTest, AnyTextRoundTripsAsNameAndAsValue) {
  for (const auto text : kAnyTexts) ExpectRoundTrip(std::string(text));
  ExpectRoundTrip(std::string(100000, 'x'));
  EXPECT_EQ(store_->TakeDamage("App"), "");
}

TEST_P(SettingsStoreTest, ManySettingsComeBack) {
  SettingsStore::Entries entries;
  for (int key = 0; key < 1000; ++key) entries.emplace_back("Key " + std::to_string(key), std::to_string(key * key));
  store_->ReplaceSection("App", "Section", entries);
  for (const auto& [key, value] : entries) EXPECT_EQ(Get(key), value);
}

TEST_P(SettingsStoreTest, NothingIsDamagedAtFirst) {
  EXPECT_EQ(store_->TakeDamage("App"), "");
  store_->SaveSetting("App", "Section", "Key", "value");
  EXPECT_EQ(store_->TakeDamage("App"), "");
}

TEST_P(SettingsStoreTest, DamageIsToldOnceAndLeavesWhatCanBeRead) {
  store_->SaveSetting("App", "Section", "Key", "value");
  GetParam().Damage(*store_);
  EXPECT_NE(store_->TakeDamage("App"), "");
  EXPECT_EQ(store_->TakeDamage("App"), "");
  EXPECT_EQ(Get("Key"), "value");
}

}  // namespace
}  // namespace velmoria::test

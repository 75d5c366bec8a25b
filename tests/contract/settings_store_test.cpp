#include <memory>
#include <string>

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

TEST_P(SettingsStoreTest, AnyTextRoundTripsAsNameAndAsValue) {
  using namespace std::string_literals;
  for (const auto& text : {" blanks at both ends "s,
                           "  "s,
                           "\t"s,
                           "a=b"s,
                           "=b"s,
                           "[x]"s,
                           "]"s,
                           "["s,
                           "#no comment"s,
                           "; neither"s,
                           "back\\slash"s,
                           "\\"s,
                           "\\\\"s,
                           "\\n"s,
                           "\\x41"s,
                           "\\s"s,
                           "two\r\nlines"s,
                           "\n"s,
                           "\r"s,
                           "\n\n[Section]\nKey=v\n"s,
                           "tab\there"s,
                           "nul\0inside"s,
                           "\0"s,
                           "\x01\x7f"s,
                           "\x1b[1m"s,
                           "Ärger über Größe, 漢字 🚀"s,
                           "\xEF\xBB\xBFmark"s,
                           "'quotes\"'"s,
                           "\xff\xfe"s,
                           "\xc3"s,
                           "\xed\xa0\x80"s,
                           "\xc2\x85\xe2\x80\xa8"s,
                           " "s,
                           "%s {} |1|"s,
                           "c:\\VelmoriaMessages.log"s,
                           std::string(100000, 'x')}) {
    store_->SaveSetting("App", "S" + text, "K" + text, text);
    EXPECT_EQ(Get("K" + text, "S" + text), text);
    store_->SaveSetting("App", text, text, text);
    EXPECT_EQ(Get(text, text), text);
  }
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

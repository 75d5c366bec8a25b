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
};

class SettingsStoreTest : public testing::TestWithParam<StoreMaker> {
 protected:
  std::string Get(std::string_view key, std::string_view section = "Section") {
    return store_->GetSetting("App", section, key, "(none)");
  }

  TemporaryFolder folder_;
  std::shared_ptr<SettingsStore> store_ = GetParam().Make(folder_);
};

INSTANTIATE_TEST_SUITE_P(All, SettingsStoreTest,
                         testing::Values(StoreMaker{"Fake",
                                                    [](const TemporaryFolder&) -> std::shared_ptr<SettingsStore> {
                                                      return std::make_shared<FakeSettingsStore>();
                                                    }},
                                         StoreMaker{
                                             "File",
                                             [](const TemporaryFolder& folder) -> std::shared_ptr<SettingsStore> {
                                               return std::make_shared<FileSettingsStore>(folder.Path("settings"));
                                             }}),
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

TEST_P(SettingsStoreTest, LaterValueTakesThePlaceOfTheEarlier) {
  store_->SaveSetting("App", "Section", "Key", "one");
  store_->SaveSetting("App", "Section", "Key", "two");
  EXPECT_EQ(Get("Key"), "two");
}

TEST_P(SettingsStoreTest, NamesAreComparedWithoutRegardToCase) {
  store_->SaveSetting("App", "Section", "Key", "value");
  EXPECT_EQ(Get("kEY", "sECTION"), "value");
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
  store_->DeleteSetting("App", "section");
  EXPECT_EQ(Get("Key"), "(none)");
  EXPECT_EQ(Get("Key", "Other"), "there");
}

TEST_P(SettingsStoreTest, DeletingAnUnknownSectionIsNoFailure) {
  EXPECT_NO_THROW(store_->DeleteSetting("App", "Nowhere"));
}

TEST_P(SettingsStoreTest, ReplacedSectionHoldsTheNewEntriesOnly) {
  store_->SaveSetting("App", "Section", "Old", "1");
  store_->ReplaceSection("App", "Section", {{"New", "2"}, {"Newer", "3"}});
  EXPECT_EQ(Get("Old"), "(none)");
  EXPECT_EQ(Get("New"), "2");
  EXPECT_EQ(Get("Newer"), "3");
}

TEST_P(SettingsStoreTest, AnyTextRoundTripsAsNameAndAsValue) {
  using namespace std::string_literals;
  for (const auto& text :
       {" blanks at both ends "s, "a=b"s, "[x]"s, "]"s, "#no comment"s, "; neither"s, "back\\slash"s, "\\n"s,
        "two\r\nlines"s, "tab\there"s, "nul\0inside"s, "\x01\x7f"s, "Ärger über Größe, 漢字 🚀"s, "'quotes\"'"s,
        "\xff\xfe"s, " "s, "c:\\VelmoriaMessages.log"s}) {
    store_->SaveSetting("App", "S" + text, "K" + text, text);
    EXPECT_EQ(Get("K" + text, "S" + text), text);
    store_->SaveSetting("App", text, text, text);
    EXPECT_EQ(Get(text, text), text);
  }
}

}  // namespace
}  // namespace velmoria::test

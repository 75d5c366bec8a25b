#include "velmoria/core/profile.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/properties/attribute.h"
#include "velmoria/properties/attribute_data.h"

namespace velmoria::test {
namespace {

constexpr const char* kApplication = "Velmoria v1.0-0";
using Keys = std::vector<std::string>;

class ProfileTest : public testing::Test {
 protected:
  void Store(int number, const std::string& name, const std::string& type, const std::string& value) {
    const auto prefix = std::to_string(number);
    store_->SaveSetting(kApplication, "Profile", prefix + "Name", name);
    store_->SaveSetting(kApplication, "Profile", prefix + "DataType", type);
    store_->SaveSetting(kApplication, "Profile", prefix + "Value", value);
  }
  std::string Stored(const char* key) { return store_->GetSetting(kApplication, "Profile", key, "(none)"); }
  Profile& Start() {
    apartment_.reset();
    apartment_ = std::make_unique<ScopedApartment>(store_);
    return *Apartment().Profile;
  }
  void End() { apartment_.reset(); }

  std::shared_ptr<FakeSettingsStore> store_ = std::make_shared<FakeSettingsStore>();
  std::unique_ptr<ScopedApartment> apartment_;
};

TEST_F(ProfileTest, FreshStoreHasNoSettings) { EXPECT_EQ(Start().Count(), 0); }

TEST_F(ProfileTest, StoredSettingsAreReadInOrderWithTheirTypes) {
  Store(1, "SupportsOracle", "5", "True");
  Store(2, "Limit", "2", "42");
  auto& profile = Start();
  ASSERT_EQ(profile.Count(), 2);
  EXPECT_EQ(profile.Item({1})->Name(), "SupportsOracle");
  EXPECT_EQ(profile.Item({1})->Value(), Variant(true));
  EXPECT_EQ(profile.Item({"limit"})->Value(), Variant(42));
}

TEST_F(ProfileTest, SettingWithoutTypeAndValueIsReadAsAnEmptyText) {
  store_->SaveSetting(kApplication, "Profile", "1Name", "Alone");
  const auto setting = Start().Item({"Alone"});
  ASSERT_TRUE(setting);
  EXPECT_EQ(setting->DataType(), dtVariant);
  EXPECT_EQ(setting->Value(), Variant(""));
}

TEST_F(ProfileTest, TypeThatIsNoNumberIsReadAsNone) {
  Store(1, "Odd", "text", "42");
  const auto setting = Start().Item({"Odd"});
  EXPECT_EQ(setting->DataType(), dtVariant);
  EXPECT_EQ(setting->Value(), Variant("42"));
}

TEST_F(ProfileTest, FirstNumberMissingLoadsNothing) {
  Store(2, "Second", "1", "b");
  EXPECT_EQ(Start().Count(), 0);
}

TEST_F(ProfileTest, SettingNamedAsWhatIsMissingEndsTheReading) {
  Store(1, "First", "1", "a");
  Store(2, ".NotFound.", "1", "b");
  Store(3, "Third", "1", "c");
  EXPECT_EQ(Start().Count(), 1);
}

TEST_F(ProfileTest, GapInTheNumbersEndsTheReading) {
  Store(1, "First", "1", "a");
  Store(3, "Third", "1", "c");
  auto& profile = Start();
  EXPECT_EQ(profile.Count(), 1);
  EXPECT_FALSE(profile.Item({"Third"}));
}

TEST_F(ProfileTest, UnknownNameWithoutADefaultGivesNoneAndAddsNothing) {
  auto& profile = Start();
  EXPECT_FALSE(profile.Item({"X"}));
  EXPECT_EQ(profile.Count(), 0);
}

TEST_F(ProfileTest, NumberNeverCreates) {
  auto& profile = Start();
  EXPECT_FALSE(profile.Item({3, "value", dtString, 0}));
  EXPECT_EQ(profile.Count(), 0);
}

TEST_F(ProfileTest, ObjectNeverCreates) {
  auto& profile = Start();
  EXPECT_FALSE(profile.Item({Variant(Apartment().Messages), "value", dtString, 0}));
  EXPECT_EQ(profile.Count(), 0);
}

TEST_F(ProfileTest, WhatNamesNothingNeverCreates) {
  auto& profile = Start();
  EXPECT_FALSE(profile.Item({Variant(), "value", dtString, 0}));
  EXPECT_FALSE(profile.Item({Variant::Missing(), "value", dtString, 0}));
  EXPECT_FALSE(profile.Item({Variant::Null(), "value", dtString, 0}));
  EXPECT_FALSE(profile.Item({true, "value", dtString, 0}));
  EXPECT_EQ(profile.Count(), 0);
  EXPECT_EQ(apartment_->Messages().Count(), 0);
}

TEST_F(ProfileTest, NumberWrittenAsTextIsAName) {
  auto& profile = Start();
  EXPECT_EQ(profile.Item({"3", "value", dtString, 0})->Name(), "3");
  EXPECT_EQ(profile.Count(), 1);
}

TEST_F(ProfileTest, EmptyDefaultIsADefault) {
  const auto made = Start().Item({"Default Username for Engine 3", Variant(), dtString, 0});
  ASSERT_TRUE(made);
  End();
  EXPECT_EQ(Stored("1Name"), "Default Username for Engine 3");
  EXPECT_EQ(Stored("1DataType"), "1");
  EXPECT_EQ(Stored("1Value"), "");
}

TEST_F(ProfileTest, SuspensionByTheHostOutlastsALookUp) {
  auto& profile = Start();
  apartment_->Messages().SetSuspendRoutine("Host.Routine");
  profile.Item({"X"});
  profile.SetupItem({"X", "one", dtString});
  EXPECT_EQ(apartment_->Messages().SuspendRoutine(), "Host.Routine");
}

TEST_F(ProfileTest, UnknownNameWithADefaultIsMadeAndStoredAtTheEnd) {
  auto& profile = Start();
  const auto made = profile.Item({"SupportsOracle", false, dtBoolean, 0});
  ASSERT_TRUE(made);
  EXPECT_EQ(made->Value(), Variant(false));
  EXPECT_TRUE(made->Modifiable());
  End();
  EXPECT_EQ(Stored("1Name"), "SupportsOracle");
  EXPECT_EQ(Stored("1DataType"), "5");
  EXPECT_EQ(Stored("1Value"), "False");
}

TEST_F(ProfileTest, KnownNameKeepsItsValueWhateverTheDefault) {
  Store(1, "SupportsOracle", "5", "True");
  EXPECT_EQ(Start().Item({"SupportsOracle", false, dtBoolean, 0})->Value(), Variant(true));
}

TEST_F(ProfileTest, DefaultThatDoesNotConvertGivesNoneAndLeavesNoMessage) {
  auto& profile = Start();
  EXPECT_FALSE(profile.Item({"X", "maybe", dtBoolean, 0}));
  EXPECT_EQ(profile.Count(), 0);
  EXPECT_EQ(apartment_->Messages().Count(), 0);
  EXPECT_EQ(apartment_->Messages().SuspendRoutine(), "");
}

TEST_F(ProfileTest, SetupItemMakesOnceAndKeepsTheOldValue) {
  auto& profile = Start();
  const auto made = profile.SetupItem({"Name", "one", dtString, 10});
  EXPECT_EQ(made->Size(), 10);
  EXPECT_EQ(profile.SetupItem({"name", "two", dtString, 10}), made);
  EXPECT_EQ(made->Value(), Variant("one"));
}

TEST_F(ProfileTest, SetupItemThatCannotBeMadeGivesNoneAndLeavesNoMessage) {
  auto& profile = Start();
  EXPECT_FALSE(profile.SetupItem({"X", "maybe", dtBoolean}));
  EXPECT_EQ(profile.Count(), 0);
  EXPECT_EQ(apartment_->Messages().Count(), 0);
  EXPECT_EQ(apartment_->Messages().SuspendRoutine(), "");
}

TEST_F(ProfileTest, RemovingWhatIsNotThereIsAFailure) {
  auto& profile = Start();
  ExpectRaised(errItem_Attribute, [&] { profile.Remove("X"); }, {.Text = "X"});
}

TEST_F(ProfileTest, AddingATakenNameIsAFailure) {
  auto& profile = Start();
  const auto made = profile.SetupItem({"X", "one", dtString});
  ExpectRaised(errAdd_Attribute, [&] { profile.Add(made); });
}

TEST_F(ProfileTest, AddedAttributeStandsWhereItIsPut) {
  auto& profile = Start();
  profile.SetupItem({"B", "b", dtString});
  auto data = Make<AttributeData>();
  data->Setup({.Name = "A", .Value = "a"});
  profile.Add(Make<Attribute>(data), {.Before = 1});
  profile.Update();
  EXPECT_EQ(Stored("1Name"), "A");
  EXPECT_EQ(Stored("2Name"), "B");
}

TEST_F(ProfileTest, EmptyProfileLeavesNoSettings) {
  Store(1, "A", "1", "a");
  auto& profile = Start();
  profile.Remove(1);
  profile.Update();
  EXPECT_EQ(store_->Keys(kApplication, "Profile"), Keys{});
}

TEST_F(ProfileTest, ValueWithoutATextFormIsStoredEmptyAndTheOthersStay) {
  auto& profile = Start();
  profile.SetupItem({"Array", Variant::ArrayOfValues({1, 2})});
  profile.SetupItem({"Text", "kept", dtString});
  profile.Update();
  EXPECT_EQ(Stored("1Value"), "");
  EXPECT_EQ(Stored("2Value"), "kept");
}

TEST_F(ProfileTest, UpdateBehindTheEndOfMessagesWritesTheSettingsAlone) {
  auto& profile = Start();
  profile.SetupItem({"A", "a", dtString});
  apartment_->State().Messages = nullptr;
  store_->DeleteSetting(kApplication, "Exceptions");
  profile.Update();
  EXPECT_EQ(Stored("1Name"), "A");
  EXPECT_FALSE(apartment_->State().Messages);
  EXPECT_EQ(store_->Keys(kApplication, "Exceptions"), Keys{});
}

TEST_F(ProfileTest, AfterRemoveAndUpdateTheNumberingClosesUp) {
  auto& profile = Start();
  for (const char* name : {"A", "B", "C"}) profile.SetupItem({name, name, dtString});
  profile.Update();
  profile.Remove("B");
  profile.Update();
  EXPECT_EQ(store_->Keys(kApplication, "Profile"),
            (Keys{"1Name", "1DataType", "1Value", "2Name", "2DataType", "2Value"}));
  EXPECT_EQ(Stored("1Name"), "A");
  EXPECT_EQ(Stored("2Name"), "C");
}

TEST_F(ProfileTest, UpdateWritesTheLogSettings) {
  auto& profile = Start();
  apartment_->Messages().SetLogMode(lmWinNT);
  profile.Update();
  EXPECT_EQ(store_->GetSetting(kApplication, "Exceptions", "LogMode", ""), "3");
}

TEST_F(ProfileTest, SettingThatIsNotOfItsTypeFailsOnlyWhenItIsRead) {
  Store(1, "SupportsSybase", "5", "maybe");
  Store(2, "SupportsOracle", "5", "True");
  auto& profile = Start();
  EXPECT_EQ(apartment_->Messages().Count(), 0);
  ASSERT_EQ(profile.Count(), 2);
  EXPECT_EQ(profile.Item({2})->Value(), Variant(true));
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { static_cast<void>(profile.Item({1})->Value()); });
}

TEST_F(ProfileTest, SettingThatIsNotOfItsTypeIsWrittenBackAsItWas) {
  Store(1, "SupportsSybase", "5", "maybe");
  Start().SetupItem({"New", 1, dtLongInteger});
  End();
  EXPECT_EQ(Stored("1Value"), "maybe");
  EXPECT_EQ(Stored("2Name"), "New");
}

TEST_F(ProfileTest, ValuesOfEveryTypeComeBackInTheNextRun) {
  const std::vector<std::pair<zDataTypes, Variant>> values{{dtString, " text\nwith lines "},
                                                           {dtLongInteger, -7},
                                                           {dtDate, Date::From(1998, 6, 1, 9, 14, 2)},
                                                           {dtInteger, std::int16_t{5}},
                                                           {dtBoolean, true},
                                                           {dtCurrency, Currency::Parse("12.3456")},
                                                           {dtSingle, 0.1F},
                                                           {dtDouble, 0.1},
                                                           {dtDecimal, Decimal::Parse("1.50")},
                                                           {dtByte, Byte{200}}};
  auto& profile = Start();
  for (const auto& [type, value] : values)
    profile.SetupItem({"V" + Variant(static_cast<int>(type)).AsText(), value, type});
  auto& next = Start();
  for (const auto& [type, value] : values) {
    EXPECT_EQ(next.Item({"V" + Variant(static_cast<int>(type)).AsText()})->Value(), value);
  }
}

TEST_F(ProfileTest, NameThatStandsTwiceCountsOnce) {
  Store(1, "Name", "1", "one");
  Store(2, "NAME", "1", "two");
  auto& profile = Start();
  EXPECT_EQ(profile.Count(), 1);
  EXPECT_EQ(profile.Item({"Name"})->Value(), Variant("one"));
}

TEST_F(ProfileTest, AttributeMadeElsewhereCanBeAdded) {
  auto& profile = Start();
  auto data = Make<AttributeData>();
  data->Setup({.Name = "Mine", .Value = "x"});
  profile.Add(Make<Attribute>(data));
  EXPECT_EQ(profile.Item({"Mine"})->Value(), Variant("x"));
}

TEST_F(ProfileTest, DetailsAreThoseOfTheAttributes) {
  auto& profile = Start();
  profile.SetupItem({"A", "x", dtString});
  EXPECT_EQ(profile.Details(), "Attributes Count 1\r\n    Attribute: 'A'  DataType: 'String'  Value: 'x'");
}

TEST_F(ProfileTest, WalkVisitsEverySetting) {
  auto& profile = Start();
  for (const char* name : {"A", "B"}) profile.SetupItem({name, name, dtString});
  std::string names;
  for (const auto& attribute : profile) names += attribute->Name();
  EXPECT_EQ(names, "AB");
}

TEST_F(ProfileTest, StoreThatCannotBeWrittenIsAFailureOfUpdateAlone) {
  auto& profile = Start();
  store_->FailWrites = true;
  ExpectReported(RuntimeFailure::DiskFull, [&] { profile.Update(); });
  EXPECT_NO_THROW(End());
}

TEST_F(ProfileTest, LastApartmentToEndDecides) {
  Store(1, "A", "1", "a");
  auto& outer = Start();
  outer.SetupItem({"Outer", "o", dtString});
  {
    const ScopedApartment inner(store_);
    Apartment().Profile->SetupItem({"Inner", "i", dtString});
  }
  EXPECT_EQ(Stored("2Name"), "Inner");
  End();
  EXPECT_EQ(Stored("2Name"), "Outer");
  EXPECT_EQ(Stored("3Name"), "(none)");
}

TEST_F(ProfileTest, StoreThatCannotBeReadIsNotOverwrittenAtTheEnd) {
  Store(1, "A", "1", "kept");
  store_->FailReads = true;
  apartment_ = std::make_unique<ScopedApartment>(store_);
  EXPECT_FALSE(Apartment().Profile);
  End();
  store_->FailReads = false;
  EXPECT_EQ(Stored("1Value"), "kept");
}

}  // namespace
}  // namespace velmoria::test

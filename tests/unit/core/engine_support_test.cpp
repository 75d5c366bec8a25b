#include "velmoria/core/engine_support.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/framework.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/profile.h"
#include "velmoria/properties/attribute.h"

namespace velmoria::test {
namespace {

struct Row {
  zEngines Engine;
  const char* Name;
  bool Default;
};

constexpr Row kRows[] = {{engAccess, "SupportsMSAccess", true},
                         {engODBC, "SupportsODBC", true},
                         {engSQLServer, "SupportsSQLServer", true},
                         {engSybase, "SupportsSybase", true},
                         {engOracle, "SupportsOracle", false},
                         {engInformix, "SupportsInformix", false},
                         {engRMS, "SupportsRMS", false}};

class EngineSupportTest : public testing::Test {
 protected:
  void Set(const char* name, const Variant& value) {
    Apartment().Profile->SetupItem({name, value, dtBoolean})->SetValue(value);
  }

  ScopedApartment apartment_;
};

TEST_F(EngineSupportTest, FreshProfileSupportsTheDefaultsAndKeepsThem) {
  for (const auto& [engine, name, supported] : kRows) {
    EXPECT_EQ(SupportsDatabaseEngine(engine), supported) << name;
    const auto setting = Apartment().Profile->Item({name});
    ASSERT_TRUE(setting) << name;
    EXPECT_EQ(setting->DataType(), dtBoolean);
  }
}

TEST_F(EngineSupportTest, SettingDecides) {
  for (const auto& [engine, name, supported] : kRows) {
    Set(name, !supported);
    EXPECT_EQ(SupportsDatabaseEngine(engine), !supported) << name;
  }
}

TEST_F(EngineSupportTest, NothingIsCached) {
  Set("SupportsOracle", true);
  EXPECT_TRUE(SupportsDatabaseEngine(engOracle));
  Set("SupportsOracle", false);
  EXPECT_FALSE(SupportsDatabaseEngine(engOracle));
}

TEST_F(EngineSupportTest, WhatIsNoEngineIsNeverSupported) {
  Set("SupportsUnknown", true);
  for (const int engine : {-1, 0, 8, 99}) EXPECT_FALSE(SupportsDatabaseEngine(zEngines{engine}));
}

TEST_F(EngineSupportTest, ListHoldsTheSupportedEnginesInOrder) {
  const auto engines = SupportedEnginesList();
  ASSERT_TRUE(engines.IsArray());
  EXPECT_EQ(engines.LowerBound(), 0);
  ASSERT_EQ(engines.UpperBound(), 3);
  for (std::int16_t at = 0; at < 4; ++at) {
    EXPECT_EQ(engines.Element(at), Variant(static_cast<std::int16_t>(at + 1)));
  }
}

TEST_F(EngineSupportTest, WithoutAnySupportedEngineTheListIsEmptyAndNoArray) {
  for (const auto& row : kRows) Set(row.Name, false);
  EXPECT_TRUE(Framework().SupportedEngines().IsEmpty());
}

TEST_F(EngineSupportTest, UnknownEngineIsNeverListed) {
  for (const auto& row : kRows) Set(row.Name, false);
  Set("SupportsUnknown", true);
  Set("Supports(Unknown)", true);
  EXPECT_TRUE(Framework().SupportedEngines().IsEmpty());
}

TEST_F(EngineSupportTest, ListHasNoGaps) {
  for (const auto& row : kRows) Set(row.Name, row.Engine == engODBC || row.Engine == engRMS);
  const auto engines = SupportedEnginesList();
  ASSERT_EQ(engines.UpperBound(), 1);
  EXPECT_EQ(engines.Element(0), Variant(static_cast<std::int16_t>(engODBC)));
  EXPECT_EQ(engines.Element(1), Variant(static_cast<std::int16_t>(engRMS)));
}

TEST_F(EngineSupportTest, WithoutAProfileNoEngineCanBeAskedFor) {
  Apartment().Profile = nullptr;
  EXPECT_FALSE(SupportsDatabaseEngine(engUnknown));
  const auto error = Thrown([] { SupportsDatabaseEngine(engODBC); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Number(), static_cast<std::int32_t>(RuntimeFailure::ObjectNotSet));
}

TEST_F(EngineSupportTest, SettingThatIsNoBooleanFailsAtTheReader) {
  const auto store = std::make_shared<FakeSettingsStore>();
  store->SaveSetting("Velmoria v1.0-0", "Profile", "1Name", "SupportsODBC");
  store->SaveSetting("Velmoria v1.0-0", "Profile", "1DataType", "5");
  store->SaveSetting("Velmoria v1.0-0", "Profile", "1Value", "maybe");
  const ScopedApartment apartment(store);
  EXPECT_TRUE(SupportsDatabaseEngine(engAccess));
  ExpectReported(RuntimeFailure::TypeMismatch, [] { SupportsDatabaseEngine(engODBC); });
}

}  // namespace
}  // namespace velmoria::test

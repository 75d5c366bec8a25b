#include "velmoria/design/source.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/display.h"
#include "velmoria/core/profile.h"
#include "velmoria/properties/attribute.h"

namespace velmoria::test {
namespace {

class SourceTest : public testing::Test {
 protected:
  SourcePtr Add(const SourceFields& fields) { return sources_->SetupItem(fields); }
  void SetDefault(const std::string& name, std::int32_t value) {
    Apartment().Profile->SetupItem({.Name = name, .Value = value, .DataType = dtLongInteger});
  }

  ScopedApartment apartment_;
  SourcesPtr sources_ = Make<Action>()->Sources();
};

TEST_F(SourceTest, SetupItemStoresEveryField) {
  const auto source = Add({.Engine = engODBC,
                           .SourceType = stView,
                           .SourceText = "orders",
                           .KeysetSize = 10,
                           .RowsetSize = 20,
                           .OptionFlags = ofRDOPassthru,
                           .Description = "d",
                           .Locked = true});
  EXPECT_EQ(source->Engine(), engODBC);
  EXPECT_EQ(source->EngineName(), "Generic ODBC");
  EXPECT_EQ(source->SourceType(), stView);
  EXPECT_EQ(source->SourceTypeName(), SourceTypeName(stView));
  EXPECT_EQ(source->SourceText(), "orders");
  EXPECT_EQ(source->KeysetSize(), 10);
  EXPECT_EQ(source->RowsetSize(), 20);
  EXPECT_EQ(source->OptionFlags(), ofRDOPassthru);
  EXPECT_EQ(source->Description(), "d");
  EXPECT_TRUE(source->Locked());
}

TEST_F(SourceTest, SourceTypeZeroTakesTheMachinesDefaultOfTheEngine) {
  SetDefault("Default SourceType for Engine 1", 3);
  SetDefault("Default SourceType for Engine 2", 5);
  EXPECT_EQ(Add({.Engine = engAccess})->SourceType(), stSQL);
  EXPECT_EQ(Add({.Engine = engODBC})->SourceType(), stView);
}

TEST_F(SourceTest, TheMachinesDefaultIsATableUntilItIsSet) {
  EXPECT_EQ(Add({.Engine = engOracle})->SourceType(), stTable);
  EXPECT_TRUE(Apartment().Profile->Item({.Index = "Default SourceType for Engine 5"}));
}

TEST_F(SourceTest, TheMachinesDefaultIsNotTested) {
  SetDefault("Default SourceType for Engine 1", 4);
  EXPECT_EQ(Add({.Engine = engAccess})->SourceType(), stStoredProcedure);
}

struct TypeRow {
  zEngines Engine;
  zSourceTypes Type;
  const char* Refused;  // what 15053 shows, or null where the type is allowed
};

TEST_F(SourceTest, EachEngineHasItsTypes) {
  const TypeRow rows[] = {
      {engAccess, stTable, nullptr},
      {engAccess, stQueryDef, nullptr},
      {engAccess, stSQL, nullptr},
      {engAccess, stStoredProcedure, "Stored Procedure"},
      {engAccess, stView, "View"},
      {engAccess, zSourceTypes{9}, "9"},
      {engODBC, stTable, nullptr},
      {engODBC, stSQL, nullptr},
      {engODBC, stStoredProcedure, nullptr},
      {engODBC, stView, nullptr},
      {engODBC, stQueryDef, "QueryDef"},
      {engODBC, zSourceTypes{-1}, "-1"},
      {engSQLServer, stQueryDef, "QueryDef"},
      {engSybase, stQueryDef, "QueryDef"},
      {engOracle, stTable, nullptr},
      {engOracle, stQueryDef, "QueryDef"},
  };
  for (const auto& row : rows) {
    const auto add = [&] { Make<Action>()->Sources()->SetupItem({.Engine = row.Engine, .SourceType = row.Type}); };
    SCOPED_TRACE(SourceTypeName(row.Type));
    if (row.Refused == nullptr) {
      EXPECT_NO_THROW(add());
    } else {
      ExpectRaised(zErrors{15053}, add, {.Text = std::string("SourceType: ") + row.Refused, .Count = 1});
    }
  }
}

TEST_F(SourceTest, TheEngineInTheTextOfARefusedTypeIsNeverFilledIn) {
  ExpectRaised(zErrors{15053}, [&] { Add({.Engine = engSQLServer, .SourceType = stQueryDef}); },
               {.Text = "Engine: '|1|'"});
}

TEST_F(SourceTest, SettersTestNothing) {
  const auto source = Add({.Engine = engODBC, .SourceType = stTable});
  source->SetSourceType(stQueryDef);
  source->SetSourceText("q");
  EXPECT_EQ(source->SourceType(), stQueryDef);
  EXPECT_EQ(source->SourceText(), "q");
}

TEST_F(SourceTest, AccessMethodFollowsTheEngine) {
  const auto source = Make<Source>();
  const int expected[] = {0, 2, 1, 1, 1, 1, 0, 0};
  const char* const names[] = {"(None)", "RDO 2.0", "DAO 3.5"};
  for (int engine = 0; engine <= 7; ++engine) {
    source->Data()->SetKey(zEngines{engine});
    EXPECT_EQ(source->AccessMethod(), expected[engine]) << engine;
    EXPECT_EQ(source->Data()->AccessMethodName(), names[expected[engine]]) << engine;
  }
}

TEST_F(SourceTest, WhatItKnowsOfItsParents) {
  const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
  const auto order = server->Classes()->SetupItem({.Name = "Order"});
  const auto get =
      order->Actions()->SetupItem({.Name = "Get", .DatabaseName = "Shop", .UsageFlags = ufObjects | ufExecute});
  const auto source = get->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable});
  EXPECT_EQ(source->ServerName(), "Sales");
  EXPECT_EQ(source->ClassName(), "Order");
  EXPECT_EQ(source->ActionName(), "Get");
  EXPECT_EQ(source->DatabaseName(), "Shop");
  EXPECT_EQ(source->UsageFlags(), ufObjects | ufExecute);
  EXPECT_EQ(source->UsageFlagsDisplay(), "Business Objects; Execute");
  EXPECT_EQ(get->Sources()->ServerName() + get->Sources()->ClassName() + get->Sources()->ActionName(), "SalesOrderGet");
}

TEST_F(SourceTest, WithoutParentsItKnowsNothing) {
  const auto source = MakeDesign<SourceKind>({.Engine = engODBC, .SourceType = stTable});
  EXPECT_EQ(source->ServerName() + source->ClassName() + source->ActionName() + source->DatabaseName(), "");
  EXPECT_EQ(source->UsageFlags(), ufNone);
  EXPECT_EQ(source->UsageFlagsDisplay(), "(None)");
}

TEST_F(SourceTest, ParametersBelongToTheDefinition) {
  const auto source = Add({.Engine = engODBC, .SourceType = stTable});
  source->Parameters()->SetupItem({.Name = "Id"});
  EXPECT_EQ(source->Parameters()->Style(), psParameter);
  EXPECT_EQ(source->Parameters()->Item(1)->Engine(), engODBC);
  EXPECT_EQ(source->Data()->ParametersData()->Count(), 1);
}

TEST_F(SourceTest, AParameterIsInputByDefaultAndRequiresAValueOnlyWhenTold) {
  const auto parameters = Add({.Engine = engODBC, .SourceType = stTable})->Parameters();
  const auto byDefault = parameters->SetupItem({.Name = "Id", .DataType = dtLongInteger});
  EXPECT_EQ(byDefault->Flags(), pfInput);
  EXPECT_FALSE(byDefault->RequiresValue());
  EXPECT_TRUE(parameters->SetupItem({.Name = "Year", .Flags = pfInput | pfRequired})->RequiresValue());
}

TEST_F(SourceTest, CopyOfEngineZeroKeepsTheEngine) {
  EXPECT_EQ(Add({.Engine = engODBC, .SourceType = stTable})->Copy(engUnknown)->Engine(), engODBC);
}

TEST_F(SourceTest, CopyToAnotherEngineDoesNotTestTheType) {
  const auto source = Add({.Engine = engAccess, .SourceType = stQueryDef});
  const auto copy = source->Copy(engOracle);
  EXPECT_EQ(copy->Engine(), engOracle);
  EXPECT_EQ(copy->SourceType(), stQueryDef);
}

TEST_F(SourceTest, CopyOfTypeZeroTakesNoDefault) {
  const auto source = Add({.Engine = engODBC, .SourceType = stTable});
  source->SetSourceType(stNone);
  EXPECT_EQ(source->Copy()->SourceType(), stNone);
}

TEST_F(SourceTest, RecursiveCopyTakesParametersAndUserProperties) {
  const auto source = Add({.Engine = engODBC, .SourceType = stTable});
  source->Parameters()->SetupItem({.Name = "Id"});
  source->UserProperties()->SetupItem({.Name = "Note"});
  EXPECT_EQ(source->Copy()->Parameters()->Count(), 1);
  EXPECT_EQ(source->Copy()->UserProperties()->Count(), 1);
  EXPECT_EQ(source->Copy(engUnknown, false)->Parameters()->Count(), 0);
}

TEST_F(SourceTest, AParameterThatWentAloneDoesNotMakeDirty) {
  const auto source = Make<Source>();
  source->Parameters()->SetupItem({.Name = "Id"});
  EXPECT_TRUE(source->Dirty());
  source->Parameters()->Remove("Id");
  EXPECT_FALSE(source->Dirty());
}

}  // namespace
}  // namespace velmoria::test

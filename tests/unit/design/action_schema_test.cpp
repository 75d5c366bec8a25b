#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/fake_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/database.h"
#include "velmoria/design/server.h"
#include "velmoria/design/source.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/properties/attributes_data.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

class ActionSchemaTest : public testing::Test {
 protected:
  ActionSchemaTest() { scope_.State().Platform.Odbc = driver_; }

  PropertiesDataPtr Definitions(zEngines engine = engODBC) {
    design_ = std::make_unique<OneAction>(OneActionFields{.Engine = engine});
    return design_->Agent()->PropertiesData();
  }

  ScopedApartment scope_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
  std::unique_ptr<OneAction> design_;
};

struct TypeCase {
  short Reported;  // by the driver
  std::int32_t SourceDataType;
  zDataTypes DataType;
  zDataTypes OnSybase;
};

constexpr TypeCase kTypes[] = {
    {1, 1, dtString, dtString},           {2, 2, dtDecimal, dtDecimal},       {3, 3, dtDecimal, dtDecimal},
    {4, 4, dtLongInteger, dtLongInteger}, {5, 5, dtInteger, dtInteger},       {6, 6, dtDouble, dtDouble},
    {7, 7, dtSingle, dtSingle},           {8, 8, dtDouble, dtDouble},         {91, 9, dtDate, dtVariant},
    {92, 10, dtDate, dtVariant},          {93, 11, dtDate, dtDate},           {12, 12, dtString, dtString},
    {-1, -1, dtByteArray, dtByteArray},   {-2, -2, dtByteArray, dtByteArray}, {-3, -3, dtByteArray, dtByteArray},
    {-4, -4, dtByteArray, dtByteArray},   {-5, -5, dtDecimal, dtVariant},     {-6, -6, dtByte, dtByte},
    {-7, -7, dtBoolean, dtBoolean},       {-8, 1, dtString, dtString},        {-9, 12, dtString, dtString},
};

TEST_F(ActionSchemaTest, TheDriversTypeAndTheEngineGiveTheDataType) {
  for (const auto& row : kTypes) driver_->Columns.push_back({"c" + std::to_string(row.Reported), row.Reported});
  const auto generic = Definitions();
  for (const auto& row : kTypes) {
    const auto& definition = *generic->Item("c" + std::to_string(row.Reported));
    EXPECT_EQ(definition.DataType(), row.DataType) << row.Reported;
    EXPECT_EQ(static_cast<std::int32_t>(definition.SourceDataType()), row.SourceDataType) << row.Reported;
  }
}

TEST_F(ActionSchemaTest, SybaseHasItsOwnTypes) {
  for (const auto& row : kTypes) driver_->Columns.push_back({"c" + std::to_string(row.Reported), row.Reported});
  const auto sybase = Definitions(engSybase);
  for (const auto& row : kTypes)
    EXPECT_EQ(sybase->Item("c" + std::to_string(row.Reported))->DataType(), row.OnSybase) << row.Reported;
}

TEST_F(ActionSchemaTest, AColumnBecomesACleanPersistentDefinition) {
  driver_->Columns = {{"Id", 4}, {"Name", 12, 40}};
  const auto definitions = Definitions(engSQLServer);
  const auto& name = *definitions->Item(2);
  EXPECT_EQ(name.Name(), "Name");
  EXPECT_EQ(name.SourceName(), "Name");
  EXPECT_EQ(name.SourceColumn(), "Name");
  EXPECT_EQ(name.Size(), 40);
  EXPECT_EQ(name.Style(), psPersistent);
  EXPECT_EQ(name.Engine(), engSQLServer);
  EXPECT_EQ(name.OrderNumber(), 2);
  EXPECT_TRUE(name.Modifiable());
  EXPECT_EQ(name.Flags(), pfAllowZeroLength);
  EXPECT_FALSE(definitions->Dirty());
}

TEST_F(ActionSchemaTest, TheDriversOwnFactsAreAttributes) {
  driver_->Columns = {{"Id", 4}, {"Picture", -4}};
  const auto definitions = Definitions();
  const auto& attributes = *definitions->Item("Picture")->AttributesData();
  ASSERT_EQ(attributes.Count(), 3);
  EXPECT_EQ(attributes.Item(1)->Name(), "Attributes");
  EXPECT_EQ(attributes.Item("ChunkRequired")->Value().AsBoolean(), true);
  EXPECT_EQ(attributes.Item("OrdinalPosition")->Value().AsInteger(), 2);
  EXPECT_FALSE(definitions->Item("Picture")->Dirty());
}

TEST_F(ActionSchemaTest, ARecursiveCopyKeepsTheAttributes) {
  driver_->Columns = {{"Id", 4}};
  const auto definition = Definitions()->Item("Id");
  EXPECT_EQ(definition->Copy("", true)->AttributesData()->Count(), 3);
  EXPECT_EQ(definition->Copy("", false)->AttributesData()->Count(), 0);
}

TEST_F(ActionSchemaTest, TheDiscoveryIsMeasured) {
  driver_->Columns = {{"Id", 4}, {"Name", 12, 40}};
  const auto statistic = Definitions()->Statistics()->Item("Read 'Shop' Properties Meta-data");
  EXPECT_EQ(statistic->SubjectLabel(), "Column");
  EXPECT_EQ(statistic->SubjectCount(), 2);
  EXPECT_EQ(statistic->EndTime(), statistic->StartTime());
}

TEST_F(ActionSchemaTest, WhatAHostDoesToTheDefinitionsOfOneResultNoOtherResultShows) {
  driver_->Columns = {{"Id", 4}, {"Name", 12, 40}, {"Picture", -4}};
  const OneAction design;
  const auto definitionsOf = [&] { return design.Agent()->PropertiesData(); };
  for (int result = 0; result < 3; ++result) {
    const auto definitions = definitionsOf();
    ASSERT_EQ(definitions->Count(), 3) << result;
    const auto name = definitions->Item("Name");
    EXPECT_EQ(name->Caption(), "") << result;
    EXPECT_FALSE(definitions->Dirty()) << result;
    EXPECT_EQ(definitions->Item("Picture")->AttributesData()->Count(), 3) << result;
    name->SetCaption("changed");
    definitions->Remove("Id");
    definitions->SetupItem(psUser, {.Name = "Extra"});
  }
}

TEST_F(ActionSchemaTest, AResultWithOtherColumnsGetsItsOwnDefinitions) {
  driver_->Columns = {{"Id", 4}, {"Name", 12, 40}};
  const OneAction design;
  for (int result = 0; result < 3; ++result) design.Agent()->PropertiesData();
  driver_->Columns = {{"Name", 12, 20}, {"Id", 4}};
  const auto definitions = design.Agent()->PropertiesData();
  EXPECT_EQ(definitions->Item(1)->Name(), "Name");
  EXPECT_EQ(definitions->Item("Name")->Size(), 20);
}

TEST_F(ActionSchemaTest, AnAgentThatOpensAnewDescribesWhatItThenReads) {
  driver_->Columns = {{"Id", 4}, {"Number", 4}};
  driver_->Rows = {{"1", "2"}};
  const OneAction design;
  const auto agent = design.Agent();
  EXPECT_EQ(agent->GetRecordset(0, {}, false)->Columns()->Item(1)->Name(), "Id");
  driver_->Columns = {{"Number", 4}, {"Id", 4}};
  const auto again = agent->GetRecordset(0, {}, false);
  EXPECT_EQ(again->Values(0, *again->Columns()->Item("Number")), Variant(1));
}

TEST_F(ActionSchemaTest, AFailureTellsTheColumnBesideIt) {
  driver_->Columns = {{"Id", 4}, {"Id", 4}};
  EXPECT_TRUE(Thrown([&] { Definitions(); }));
  const auto message = scope_.Messages().Item("15120");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->ExtraText(), "Processing RDO Column, Id");
}

}  // namespace

}  // namespace velmoria::test

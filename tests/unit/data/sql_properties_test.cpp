#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

class SqlPropertiesTest : public testing::Test {
 protected:
  void Add(PropertyFields fields) {
    if (fields.DataType == dtVariant) fields.DataType = dtLongInteger;
    properties_->SetupItem(fields);
  }

  ScopedApartment scope_;
  PropertiesPtr properties_ = Make<Properties>();
};

TEST_F(SqlPropertiesTest, ListsAreJoinedInOrder) {
  Add({.Name = "a", .Value = 1});
  Add({.Name = "b", .Value = 2});
  EXPECT_EQ(properties_->NamesClause(stTable, false), "a, b");
  EXPECT_EQ(properties_->ValuesClause(engODBC, false), "1, 2");
  EXPECT_EQ(properties_->SetClause(stTable, engODBC, "any", false), "a = 1, b = 2");
}

TEST_F(SqlPropertiesTest, DirtyOnlyLeavesOutWhatDidNotChange) {
  Add({.Name = "a"});
  Add({.Name = "b", .Value = 2});
  Add({.Name = "c"});
  EXPECT_EQ(properties_->NamesClause(stTable, true), "b");
  EXPECT_EQ(properties_->ValuesClause(engODBC, true), "2");
  EXPECT_EQ(properties_->SetClause(stTable, engODBC, "", true), "b = 2");
}

TEST_F(SqlPropertiesTest, NothingDirtyGivesEmptyLists) {
  Add({.Name = "a"});
  EXPECT_EQ(properties_->NamesClause(stTable, true), "");
  EXPECT_EQ(properties_->ValuesClause(engODBC, true), "");
}

TEST_F(SqlPropertiesTest, CriteriaAreJoinedByTheFlagOfTheLaterOne) {
  Add({.Name = "a", .Value = 1, .OrFlag = true});
  Add({.Name = "b", .Value = 2});
  Add({.Name = "c", .Value = 3, .Operator = "<>", .OrFlag = true});
  EXPECT_EQ(properties_->WhereClause(stTable, nullptr, engODBC), "a = 1 And b = 2 Or c <> 3");
}

TEST_F(SqlPropertiesTest, AnUnsetParameterIsACriterion) {
  Add({.Name = "a", .Value = 1});
  Add({.Name = "b"});
  EXPECT_EQ(properties_->WhereClause(stTable, nullptr, engODBC), "a = 1 And b = 0");
}

TEST_F(SqlPropertiesTest, AnEmptyCollectionGivesNoCriteria) {
  EXPECT_EQ(properties_->WhereClause(stTable, nullptr, engODBC), "");
}

TEST_F(SqlPropertiesTest, GivenValuesAnswerForTheCriteria) {
  Add({.Name = "Id", .Value = 1, .SourceColumn = "id"});
  Add({.Name = "Year", .Value = 1998});
  const auto row = Make<Properties>();
  row->SetupItem({.Name = "id", .Value = 42, .DataType = dtLongInteger});
  EXPECT_EQ(properties_->WhereClause(stTable, row, engODBC), "id = 42 And Year = 1998");
  EXPECT_EQ(scope_.Messages().Count(), 0);
}

TEST_F(SqlPropertiesTest, TheOperatorIsThatOfTheAnswer) {
  Add({.Name = "Id", .Value = 1, .Operator = ">"});
  const auto row = Make<Properties>();
  row->SetupItem({.Name = "Id", .Value = 42, .DataType = dtLongInteger});
  EXPECT_EQ(properties_->WhereClause(stTable, row, engODBC), "Id = 42");
}

TEST_F(SqlPropertiesTest, TheIdentityTextNamesTheFirstCounter) {
  Add({.Name = "a"});
  Add({.Name = "b", .SourceColumn = "bb", .SourceTable = "t", .Flags = pfcounter});
  Add({.Name = "c", .Flags = pfcounter});
  EXPECT_EQ(properties_->ReturnIdentityClause(stTable), "SELECT 'bb' = @@IDENTITY");
  EXPECT_EQ(properties_->ReturnIdentityClause(stSQL), "SELECT 't.bb' = @@IDENTITY");
}

TEST_F(SqlPropertiesTest, WithoutACounterThereIsNoIdentityText) {
  Add({.Name = "a"});
  EXPECT_EQ(properties_->ReturnIdentityClause(stTable), "");
}

}  // namespace

}  // namespace velmoria::test

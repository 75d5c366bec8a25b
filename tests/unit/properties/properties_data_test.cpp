#include "velmoria/properties/properties_data.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/properties/attributes_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesDataTest : public testing::Test {
 protected:
  static PropertiesDataPtr Of(std::initializer_list<const char*> names) {
    auto data = Make<PropertiesData>();
    for (const char* name : names) {
      data->SetupItem(psUser,
                      {.Name = name, .SourceName = std::string("s") + name, .SourceColumn = name, .SourceTable = "t"},
                      {}, true);
    }
    return data;
  }
  static std::string Order(const PropertiesDataPtr& data) {
    std::string text;
    for (const auto& item : *data) text += item->Name() + std::to_string(item->OrderNumber());
    return text;
  }

  ScopedApartment apartment_;
};

TEST_F(PropertiesDataTest, ItemIsFoundByPositionAndByNameWithoutRegardToCase) {
  const auto data = Of({"A", "B"});
  EXPECT_EQ(data->Item(2)->Name(), "B");
  EXPECT_EQ(data->Item("b")->Name(), "B");
  ExpectRaised(errItem_Property, [&] { data->Item("C"); }, {.Text = "Index: 'C'"});
  ExpectRaised(errItem_Property, [&] { data->Item(3); }, {.Text = "Index: 3"});
}

TEST_F(PropertiesDataTest, FindGivesNoneAndReportsNothing) {
  const auto data = Of({"A", "B"});
  EXPECT_EQ(data->Find("x", "sB"), data->Item("B"));
  EXPECT_EQ(data->Find("x", {}, "t.A"), data->Item("A"));
  EXPECT_FALSE(data->Find("x"));
  EXPECT_FALSE(data->Find("x", "SB"));
  EXPECT_FALSE(data->Find("x", {}, "T.A"));
  EXPECT_EQ(data->Find("x", "sB", "t.A"), data->Item("A"));
  EXPECT_EQ(data->Find(2, "sA"), data->Item("B"));
  EXPECT_EQ(Framework().Messages()->Count(), 0);
}

TEST_F(PropertiesDataTest, MembersAreNumberedByTheirPosition) {
  const auto data = Of({"A", "C"});
  data->SetupItem(psUser, {.Name = "B"}, {.Before = "C"});
  EXPECT_EQ(Order(data), "A1B2C3");
  const auto first = data->Item("A");
  data->Remove("A");
  EXPECT_EQ(Order(data), "B1C2");
  EXPECT_EQ(first->OrderNumber(), 0);
  data->Add(first, {.After = 1});
  EXPECT_EQ(Order(data), "B1A2C3");
}

TEST_F(PropertiesDataTest, BothPositionsAppend) {
  const auto data = Of({"A", "B"});
  data->SetupItem(psUser, {.Name = "C"}, {.Before = 1, .After = 1});
  EXPECT_EQ(Order(data), "A1B2C3");
}

TEST_F(PropertiesDataTest, UnknownPositionIsRefused) {
  const auto data = Of({"A"});
  ExpectReported(RuntimeFailure::SubscriptOutOfRange, [&] { data->SetupItem(psUser, {.Name = "B"}, {.After = 2}); });
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { data->Add(Make<PropertyData>(), {.Before = "X"}); });
  EXPECT_EQ(data->Count(), 1);
}

TEST_F(PropertiesDataTest, ColumnsOfRowsKeepTheirNumbers) {
  const auto data = Of({"A", "B"});
  data->FixOrder();
  data->SetupItem(psUser, {.Name = "C"}, {.Before = 1});
  EXPECT_EQ(Order(data), "C3A1B2");
  data->Remove("A");
  EXPECT_EQ(Order(data), "C3B2");
}

TEST_F(PropertiesDataTest, ColumnOfRowsKeepsItsNumberInAnotherList) {
  const auto columns = Of({"A", "B"});
  columns->FixOrder();
  const auto late = columns->SetupItem(psUser, {.Name = "C"});
  const auto other = Of({"X"});
  other->Add(columns->Item("B"), {.Before = 1});
  other->Add(late);
  EXPECT_EQ(Order(other), "B2X2C3");
  other->Remove("C");
  EXPECT_EQ(late->OrderNumber(), 3);
}

TEST_F(PropertiesDataTest, TakenNameIsAFailureOfTheContainer) {
  const auto data = Of({"A"});
  ExpectReported(RuntimeFailure::KeyInUse, [&] { data->SetupItem(psUser, {.Name = "a"}); });
  ExpectReported(RuntimeFailure::KeyInUse, [&] { data->Add(data->Item("A")); });
  EXPECT_EQ(data->Count(), 1);
  EXPECT_FALSE(data->Dirty());
}

TEST_F(PropertiesDataTest, RefusedDefaultValueMakesNoMember) {
  const auto data = Of({});
  ExpectRaised(errProperty_DataType,
               [&] { data->SetupItem(psUser, {.Name = "A", .DataType = dtLongInteger, .DefaultValue = "abc"}); });
  EXPECT_EQ(data->Count(), 0);
  EXPECT_FALSE(data->Dirty());
}

TEST_F(PropertiesDataTest, SetupItemGivesTheStyle) {
  EXPECT_EQ(Make<PropertiesData>()->SetupItem(psIdentifier, {.Name = "A"})->Style(), psIdentifier);
}

TEST_F(PropertiesDataTest, RemoveOfAnUnknownNameIsAProblemOfFinding) {
  const auto data = Of({"A"});
  ExpectRaised(errItem_Property, [&] { data->Remove("B"); }, {.Text = "Index: 'B'", .Count = 1});
  EXPECT_FALSE(data->Dirty());
}

TEST_F(PropertiesDataTest, RenameKeepsThePositionAndRefusesATakenName) {
  const auto data = Of({"A", "B"});
  data->RenameItem("A", "Z");
  EXPECT_EQ(Order(data), "Z1B2");
  EXPECT_EQ(data->Item("Z")->Name(), "Z");
  ExpectRaised(errRename_Property, [&] { data->RenameItem("Z", "b"); }, {.Text = "Name: 'Z'  NewName: 'b'"});
  ExpectRaised(errRename_Property, [&] { data->RenameItem("Z", "z"); });
  ExpectRaised(errItem_Property, [&] { data->RenameItem("A", "Y"); }, {.Text = "Index: 'A'"});
  EXPECT_EQ(Order(data), "Z1B2");
}

TEST_F(PropertiesDataTest, EveryChangeOfMembersStamps) {
  const auto data = Of({"A", "B"});
  EXPECT_FALSE(data->Dirty());
  const auto stamps = [&](auto change) {
    data->ClearDirty();
    change();
    return data->Dirty();
  };
  EXPECT_TRUE(stamps([&] { data->SetupItem(psUser, {.Name = "C"}); }));
  EXPECT_TRUE(stamps([&] { data->RenameItem("C", "D"); }));
  EXPECT_TRUE(stamps([&] { data->Remove("D"); }));
  EXPECT_TRUE(stamps([&] { data->Add(Make<PropertyData>()); }));
  EXPECT_TRUE(stamps([&] { data->Item("A")->SetCaption("c"); }));
  EXPECT_TRUE(stamps([&] { data->SetDirty(); }));
  EXPECT_FALSE(stamps([&] { data->SetupItem(psUser, {.Name = "E"}, {}, true); }));
  EXPECT_FALSE(stamps([&] { data->Copy(true)->Item("A")->SetCaption("d"); }));
}

TEST_F(PropertiesDataTest, RenumberedMembersStayClean) {
  const auto data = Of({"A", "B"});
  data->Remove("A");
  data->SetupItem(psUser, {.Name = "C"}, {.Before = 1});
  EXPECT_EQ(Order(data), "C1B2");
  EXPECT_TRUE(data->Dirty());
  EXPECT_FALSE(data->Item("B")->Dirty());
}

TEST_F(PropertiesDataTest, ClearDirtyReachesTheMembers) {
  const auto data = Of({"A"});
  data->Item("A")->SetValue(1);
  data->SetDirty();
  data->ClearDirty();
  EXPECT_FALSE(data->Dirty());
  EXPECT_FALSE(data->Item("A")->Dirty());
  EXPECT_FALSE(data->Item("A")->DirtyValue());
}

TEST_F(PropertiesDataTest, GenerationTellsWhetherMembersCameOrWent) {
  const auto data = Of({"A", "B"});
  const auto differs = [&](auto change) {
    const auto before = data->Generation();
    change();
    return data->Generation() != before;
  };
  EXPECT_TRUE(differs([&] { data->SetupItem(psUser, {.Name = "C"}); }));
  EXPECT_TRUE(differs([&] { data->RenameItem("C", "D"); }));
  EXPECT_TRUE(differs([&] { data->Remove("D"); }));
  EXPECT_FALSE(differs([&] { data->Item("A")->SetCaption("c"); }));
}

TEST_F(PropertiesDataTest, StatisticsAreMadeOnceAndKept) {
  const auto data = Of({});
  EXPECT_TRUE(data->Statistics());
  EXPECT_EQ(data->Statistics(), data->Statistics());
}

TEST_F(PropertiesDataTest, ModifiableAsksAllOrOne) {
  const auto data = Of({"A", "B"});
  data->Item("A")->SetModifiable(false);
  EXPECT_FALSE(data->Modifiable(true));
  EXPECT_TRUE(data->Modifiable(false));
  EXPECT_TRUE(Of({})->Modifiable(true));
  EXPECT_FALSE(Of({})->Modifiable(false));
}

TEST_F(PropertiesDataTest, CopyHasMembersOfItsOwn) {
  const auto data = Of({"A", "B"});
  const auto copy = data->Copy(true);
  copy->Item("A")->SetCaption("c");
  EXPECT_EQ(Order(copy), "A1B2");
  EXPECT_EQ(data->Item("A")->Caption(), "");
}

TEST_F(PropertiesDataTest, CopyIsDirtyThoughItsMembersAreClean) {
  const auto copy = Of({"A"})->Copy(true);
  EXPECT_TRUE(copy->Dirty());
  EXPECT_FALSE(copy->Item("A")->Dirty());
  EXPECT_FALSE(Make<PropertiesData>()->Copy(true)->Dirty());
}

TEST_F(PropertiesDataTest, MemberThatCannotBeCopiedFailsTheCopy) {
  const auto data = Make<PropertiesData>();
  data->SetupItem(psUser, {.Name = "A", .DefaultValue = "abc"})->SetDataType(dtLongInteger);
  ExpectRaised(errProperty_DataType, [&] { data->Copy(true); }, {.Text = "Property: 'A'", .Count = 2});
}

TEST_F(PropertiesDataTest, ATwinIsTheSameListOfCleanDefinitionsOfItsOwn) {
  const auto data = Of({"A", "B", "C", "D", "E", "F"});
  data->Item("C")->SetColumnFacts({.Attributes = 3, .OrdinalPosition = 3});
  const auto twin = data->Twin();
  EXPECT_EQ(Order(twin), Order(data));
  EXPECT_EQ(twin->Item("f")->SourceKey(), "t.F");
  EXPECT_EQ(twin->Item("C")->AttributesData()->Count(), 3);
  EXPECT_FALSE(twin->Dirty());
  EXPECT_EQ(twin->Generation(), data->Generation());
  twin->Remove("A");
  twin->Item("B")->SetCaption("changed");
  twin->SetupItem(psUser, {.Name = "G"});
  EXPECT_EQ(Order(data), "A1B2C3D4E5F6");
  EXPECT_EQ(data->Item("B")->Caption(), "");
  EXPECT_EQ(Order(twin), "B1C2D3E4F5G6");
}

TEST_F(PropertiesDataTest, WhatChangesOnOneOfTwoTwinsLeavesTheOtherAsItWas) {
  const auto data = Of({"A", "B"});
  const auto twin = data->Twin();
  data->Item("A")->SetCaption("of the first");
  twin->Item("A")->SetDescription("of the second");
  twin->Item("B")->SetValue("value");
  data->Item("B")->SetDefaultValue("default");
  EXPECT_EQ(twin->Item("A")->Caption(), "");
  EXPECT_EQ(data->Item("A")->Description(), "");
  EXPECT_TRUE(data->Item("B")->Value().IsEmpty());
  EXPECT_TRUE(twin->Item("B")->StoredDefaultValue().IsEmpty());
  EXPECT_EQ(twin->Item("A")->Details(), data->Item("A")->Details());
}

TEST_F(PropertiesDataTest, ATwinOutlivesWhatItIsLike) {
  auto data = Of({"A"});
  const auto twin = data->Twin();
  data = nullptr;
  twin->Item("A")->SetName("Z");
  EXPECT_EQ(twin->Item("A")->SourceKey(), "t.A");
}

TEST_F(PropertiesDataTest, OnlyARecursiveCopyTakesTheAttributes) {
  const auto data = Of({"A"});
  data->Item("A")->AttributesData()->SetupItem({.Name = "Colour"});
  EXPECT_EQ(data->Copy(true)->Item("A")->AttributesData()->Count(), 1);
  EXPECT_EQ(data->Copy(false)->Item("A")->AttributesData()->Count(), 0);
}

TEST_F(PropertiesDataTest, DetailsIndentTheMembers) {
  const auto data = Of({"A", "B"});
  EXPECT_EQ(data->Details(),
            "Properties Count 2\r\n    " + data->Item("A")->Details() + "\r\n    " + data->Item("B")->Details());
  EXPECT_EQ(Of({})->Details(), "Properties Count 0");
}

}  // namespace
}  // namespace velmoria::test

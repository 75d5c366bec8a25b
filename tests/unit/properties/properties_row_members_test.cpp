// The members of a row that ended serve the row that is looked at next.

#include <gtest/gtest.h>

#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesRowMembersTest : public testing::Test {
 protected:
  /// Looks at every member of a row, and lets go of it.
  void Visit(std::int32_t row) const {
    const auto properties = rows_.Row(row);
    for (const auto& member : *properties) member->Value();
  }

  ScopedApartment apartment_;
  SampleRows rows_;
};

TEST_F(PropertiesRowMembersTest, TheNextRowHasItsOwnValues) {
  Visit(0);
  const auto row = rows_.Row(1);
  EXPECT_EQ(row->Item("Id")->Value(), 2);
  EXPECT_EQ(row->Item("Name")->Value(), "Ben");
  EXPECT_EQ(row->Item("Name")->StateFlags(), sfpersistent);
}

TEST_F(PropertiesRowMembersTest, AMemberThatIsStillHeldStaysWithItsRow) {
  const auto held = rows_.Row(0)->Item("Name");
  const auto next = rows_.Row(1)->Item("Name");
  EXPECT_NE(held, next);
  EXPECT_EQ(held->Value(), "Ada");
  EXPECT_EQ(next->Value(), "Ben");
}

TEST_F(PropertiesRowMembersTest, TwoRowsAtATimeAreApart) {
  Visit(2);
  const auto first = rows_.Row(0);
  const auto second = rows_.Row(1);
  first->Item("Name")->SetValue("Eve");
  EXPECT_EQ(second->Item("Name")->Value(), "Ben");
  EXPECT_FALSE(second->Item("Name")->DirtyValue());
  EXPECT_EQ(first->Item("Name")->Value(), "Eve");
}

TEST_F(PropertiesRowMembersTest, WhatAHostPutOnAMemberStaysWithItsRow) {
  int heard = 0;
  {
    const auto row = rows_.Row(0);
    row->Item("Id")->SetLocked(true);
    row->Item("Name")->BeforeValueChange += [&](const Variant&, bool&) { ++heard; };
    row->Item("Open")->AfterValueChange += [&] { ++heard; };
    row->Item("Note")->SetCopyMark(true);
    row->Item("Amount")->SetAttributes(Make<Attributes>());
    row->Item("Amount")->Attributes()->SetupItem({.Name = "Own"});
  }
  const auto row = rows_.Row(1);
  EXPECT_FALSE(row->Item("Id")->Locked());
  row->Item("Name")->SetValue("Eve");
  row->Item("Open")->SetValue(!row->Item("Open")->Value().AsBoolean());
  EXPECT_EQ(heard, 0);
  EXPECT_FALSE(row->Item("Note")->CopyMark());
  EXPECT_EQ(row->Item("Amount")->Attributes()->Count(), 0);
}

TEST_F(PropertiesRowMembersTest, TheNextRowFollowsDefinitionsThatHaveChanged) {
  Visit(0);
  rows_.Columns->Remove("Name");
  rows_.Columns->RenameItem("Placed", "Day");
  const auto row = rows_.Row(1);
  EXPECT_EQ(row->Count(), rows_.Columns->Count());
  EXPECT_EQ(row->Item(2)->Name(), "Day");
  EXPECT_EQ(row->Item(2)->Value(), Date::From(1998, 6, 2, 10, 30));
  EXPECT_EQ(row->Item("Amount")->Value(), 99.0);
}

TEST_F(PropertiesRowMembersTest, AMemberThatWasGivenOutStaysWhenDefinitionsChangeAgain) {
  Visit(0);
  rows_.Columns->Remove("Id");
  const auto row = rows_.Row(1);
  const auto held = row->Item("Name");
  rows_.Columns->RenameItem("Placed", "Day");
  EXPECT_EQ(row->Item("Name"), held);
  EXPECT_EQ(row->Item("Day")->Value(), Date::From(1998, 6, 2, 10, 30));
}

TEST_F(PropertiesRowMembersTest, TheLastRowMayOutliveEveryOtherHandleOfItsRecordset) {
  Visit(0);
  auto row = rows_.Row(1);
  const auto held = row->Item("Name");
  rows_.Rows = nullptr;
  row = nullptr;
  EXPECT_EQ(held->Value(), "Ben");
}

}  // namespace
}  // namespace velmoria::test

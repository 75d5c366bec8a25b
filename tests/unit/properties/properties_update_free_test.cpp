#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/told_events.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

/// Collections that have no row behind them.
class FreePropertiesUpdateTest : public testing::Test {
 protected:
  void Watch(Properties& properties) { TellEvents(properties, told_); }
  static PropertiesPtr Cached(Variant value = 1) {
    auto data = Make<PropertiesData>();
    data->SetupItem(psCached, {.Name = "Id", .Value = std::move(value), .DataType = dtLongInteger});
    auto properties = Make<Properties>();
    properties->Bind({.Style = psCached, .PropertiesData = data});
    return properties;
  }
  /// One that finds its way to the Action "Get" of the class "Order".
  PropertiesPtr Routed(zEditFlags editFlags = efAll) const {
    design_.Order->Actions()->Item("Get")->SetEditFlags(editFlags);
    const auto properties = Cached();
    properties->SetIdentifier(design_.Order->CreateIdentifier(properties));
    properties->SetActionName("Get");
    return properties;
  }

  ScopedApartment apartment_;
  SampleDesign design_;
  std::string told_;
};

TEST_F(FreePropertiesUpdateTest, NonPersistentCollectionRefusesUpdateAndDelete) {
  const auto properties = Framework().CreateProperties();
  properties->SetupItem({.Name = "A", .Value = 1});
  ExpectRaised(errProperties_Update, [&] { properties->Update(); });
  ExpectRaised(errProperties_Delete, [&] { properties->Delete(); });
}

TEST_F(FreePropertiesUpdateTest, TransientCollectionRefusesItsStateFlags) {
  ExpectRaised(errProperties_Transient, [&] { Framework().CreateProperties()->SetStateFlags(sfpersistent); },
               {.Text = "Changing StateFlags is only permitted with Action-bound Properties collections."});
}

TEST_F(FreePropertiesUpdateTest, StateFlagsOfAFreeCollectionAreTheOrOfItsMembers) {
  const auto properties = Framework().CreateProperties();
  properties->SetupItem({.Name = "A"});
  EXPECT_EQ(properties->StateFlags(), sfnonpersistent | sfNew);
  properties->SetupItem({.Name = "B"})->SetStateFlags(sfpersistent);
  EXPECT_EQ(properties->StateFlags(), sfnonpersistent | sfNew | sfpersistent);
  EXPECT_EQ(properties->StateFlagsDisplay(), "New; Persistent");
}

TEST_F(FreePropertiesUpdateTest, CachedCollectionTakesStateFlagsVerbatim) {
  const auto properties = Cached();
  properties->Item(1)->ClearDirty();
  properties->SetStateFlags(sfpersistent | sfNew);
  EXPECT_EQ(properties->StateFlags(), sfpersistent | sfNew);
}

TEST_F(FreePropertiesUpdateTest, DeletedCachedCollectionIsPendingAndDirty) {
  const auto properties = Cached();
  Watch(*properties);
  properties->SetStateFlags(sfpersistent);
  properties->Delete();
  EXPECT_EQ(properties->StateFlags(), sfpersistent | sfpendingdelete | sfdirty);
  properties->Delete();
  EXPECT_EQ(told_, "bd ad ");
}

TEST_F(FreePropertiesUpdateTest, UndoOfACachedCollection) {
  const auto properties = Cached();
  properties->SetStateFlags(sfpersistent);
  properties->Item("Id")->ClearDirty();
  properties->Item("Id")->SetValue(2);
  properties->Undo();
  EXPECT_EQ(properties->Item("Id")->Value().AsLong(), 1);
  EXPECT_EQ(properties->StateFlags(), sfpersistent);
}

TEST_F(FreePropertiesUpdateTest, UndoOfAFreshFreeCollectionGivesItUp) {
  const auto properties = Cached();
  properties->Undo();
  EXPECT_EQ(properties->StateFlags(), sfdeleted);
  EXPECT_TRUE(properties->Item("Id")->EmptyValue());
}

TEST_F(FreePropertiesUpdateTest, CleanFreeCollectionWithAnIdentifierRaisesBothEventsAndWritesNothing) {
  const auto properties = Routed();
  properties->Item("Id")->ClearDirty();
  Watch(*properties);
  properties->Update();
  EXPECT_EQ(told_, "bu au ");
}

TEST_F(FreePropertiesUpdateTest, WithoutMembersInItsIdentifierItIsRefusedToo) {
  const auto properties = Routed();
  properties->Identifier()->Properties()->Remove("Id");
  Watch(*properties);
  ASSERT_EQ(properties->Identifier()->Properties()->Count(), 0);
  ExpectRaised(errProperties_Update, [&] { properties->Update(); }, {.Count = 1});
  EXPECT_EQ(told_, "");
}

TEST_F(FreePropertiesUpdateTest, IdentifierThatWasNeverSetUpIsRefusedToo) {
  const auto properties = Routed();
  properties->SetIdentifier(Make<Identifier>());
  ExpectRaised(errProperties_Update, [&] { properties->Update(); }, {.Count = 1});
}

TEST_F(FreePropertiesUpdateTest, CancelledUpdateDoesNotEvenLookForTheAction) {
  const auto properties = Routed();
  properties->SetActionName("Nothing");
  Watch(*properties);
  properties->BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  properties->Update();
  EXPECT_EQ(told_, "bu ");
}

TEST_F(FreePropertiesUpdateTest, EachStationOfTheWayIsReportedWhenItIsMissing) {
  const auto properties = Routed();
  properties->SetActionName("Nothing");
  ExpectRaised(errItem_Action, [&] { properties->Update(); }, {.Text = "Index: 'Nothing'"});
  design_.Sales->Classes()->Remove("Order");
  ExpectRaised(errItem_Class, [&] { properties->Update(); }, {.Text = "Index: 'Order'"});
  Framework().Servers()->Remove("Sales");
  ExpectRaised(errItem_Server, [&] { properties->Update(); }, {.Text = "Index: 'Sales'"});
}

TEST_F(FreePropertiesUpdateTest, NewOneNeedsInsertAndAnOldOneUpdate) {
  ExpectRaised(errNotSupported_Insert, [&] { Routed(efUpdate)->Update(); },
               {.Text = "Action: 'Get'  EditFlags: 'Update'"});
  const auto old = Routed(efInsert);
  old->SetStateFlags(sfpersistent);
  ExpectRaised(errNotSupported_Update, [&] { old->Update(); }, {.Text = "Action: 'Get'  EditFlags: 'Insert'"});
}

TEST_F(FreePropertiesUpdateTest, DeletingOneAsksForTheFlagOfUpdating) {
  const auto properties = Routed(efDelete | efInsert);
  properties->SetStateFlags(sfpersistent);
  properties->Delete();
  ExpectRaised(errNotSupported_Update, [&] { properties->Update(); },
               {.Text = "Action: 'Get'  EditFlags: 'Delete; Insert'"});
  EXPECT_EQ(properties->StateFlags(), sfpersistent | sfpendingdelete | sfdirty);
}

TEST_F(FreePropertiesUpdateTest, DeletedOneIsToldByItsKeyBehindBeforeUpdate) {
  const auto properties = Routed();
  properties->SetStateFlags(sfdeleted);
  Watch(*properties);
  ExpectRaised(errPersistence_Deleted, [&] { properties->Update(); }, {.Text = "Identifier: '1'"});
  EXPECT_EQ(told_, "bu ");
}

TEST_F(FreePropertiesUpdateTest, PersistentStyleWithoutARowIsDeletedLikeACachedOne) {
  auto data = Make<PropertiesData>();
  data->SetupItem(psPersistent, {.Name = "Id", .Value = 1, .DataType = dtLongInteger});
  auto properties = Make<Properties>();
  properties->Bind({.Style = psPersistent, .PropertiesData = data});
  properties->Delete();
  EXPECT_EQ(properties->StateFlags(), sfnonpersistent | sfNew | sfpendingdelete | sfdirty);
  ExpectRaised(
      errProperties_Transient, [&] { properties->SetStateFlags(sfpersistent); },
      {.Text = "Operation: 'Changing StateFlags is only permitted with Action-bound Properties collections.'"});
}

TEST_F(FreePropertiesUpdateTest, EveryOtherStyleRefusesToBeDeleted) {
  for (const auto style : {psNone, psNonPersistent, psUser, psIdentifier, psParameter}) {
    SCOPED_TRACE(static_cast<int>(style));
    const auto properties = Cached();
    properties->SetStyle(style);
    Watch(*properties);
    ExpectRaised(errProperties_Delete, [&] { properties->Delete(); }, {.Count = 1});
    EXPECT_EQ(told_, "");
  }
}

TEST_F(FreePropertiesUpdateTest, CancelledDeleteLeavesTheMembersAlone) {
  const auto properties = Cached();
  properties->SetStateFlags(sfpersistent);
  properties->BeforePendingDelete += [](bool& Cancel) { Cancel = true; };
  Watch(*properties);
  properties->Delete();
  EXPECT_FALSE(has(properties->StateFlags(), sfpendingdelete));
  EXPECT_EQ(told_, "bd ");
}

TEST_F(FreePropertiesUpdateTest, LetOfAValueChangesNoStoredBit) {
  const auto properties = Cached();
  properties->SetStateFlags(sfpersistent);
  properties->Item("Id")->ClearDirty();
  properties->Item("Id")->SetValue(2);
  EXPECT_EQ(properties->StateFlags(), sfpersistent | sfdirty);
  properties->Item("Id")->SetValue(3);
  properties->Item("Id")->ClearDirty();
  EXPECT_EQ(properties->StateFlags(), sfpersistent);
}

}  // namespace
}  // namespace velmoria::test

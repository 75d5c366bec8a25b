#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertyStateTest : public testing::Test {
 protected:
  static PropertyPtr New(Variant value = {}) {
    return Framework().CreateProperty({.Name = "X", .Value = std::move(value), .DataType = dtLongInteger});
  }

  ScopedApartment apartment_;
};

TEST_F(PropertyStateTest, FreshPropertyIsNewAndNonPersistent) {
  EXPECT_EQ(New()->StateFlags(), sfnonpersistent | sfNew);
}

TEST_F(PropertyStateTest, FreshPropertyWithAValueIsDirtyToo) {
  EXPECT_EQ(New(1)->StateFlags(), sfnonpersistent | sfNew | sfdirty);
}

TEST_F(PropertyStateTest, AfterAWriteANewPropertyIsPersistent) {
  const auto property = New(1);
  property->MarkUpdated();
  EXPECT_EQ(property->StateFlags(), sfpersistent);
}

TEST_F(PropertyStateTest, AfterAWriteAPersistentPropertyStaysPersistent) {
  const auto property = New(1);
  property->MarkUpdated();
  property->SetValue(2);
  property->MarkUpdated();
  EXPECT_EQ(property->StateFlags(), sfpersistent);
}

TEST_F(PropertyStateTest, AfterAWriteAPendingDeleteIsDeleted) {
  const auto property = New(1);
  property->SetStateFlags(sfpersistent | sfpendingdelete | sfdirty);
  property->MarkUpdated();
  EXPECT_EQ(property->StateFlags(), sfdeleted);
}

TEST_F(PropertyStateTest, EmptyNewValueTurnsIntoNullByTheWrite) {
  const auto property = New();
  property->MarkUpdated();
  EXPECT_TRUE(property->Value().IsNull());
}

TEST_F(PropertyStateTest, ReadOnlyEmptyNewValueStaysEmptyByTheWrite) {
  const auto property = New();
  property->SetModifiable(false);
  property->MarkUpdated();
  EXPECT_TRUE(property->EmptyValue());
}

TEST_F(PropertyStateTest, RequiredEmptyNewValueIsRefusedAfterTheWrite) {
  const auto property = Framework().CreateProperty({.Name = "X", .DataType = dtLongInteger, .Flags = pfRequired});
  ExpectRaised(errValue_Required, [&] { property->MarkUpdated(); }, {.Text = "Property: 'X'"});
}

TEST_F(PropertyStateTest, DirtyStaysTrueAfterAWriteThoughDirtyValueDoesNot) {
  const auto property = New(1);
  property->MarkUpdated();
  EXPECT_TRUE(property->Dirty());
  EXPECT_FALSE(property->DirtyValue());
}

struct Undone {
  zStateFlags Before;
  zStateFlags After;
};

class PropertyUndoneTest : public PropertyStateTest, public testing::WithParamInterface<Undone> {};

TEST_P(PropertyUndoneTest, UndoEndsInItsState) {
  const auto property = New(1);
  property->SetStateFlags(GetParam().Before);
  property->Undo();
  EXPECT_EQ(property->StateFlags(), GetParam().After);
  EXPECT_FALSE(property->Dirty());
}

INSTANTIATE_TEST_SUITE_P(Table, PropertyUndoneTest,
                         testing::Values(Undone{sfnonpersistent | sfNew, sfdeleted}, Undone{sfNew, sfdeleted},
                                         Undone{sfpersistent, sfpersistent},
                                         Undone{sfpersistent | sfpendingdelete | sfdirty, sfpersistent},
                                         Undone{sfdeleted, sfdeleted}, Undone{sfnonpersistent, sfnonpersistent}));

TEST_F(PropertyStateTest, UndoOnAFreshPropertyLeavesItDeletedAndNotInItsInitialState) {
  const auto property = New();
  property->Undo();
  EXPECT_EQ(property->StateFlags(), sfdeleted);
}

TEST_F(PropertyStateTest, FreeStandingDeletedPropertyStillAcceptsAValue) {
  const auto property = New();
  property->SetStateFlags(sfdeleted);
  property->SetValue(1);
  EXPECT_EQ(property->Value().AsLong(), 1);
}

TEST_F(PropertyStateTest, StateDisplayHasNoWordForNonPersistent) { EXPECT_EQ(New()->StateFlagsDisplay(), "New"); }

TEST_F(PropertyStateTest, FreeStandingPropertyHasNoEditFlags) {
  EXPECT_EQ(New()->EditFlags(), efNone);
  EXPECT_EQ(New()->EditFlagsDisplay(), "(None)");
}

}  // namespace
}  // namespace velmoria::test

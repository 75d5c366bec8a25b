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

struct Updated {
  int Before;
  Variant Value;
  int After;
};

class PropertyUpdatedTest : public PropertyStateTest, public testing::WithParamInterface<Updated> {};

TEST_P(PropertyUpdatedTest, WriteEndsInItsState) {
  const auto property = New(GetParam().Value);
  property->SetStateFlags(zStateFlags{GetParam().Before});
  property->MarkUpdated();
  EXPECT_EQ(static_cast<int>(property->StateFlags()), GetParam().After);
  EXPECT_FALSE(property->DirtyValue());
}

// 34 is a new one, 8 a pending delete, 16 dirty. A deleted one counts as persistent, too, behind a write.
INSTANTIATE_TEST_SUITE_P(Table, PropertyUpdatedTest,
                         testing::Values(Updated{34, 1, 1}, Updated{34, {}, 1}, Updated{2, 1, 1}, Updated{1, 1, 1},
                                         Updated{1, {}, 1}, Updated{1 + 16, 1, 1}, Updated{1 + 8 + 16, 1, 4},
                                         Updated{34 + 8 + 16, 1, 4}, Updated{34 + 8, {}, 4}, Updated{8, 1, 4},
                                         Updated{32, 1, 1}, Updated{4, 1, 5}));

TEST_F(PropertyStateTest, FlagsAreJoinedAndNotAdded) {
  const auto property = New(1);
  property->MarkUpdated();
  property->MarkUpdated();
  EXPECT_EQ(property->StateFlags(), sfpersistent);
}

TEST_F(PropertyStateTest, NullOfTheWriteRaisesEventsThatMayVeto) {
  const auto property = New();
  int calls = 0;
  property->BeforeValueChange += [&](const Variant& value, bool& Cancel) {
    calls += value.IsNull() ? 1 : 100;
    Cancel = true;
  };
  property->MarkUpdated();
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(property->EmptyValue());
  EXPECT_EQ(property->StateFlags(), sfpersistent);
}

TEST_F(PropertyStateTest, EmptyValueOfAnOldPropertyStaysEmptyByTheWrite) {
  const auto property = New();
  property->SetStateFlags(sfpersistent);
  property->MarkUpdated();
  EXPECT_TRUE(property->EmptyValue());
}

TEST_F(PropertyStateTest, RefusedNullOfTheWriteLeavesTheStateNew) {
  const auto property =
      Framework().CreateProperty({.Name = "X", .DataType = dtLongInteger, .Flags = pfRequired})->Copy();
  EXPECT_THROW(property->MarkUpdated(), Error);
  EXPECT_EQ(property->StateFlags(), sfnonpersistent | sfNew);
  EXPECT_FALSE(property->Dirty());
  EXPECT_TRUE(property->EmptyValue());
}

TEST_F(PropertyStateTest, StateThatIsStoredStampsTheDefinition) {
  const auto property = New(1)->Copy();
  property->SetStateFlags(sfpersistent);
  EXPECT_TRUE(property->Dirty());
  property->ClearDirty();
  EXPECT_FALSE(property->Dirty());
  EXPECT_FALSE(property->DirtyValue());
}

TEST_F(PropertyStateTest, FreshStatesHaveTheirNumbers) {
  EXPECT_EQ(static_cast<int>(New()->StateFlags()), 34);
  EXPECT_EQ(static_cast<int>(New(1)->StateFlags()), 50);
}

TEST_F(PropertyStateTest, UndoGoesOneStepAndRaisesNoEvent) {
  const auto property = New(1);
  property->MarkUpdated();
  property->SetValue(2);
  property->SetValue(3);
  property->SetModifiable(false);
  property->BeforeValueChange += [](const Variant&, bool&) { ADD_FAILURE(); };
  property->AfterValueChange += [] { ADD_FAILURE(); };
  property->Undo();
  EXPECT_EQ(property->Value(), Variant(2));
  property->Undo();
  EXPECT_EQ(property->Value(), Variant(2));
  EXPECT_EQ(property->StateFlags(), sfpersistent);
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

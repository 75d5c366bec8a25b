#include "velmoria/brokering/business_objects.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/named_objects_fixture.h"

namespace velmoria::test {
namespace {

TEST_F(BusinessObjectsTest, TransientCollectionIsCompleteAtOnce) {
  const auto people = NewCollection();
  EXPECT_EQ(people->CollectionType(), cltInitialized);
  EXPECT_EQ(people->Name(), "People");
  EXPECT_EQ(people->Count(), 0);
  EXPECT_EQ(people->Details(), "BusinessObjects Count 0  Name: 'People'");
}

TEST_F(BusinessObjectsTest, TransientCollectionTakesACopyOfTheDefaultFormat) {
  const auto people = NewCollection();
  people->KeyFormat()->SetSeparator("/");
  EXPECT_EQ(NewCollection()->KeyFormat()->Separator(), "");
}

TEST_F(BusinessObjectsTest, CopyOfTheDefaultFormatLeavesItsPropertiesBehind) {
  const auto& standard = apartment_.State().DefaultKeyFormat;
  standard->SetSeparator("/");
  standard->Properties()->SetupItem({.Name = "Name"});
  const auto format = NewCollection()->KeyFormat();
  EXPECT_EQ(format->Separator(), "/");
  EXPECT_EQ(format->Properties()->Count(), 0);
  EXPECT_EQ(standard->Properties()->Count(), 1);
}

TEST_F(BusinessObjectsTest, MembersAreFoundByPositionAndKey) {
  const auto people = NewCollection();
  const auto anna = Named("anna");
  people->Add(anna);
  for (const Variant& index :
       {Variant(1), Variant(std::int16_t{1}), Variant(1.0), Variant(Decimal::From(std::int64_t{1})), Variant(Byte{1}),
        Variant("anna"), Variant("ANNA")}) {
    EXPECT_EQ(people->Item(index), anna) << index.TypeName();
  }
}

TEST_F(BusinessObjectsTest, UnknownIndexIsShownByItsType) {
  const auto people = NewCollection();
  const std::pair<Variant, const char*> cases[] = {{7, "Index: 7"},
                                                   {7.5, "Index: 7.5"},
                                                   {"bob", "Index: 'bob'"},
                                                   {0, "Index: 0"},
                                                   {1e10, "Index: 10000000000"},
                                                   {7.0F, "Index: (Single)"},
                                                   {true, "Index: (Boolean)"},
                                                   {Variant{}, "Index: (Empty)"}};
  for (const auto& [index, text] : cases) {
    SCOPED_TRACE(text);
    ExpectRaised(errItem_BusinessObject, [&] { people->Item(index); }, {.Text = text});
  }
}

TEST_F(BusinessObjectsTest, MemberWhoseKeyHasChangedIsFoundUnderBothKeysAndRemovedUnderTheOld) {
  const auto people = NewCollection();
  const auto anna = Named("anna");
  people->Add(anna);
  anna->ItsKey = "anne";
  EXPECT_EQ(people->Item("anna"), anna);
  EXPECT_EQ(people->Item("ANNE"), anna);
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { people->Remove("anne"); });
  people->Remove("anna");
  EXPECT_EQ(people->Count(), 0);
}

TEST_F(BusinessObjectsTest, MemberThatCannotTellItsKeyAnswersToNoneAndHidesNoOther) {
  const auto people = NewCollection();
  const auto anna = Named("anna");
  const auto bob = Named("bob");
  people->Add(anna);
  people->Add(bob);
  bob->ItsKey = "rob";
  anna->KeyFails = true;
  EXPECT_EQ(people->Item("rob"), bob);
  ExpectRaised(errItem_BusinessObject, [&] { people->Item("carl"); }, {.Text = "Index: 'carl'", .Count = 1});
}

TEST_F(BusinessObjectsTest, FormatIsNeverNone) {
  const auto people = NewCollection();
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { people->SetKeyFormat({}); });
  EXPECT_NE(people->KeyFormat(), nullptr);
}

TEST_F(BusinessObjectsTest, ListenerOfItemNotFoundSuppliesTheObject) {
  const auto people = NewCollection();
  const auto bob = Named("bob");
  people->ItemNotFound += [&](const Variant&, IBusinessObjectPtr& Item) { Item = bob; };
  EXPECT_EQ(people->Item("bob"), bob);
}

TEST_F(BusinessObjectsTest, FormatWithoutStringKeysRefusesAKeyOnEveryPath) {
  const auto people = NewCollection(Framework{}.CreateKeyFormat({.EmptyKey = true}));
  people->Add(Named("anna"));
  ExpectRaised(errNotSupported_Key, [&] { people->Item("anna"); }, {.Text = "Key: 'anna'"});
  ExpectRaised(errNotSupported_Key, [&] { people->Remove("anna"); });
  EXPECT_NE(people->Item(1), nullptr);
}

TEST_F(BusinessObjectsTest, AddPlacesByPosition) {
  const auto people = NewCollection();
  people->Add(Named("a"));
  people->Add(Named("c"));
  people->Add(Named("b"), {.Before = "c"});
  people->Add(Named("d"), {.After = 3});
  EXPECT_EQ(Keys(*people), "abcd");
}

TEST_F(BusinessObjectsTest, AddWithBothPositionsIsRefused) {
  const auto people = NewCollection();
  ExpectRaised(
      errAdd_BusinessObject, [&] { people->Add(Named("a"), {.Before = 1, .After = 2}); },
      {.Text = "Key: 'a'  Before: '1'  After: '2'\r\nPassing both Before and After arguments is not allowed."});
}

TEST_F(BusinessObjectsTest, AddIsRefusedWhenNotSupported) {
  const auto people = NewCollection({}, false);
  ExpectRaised(errNotSupported_Add, [&] { people->Add(Named("a")); });
}

TEST_F(BusinessObjectsTest, CancelledAddAndRemoveChangeNothing) {
  const auto people = NewCollection();
  people->Add(Named("a"));
  people->BeforeAdd += [](IBusinessObject&, bool& Cancel) { Cancel = true; };
  people->BeforeRemove += [](IBusinessObject&, bool& Cancel) { Cancel = true; };
  people->Add(Named("b"));
  people->Remove(1);
  EXPECT_EQ(Keys(*people), "a");
}

TEST_F(BusinessObjectsTest, AddAndRemoveAreHeardBeforeAndAfterAndNotAfterwardsWhenCancelled) {
  const auto people = NewCollection();
  std::string heard;
  bool cancels = false;
  people->BeforeAdd += [&](IBusinessObject& item, bool& Cancel) { heard += "+" + item.Key(), Cancel = cancels; };
  people->AfterAdd += [&] { heard += "(" + Keys(*people) + ")"; };
  people->BeforeRemove += [&](IBusinessObject& item, bool& Cancel) { heard += "-" + item.Key(), Cancel = cancels; };
  people->AfterRemove += [&] { heard += "(" + Keys(*people) + ")"; };
  people->Add(Named("a"));
  people->Add(Named("b"));
  people->Remove("a");
  EXPECT_EQ(std::exchange(heard, {}), "+a(a)+b(ab)-a(b)");
  cancels = true;
  people->Add(Named("c"));
  people->Remove(1);
  EXPECT_EQ(heard, "+c-b");
}

TEST_F(BusinessObjectsTest, RemoveTakesByPositionAndByKey) {
  const auto people = NewCollection();
  for (const char* key : {"a", "b", "c"}) people->Add(Named(key));
  people->Remove(2);
  people->Remove("C");
  EXPECT_EQ(Keys(*people), "a");
}

TEST_F(BusinessObjectsTest, RemoveTakesNothingByAnIndexThatOnlyAListenerUnderstands) {
  const auto people = NewCollection();
  people->Add(Named("a"));
  people->ItemNotFound += [&](const Variant&, IBusinessObjectPtr& Item) { Item = people->Item(1); };
  ExpectRaised(errRemove_BusinessObject, [&] { people->Remove(true); }, {.Text = "Index: (Boolean)"});
  ExpectRaised(errRemove_BusinessObject, [&] { people->Remove(people); }, {.Text = "Index: (BusinessObjects)"});
  EXPECT_EQ(people->Count(), 1);
}

TEST_F(BusinessObjectsTest, RemoveIsRefusedWhenNotSupported) {
  const auto people = NewCollection({}, true, false, false);
  people->Add(Named("a"));
  ExpectRaised(errNotSupported_Remove, [&] { people->Remove(1); });
}

TEST_F(BusinessObjectsTest, SetupItemNeedsADatabaseResult) {
  const auto people = NewCollection();
  ExpectRaised(errNotSupported_SetupBusinessObject, [&] { people->SetupItem(); });
}

TEST_F(BusinessObjectsTest, LockedCollectionRefusesItsSettings) {
  const auto people = NewCollection({}, true, true);
  ExpectRaised(errVelmoria_Locked, [&] { people->SetName("x"); });
  ExpectRaised(errVelmoria_Locked, [&] { people->SetSupportsAdd(false); });
  ExpectRaised(errVelmoria_Locked, [&] { people->SetSupportsRemove(false); });
  ExpectRaised(errVelmoria_Locked, [&] { people->SetKeyFormat(Framework{}.CreateKeyFormat({})); });
  people->SetLocked(false);
  people->SetName("x");
  EXPECT_EQ(people->Name(), "x");
}

TEST_F(BusinessObjectsTest, CollectionTypeOfATransientCollectionIsFixed) {
  const auto people = NewCollection();
  ExpectRaised(errVelmoria_Locked, [&] { people->SetCollectionType(cltOptimized); },
               {.Text = "CollectionType must be set before objects are retrieved from the collection"});
}

TEST_F(BusinessObjectsTest, FormatThatHasBeenUsedIsLocked) {
  const auto people = NewCollection();
  EXPECT_FALSE(people->KeyFormat()->Locked());
  people->Add(Named("a"));
  EXPECT_TRUE(people->KeyFormat()->Locked());
  ExpectRaised(errVelmoria_Locked, [&] { people->SetKeyFormat(Framework{}.CreateKeyFormat({})); });
}

TEST_F(BusinessObjectsTest, SetupAsAHostCollectionIsAlwaysRefused) {
  const auto people = NewCollection();
  ExpectRaised(errVelmoria_Locked, [&] { people->Setup(NewCollection()); });
}

TEST_F(BusinessObjectsTest, ModifiableAsksAllOrAny) {
  const auto people = NewCollection();
  EXPECT_TRUE(people->Modifiable(true));
  EXPECT_FALSE(people->Modifiable(false));
  const auto fixed = Named("a");
  fixed->IsModifiable = false;
  people->Add(fixed);
  people->Add(Named("b"));
  EXPECT_FALSE(people->Modifiable(true));
  EXPECT_TRUE(people->Modifiable(false));
}

TEST_F(BusinessObjectsTest, FlagsAreThoseOfAllMembersTogether) {
  const auto people = NewCollection();
  const auto a = Named("a");
  const auto b = Named("b");
  a->Edits = efUpdate;
  a->State = sfNew;
  b->Edits = efDelete;
  people->Add(a);
  people->Add(b);
  EXPECT_EQ(people->EditFlags(), efUpdate | efDelete);
  EXPECT_EQ(people->StateFlags(), sfNew | sfpersistent);
}

}  // namespace
}  // namespace velmoria::test

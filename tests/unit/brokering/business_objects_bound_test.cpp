#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/business_objects.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

KeyFormatPtr Keyless() { return Framework{}.CreateKeyFormat({.EmptyKey = true}); }

class BoundBusinessObjectsTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  BoundOrders orders_;
};

TEST_F(BoundBusinessObjectsTest, ItemIsFoundByPosition) {
  const auto orders = orders_.Collection();
  EXPECT_EQ(orders->Count(), 3);
  for (const Variant& index :
       {Variant(2), Variant(std::int16_t{2}), Variant(2.0), Variant(Decimal::Parse("2")), Variant(Byte{2})}) {
    EXPECT_EQ(IdOf(*orders->Item(index)), 2) << index.TypeName();
  }
}

TEST_F(BoundBusinessObjectsTest, ItemIsFoundByKey) {
  const auto orders = orders_.Collection();
  EXPECT_EQ(orders->Item("3"), orders->Item(3));
}

TEST_F(BoundBusinessObjectsTest, ItemIsFoundByIdentifier) {
  const auto orders = orders_.Collection();
  const IdentifierPtr identifier = orders_.Design.Order->CreateIdentifier();
  identifier->Properties()->Item(1)->SetValue(2);
  EXPECT_EQ(orders->Item(identifier), orders->Item(2));
}

TEST_F(BoundBusinessObjectsTest, KeyFollowsTheFormatOfTheAction) {
  orders_.Action->KeyFormat()->SetSeparator("|");
  orders_.Action->KeyFormat()->SetMixed(true);
  const auto orders = orders_.Collection();
  EXPECT_EQ(IdOf(*orders->Item("Sales|Order|2")), 2);
  EXPECT_NE(orders->KeyFormat(), orders_.Action->KeyFormat());
}

TEST_F(BoundBusinessObjectsTest, KeyFollowsTheFormatGiven) {
  const auto orders = orders_.Collection(
      {.ObjectType = otModel, .KeyFormat = Framework{}.CreateKeyFormat({.Separator = "=", .IncludeNames = true})});
  EXPECT_EQ(IdOf(*orders->Item("Id=2")), 2);
}

TEST_F(BoundBusinessObjectsTest, KeyIsFoundWithoutRegardToCaseEvenTheFirstTime) {
  const auto orders = orders_.Collection(
      {.ObjectType = otModel, .KeyFormat = Framework{}.CreateKeyFormat({.Separator = "=", .IncludeNames = true})});
  EXPECT_EQ(orders->Item("ID=3"), orders->Item("id=3"));
}

TEST_F(BoundBusinessObjectsTest, PositionZeroAndThePositionBehindTheLastAreRowsThatAreNotThere) {
  const auto orders = orders_.Collection();
  ExpectRaised(errPersistence_Row, [&] { orders->Item(0); }, {.Text = "Row: -1  Count: 3"});
  ExpectRaised(errPersistence_Row, [&] { orders->Item(orders->Count() + 1); }, {.Text = "Row: 3  Count: 3"});
  EXPECT_EQ(IdOf(*orders->Item(1)), 1);
}

TEST_F(BoundBusinessObjectsTest, UnknownKeyIsReportedAsTheKeyAndNotAsTheRowWhereTheSearchEnded) {
  const auto orders = orders_.Collection();
  ExpectRaised(errItem_BusinessObject, [&] { orders->Item("9"); }, {.Text = "Index: '9'", .Count = 1});
}

TEST_F(BoundBusinessObjectsTest, OddIndexTypesGiveNoneWithoutEventOrError) {
  const auto orders = orders_.Collection();
  bool asked = false;
  orders->ItemNotFound += [&](const Variant&, IBusinessObjectPtr&) { asked = true; };
  for (const Variant& index : {Variant(true), Variant(1.0F), Variant(Currency{10000}), Variant(), Variant::Null()}) {
    EXPECT_EQ(orders->Item(index), nullptr) << index.TypeName();
  }
  EXPECT_EQ(Thrown([&] { orders->Item("9"); })->CatalogueNumber(), 15064);
  EXPECT_FALSE(asked);
}

TEST_F(BoundBusinessObjectsTest, FormatWithoutStringKeysRefusesAKeyOnEveryPath) {
  const auto orders = orders_.Collection({.ObjectType = otModel, .KeyFormat = Keyless()});
  const IdentifierPtr identifier = orders_.Design.Order->CreateIdentifier();
  identifier->Properties()->Item(1)->SetValue(2);
  ExpectRaised(errNotSupported_Key, [&] { orders->Item("2"); }, {.Text = "Key: '2'"});
  ExpectRaised(errNotSupported_Key, [&] { orders->Item(identifier); }, {.Text = "Key: '2'"});
  EXPECT_EQ(IdOf(*orders->Item(2)), 2);
  ExpectRaised(errNotSupported_Key, [&] { orders->Item("2"); });
}

TEST_F(BoundBusinessObjectsTest, OptimizedCollectionKeepsEveryObjectAskedFor) {
  const auto orders = orders_.Collection({.ObjectType = otModel, .CollectionType = cltOptimized});
  EXPECT_EQ(orders->Item(2), orders->Item(2));
}

TEST_F(BoundBusinessObjectsTest, CollectionTypeIsTheActionsUnlessGiven) {
  orders_.Action->SetCollectionType(cltDispatcher);
  EXPECT_EQ(orders_.Collection()->CollectionType(), cltDispatcher);
  EXPECT_EQ(orders_.Collection({.ObjectType = otModel, .CollectionType = cltInitialized})->CollectionType(),
            cltInitialized);
}

TEST_F(BoundBusinessObjectsTest, RangeForVisitsEveryRowInOrder) {
  const auto orders = orders_.Collection();
  const auto third = orders->Item(3);
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(orders->Item(3), third);
}

TEST_F(BoundBusinessObjectsTest, InitializedCollectionBuildsEveryObjectAtSetUp) {
  const auto orders = orders_.Collection({.ObjectType = otModel, .CollectionType = cltInitialized});
  const StatisticPtr built = orders->Statistics()->Item("Build Initialized Collection");
  EXPECT_EQ(built->SubjectCount(), 3);
  EXPECT_EQ(built->SubjectLabel(), "BusinessObject");
  EXPECT_EQ(built->TotalSeconds(), 0);
  EXPECT_TRUE(orders->KeyFormat()->Locked()) << "it holds objects";
}

TEST_F(BoundBusinessObjectsTest, BuildingAllIsMeasuredUnderTheNameOfTheCollectionType) {
  const auto orders = orders_.Collection({.ObjectType = otModel, .CollectionType = cltOptimized});
  EXPECT_EQ(orders->Statistics()->Count(), 0);
  orders->NewEnum();
  EXPECT_EQ(orders->Statistics()->Item("Build Optimized Collection")->SubjectCount(), 3);
}

TEST_F(BoundBusinessObjectsTest, StatisticsAreThoseOfTheResult) {
  const RecordsetPtr result = orders_.Read();
  EXPECT_EQ(orders_.Collection({.Recordset = result, .ObjectType = otModel})->Statistics(), result->Statistics());
}

TEST_F(BoundBusinessObjectsTest, EmptyResultIsBuiltWithoutMeasurement) {
  orders_.Fill({.Rows = 0});
  const auto orders = orders_.Collection({.ObjectType = otModel, .CollectionType = cltInitialized});
  EXPECT_EQ(orders->Count(), 0);
  EXPECT_TRUE(orders->NewEnum().empty());
  EXPECT_EQ(orders->Statistics()->Count(), 0);
}

TEST_F(BoundBusinessObjectsTest, BuildingAllClearsTheMessagesThatTheHostHasNotLookedAt) {
  const auto orders = orders_.Collection();
  Thrown([&] { orders->Item(0); });
  ASSERT_NE(apartment_.Messages().Count(), 0);
  orders->NewEnum();
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(BoundBusinessObjectsTest, FirstRowUnderAKeyStaysWhenAnotherHasTheSame) {
  orders_.Fill({.Ids = {7, 7, 8}});
  const auto orders = orders_.Collection();
  orders->NewEnum();
  EXPECT_EQ(orders->Item("7"), orders->Item(1));
  EXPECT_NE(orders->Item("7"), orders->Item(2));
}

TEST_F(BoundBusinessObjectsTest, ResultWithoutAKeyColumnIsReportedAtTheFirstItem) {
  orders_.Fill({.WithKeyColumn = false});
  const auto orders = orders_.Collection();
  EXPECT_EQ(orders->Count(), 3);
  ExpectRaised(errIdentifier_Property, [&] { orders->Item(1); }, {.Text = "Class: 'Order'"});
}

TEST_F(BoundBusinessObjectsTest, ModelWhoseKeyFailsIsInMemoryAllTheSame) {
  const KeyFormatPtr format = Framework{}.CreateKeyFormat({});
  format->Properties()->SetupItem({.Name = "Colour"});
  const auto orders = orders_.Collection({.ObjectType = otModel, .KeyFormat = format});
  ExpectRaised(errItem_Property, [&] { orders->Item(1); });
  EXPECT_EQ(IdOf(*orders->Item(1)), 1);
}

TEST_F(BoundBusinessObjectsTest, ParentIdentifierIsHandedToEachObject) {
  const IdentifierPtr parent = orders_.Design.Item->CreateIdentifier();
  const auto orders = orders_.Collection({.ParentIdentifier = parent, .ObjectType = otModel});
  EXPECT_EQ(orders->Item(1)->ParentIdentifier(), parent);
}

TEST_F(BoundBusinessObjectsTest, AddAndRemoveAreRefusedWhateverSupportsAddSays) {
  const auto orders = orders_.Collection();
  bool asked = false;
  orders->BeforeAdd += [&](IBusinessObject&, bool&) { asked = true; };
  EXPECT_FALSE(orders->SupportsAdd() || orders->SupportsRemove());
  ExpectRaised(errVelmoria_Locked, [&] { orders->SetSupportsAdd(true); });
  ExpectRaised(errVelmoria_Locked, [&] { orders->SetSupportsRemove(true); });
  ExpectRaised(errNotSupported_Add, [&] { orders->Add(orders->Item(1)); });
  ExpectRaised(errNotSupported_Remove, [&] { orders->Remove(1); });
  EXPECT_FALSE(asked);
}

TEST_F(BoundBusinessObjectsTest, SettingsOfABoundCollectionAreRefused) {
  const auto orders = orders_.Collection({.Name = "Mine", .ObjectType = otModel});
  EXPECT_TRUE(orders->Locked());
  ExpectRaised(errVelmoria_Locked, [&] { orders->SetName("Yours"); });
  ExpectRaised(errVelmoria_Locked, [&] { orders->SetLocked(false); });
  ExpectRaised(errVelmoria_Locked, [&] { orders->SetKeyFormat(Keyless()); });
  ExpectRaised(errVelmoria_Locked, [&] { orders->Setup(orders_.Collection()); });
  EXPECT_EQ(orders->Name(), "Mine");
}

TEST_F(BoundBusinessObjectsTest, CollectionTypeCanBeSetUntilObjectsAreRetrieved) {
  const auto orders = orders_.Collection();
  orders->SetCollectionType(cltInitialized);
  EXPECT_EQ(orders->Statistics()->Item("Build Initialized Collection")->SubjectCount(), 3);
  ExpectRaised(errVelmoria_Locked, [&] { orders->SetCollectionType(cltOptimized); },
               {.Text = "CollectionType must be set before objects are retrieved from the collection"});
}

TEST_F(BoundBusinessObjectsTest, CollectionTypeStaysOpenWhileNoKeyHasBeenSeen) {
  const auto orders = orders_.Collection({.ObjectType = otModel, .KeyFormat = Keyless()});
  orders->Item(1);
  orders->SetCollectionType(cltDispatcher);
  EXPECT_EQ(orders->CollectionType(), cltDispatcher);
}

TEST_F(BoundBusinessObjectsTest, FormatOfACollectionThatHoldsObjectsIsLockedWhenItIsRead) {
  const auto orders = orders_.Collection();
  EXPECT_FALSE(orders->KeyFormat()->Locked());
  orders->Item(1);
  EXPECT_TRUE(orders->KeyFormat()->Locked());
}

TEST_F(BoundBusinessObjectsTest, DetailedSearchesIsStoredAndReturned) {
  const auto orders = orders_.Collection();
  EXPECT_FALSE(orders->DetailedSearches());
  orders->SetDetailedSearches(true);
  EXPECT_TRUE(orders->DetailedSearches());
}

TEST_F(BoundBusinessObjectsTest, DetailsTellTheCountAndTheResult) {
  EXPECT_EQ(orders_.Collection()->Details(), "Business Object Count 3\r\nFake agent");
}

TEST_F(BoundBusinessObjectsTest, EditFlagsAreThoseOfTheAction) {
  orders_.Action->SetEditFlags(efUpdate | efDelete);
  EXPECT_EQ(orders_.Collection()->EditFlags(), efUpdate | efDelete);
}

TEST_F(BoundBusinessObjectsTest, StateFlagsOfAnUntouchedCollectionAreThoseOfTheRows) {
  const RecordsetPtr result = orders_.Read();
  const auto orders = orders_.Collection({.Recordset = result, .ObjectType = otModel});
  result->DeletePersistentProperties(1);
  EXPECT_EQ(orders->StateFlags(), sfpendingdelete | sfpersistent);
  orders->Item(1);
  EXPECT_EQ(orders->StateFlags(), sfpersistent) << "now those of the objects held";
}

TEST_F(BoundBusinessObjectsTest, ModifiableOfAnUntouchedCollectionIsThatOfTheColumns) {
  const auto orders = orders_.Collection();
  EXPECT_TRUE(orders->Modifiable(true));
  orders_.Database->Columns->Item("Name")->SetModifiable(false);
  EXPECT_FALSE(orders->Modifiable(true));
  EXPECT_TRUE(orders->Modifiable(false));
}

class DispatcherTest : public BoundBusinessObjectsTest {
 protected:
  BusinessObjectsPtr dispatcher_ = orders_.Collection({.ObjectType = otModel, .CollectionType = cltDispatcher});
};

TEST_F(DispatcherTest, GivesAnotherObjectEachTime) {
  const auto first = dispatcher_->Item(1);
  EXPECT_NE(dispatcher_->Item(1), first);
  EXPECT_EQ(IdOf(*dispatcher_->Item(1)), 1);
}

TEST_F(DispatcherTest, RefusesWhatNeedsMembersBeforeAnyEvent) {
  bool asked = false;
  dispatcher_->BeforeUpdate += [&](bool&) { asked = true; };
  dispatcher_->BeforePendingDelete += [&](bool&) { asked = true; };
  const RaisedExpectation expected{.Text = "CollectionType: 'Dispatcher'", .Count = 1};
  ExpectRaised(errNotSupported_CollectionType, [&] { dispatcher_->Update(); }, expected);
  ExpectRaised(errNotSupported_CollectionType, [&] { dispatcher_->Delete(); }, expected);
  ExpectRaised(errNotSupported_CollectionType, [&] { dispatcher_->Undo(); }, expected);
  ExpectRaised(errNotSupported_CollectionType, [&] { dispatcher_->Dirty(); }, expected);
  ExpectRaised(errNotSupported_CollectionType, [&] { dispatcher_->NewEnum(); }, expected);
  EXPECT_FALSE(asked);
}

TEST_F(DispatcherTest, RefusalNamesTheOperationOfTheInterface) {
  const std::pair<const char*, void (*)(BusinessObjects&)> operations[] = {
      {"IBusinessObjects_Update", [](BusinessObjects& each) { each.Update(); }},
      {"IBusinessObjects_Delete", [](BusinessObjects& each) { each.Delete(); }},
      {"IBusinessObjects_Undo", [](BusinessObjects& each) { each.Undo(); }},
      {"IBusinessObjects_Dirty (Get)", [](BusinessObjects& each) { each.Dirty(); }},
  };
  for (const auto& [routine, operation] : operations) {
    EXPECT_TRUE(Thrown([&] { operation(*dispatcher_); }));
    EXPECT_EQ(apartment_.Messages().Item("15098")->RoutineName(), routine);
    apartment_.Messages().Clear();
  }
}

TEST_F(DispatcherTest, StateFlagsStayThoseOfTheRows) {
  const auto order = dispatcher_->Item(1);
  order->FindProperty("Name")->SetValue("changed");
  EXPECT_EQ(order->StateFlags(), sfdirty | sfpersistent);
  EXPECT_EQ(dispatcher_->StateFlags(), sfpersistent);
}

TEST_F(DispatcherTest, FirstModelOfARowGoesToTheObjectsInMemoryAllTheSame) {
  EXPECT_FALSE(dispatcher_->KeyFormat()->Locked());
  dispatcher_->Item(1);
  EXPECT_TRUE(dispatcher_->KeyFormat()->Locked());
}

TEST_F(DispatcherTest, HeldInAContextItRefusesTheUpdateOfAll) {
  const auto context = Make<BusinessContext>();
  context->Add(dispatcher_);
  ExpectRaised(errNotSupported_CollectionType, [&] { context->Update(); });
}

class SetupItemTest : public BoundBusinessObjectsTest {
 protected:
  BusinessObjectsPtr collection_ = orders_.Collection();
};

TEST_F(SetupItemTest, MakesANewObjectBehindTheRows) {
  const auto order = collection_->SetupItem();
  EXPECT_EQ(order->StateFlags(), sfNew);
  EXPECT_EQ(collection_->Count(), 4);
  EXPECT_EQ(collection_->Item(4), order);
}

TEST_F(SetupItemTest, NewObjectIsFoundByTheKeyItHasBeenGiven) {
  const auto order = collection_->SetupItem();
  order->FindProperty("Id")->SetValue(77);
  EXPECT_EQ(collection_->Item("77"), order);
}

TEST_F(SetupItemTest, NewObjectIsInsertedByUpdate) {
  const auto order = collection_->SetupItem();
  order->FindProperty("Id")->SetValue(77);
  collection_->Update();
  EXPECT_EQ(orders_.Database->Inserts, 1);
  EXPECT_EQ(order->StateFlags(), sfpersistent);
}

TEST_F(SetupItemTest, NewObjectUnderAnActionWithoutEfUpdateIsPassedOverSilently) {
  orders_.Action->SetEditFlags(efInsert);
  collection_->SetupItem()->FindProperty("Id")->SetValue(77);
  collection_->Update();
  EXPECT_EQ(orders_.Database->Writes(), 0);
}

TEST_F(SetupItemTest, ListenersHearOfItAndMayCancel) {
  std::string heard;
  const auto token = collection_->AfterSetupItem += [&] { heard += "after"; };
  collection_->SetupItem();
  EXPECT_EQ(heard, "after");
  collection_->AfterSetupItem -= token;
  collection_->BeforeSetupItem += [](bool& Cancel) { Cancel = true; };
  EXPECT_EQ(collection_->SetupItem(), nullptr);
  EXPECT_EQ(collection_->Count(), 4);
}

TEST_F(SetupItemTest, DeletedNewObjectNoLongerAnswersToAKey) {
  const auto order = collection_->SetupItem();
  order->FindProperty("Id")->SetValue(77);
  order->Delete();
  EXPECT_EQ(order->StateFlags() & sfdeleted, sfdeleted);
  ExpectRaised(errItem_BusinessObject, [&] { collection_->Item("77"); }, {.Count = 1});
}

class BoundPersistenceTest : public BoundBusinessObjectsTest {
 protected:
  BoundPersistenceTest() {
    collection_->BeforeUpdate += [this](bool&) { heard_ += "<"; };
    collection_->BeforeItemUpdate += [this](IBusinessObject& item, bool&) { heard_ += item.Key(); };
    collection_->AfterItemUpdate += [this](IBusinessObject&) { heard_ += "."; };
    collection_->AfterUpdate += [this] { heard_ += ">"; };
  }
  BusinessObjectsPtr collection_ = orders_.Collection({.ObjectType = otModel, .CollectionType = cltOptimized});
  std::string heard_;
};

TEST_F(BoundPersistenceTest, UpdateOfAnUntouchedCollectionVisitsNoMember) {
  collection_->Update();
  EXPECT_EQ(heard_, "<>");
  EXPECT_EQ(orders_.Database->Reads, 1);
}

TEST_F(BoundPersistenceTest, UpdateWritesTheChangedMembers) {
  collection_->Item(3)->FindProperty("Name")->SetValue("new name");
  EXPECT_TRUE(collection_->Dirty());
  collection_->Update();
  EXPECT_EQ(heard_, "<3.>");
  EXPECT_EQ(orders_.Database->WrittenRows, std::vector<std::int32_t>{2});
  EXPECT_FALSE(collection_->Dirty());
}

TEST_F(BoundPersistenceTest, DeleteBuildsAndFlagsEveryRowAndUpdateDeletesThem) {
  collection_->Delete();
  EXPECT_EQ(collection_->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(orders_.Database->Writes(), 0);
  collection_->Update();
  EXPECT_EQ(orders_.Database->Deletes, 3);
}

TEST_F(BoundPersistenceTest, UndoTakesTheDeletionBack) {
  collection_->Delete();
  collection_->Undo();
  EXPECT_EQ(collection_->StateFlags(), sfpersistent);
  collection_->Update();
  EXPECT_EQ(orders_.Database->Writes(), 0);
}

TEST_F(BoundPersistenceTest, OtherKeysAreStillFoundAfterARowHasBeenDeleted) {
  const auto second = collection_->Item(2);
  second->Delete();
  second->Update();
  EXPECT_EQ(IdOf(*collection_->Item("3")), 3);
  ExpectRaised(errItem_BusinessObject, [&] { collection_->Item("9"); }, {.Count = 1});
}

TEST_F(BoundPersistenceTest, DeletedObjectStaysUnderTheKeyItWasSeenWith) {
  const auto second = collection_->Item(2);
  second->Delete();
  second->Update();
  EXPECT_EQ(collection_->Item("2"), second);
  EXPECT_EQ(second->StateFlags(), sfdeleted);
}

class PagedBusinessObjectsTest : public testing::Test {
 protected:
  static std::string IdsTo(int last) {
    std::string ids = "1";
    for (int id = 2; id <= last; ++id) ids += "," + std::to_string(id);
    return ids;
  }

  ScopedApartment apartment_;
  BoundOrders orders_{{.Rows = 30, .Buffer = 10}};
  BusinessObjectsPtr collection_ = orders_.Collection();
};

TEST_F(PagedBusinessObjectsTest, CountIsThatOfTheWholeResult) { EXPECT_EQ(collection_->Count(), 30); }

TEST_F(PagedBusinessObjectsTest, ItemIsTheRowOfThatNumberThoughPagesAreNumberedOneShort) {
  for (const int position : {1, 10, 11, 12, 20, 21, 30}) EXPECT_EQ(IdOf(*collection_->Item(position)), position);
  EXPECT_EQ(orders_.Database->Reads, 3);
}

TEST_F(PagedBusinessObjectsTest, ItemOfCountIsTheLastRow) {
  EXPECT_EQ(IdOf(*collection_->Item(collection_->Count())), 30);
}

TEST_F(PagedBusinessObjectsTest, RangeForVisitsEveryRowOnceAndEnds) {
  EXPECT_EQ(Ids(*collection_), IdsTo(30));
  EXPECT_EQ(orders_.Database->Reads, 3);
}

TEST_F(PagedBusinessObjectsTest, SecondWalkOverTheObjectsHeldReadsNothing) {
  Ids(*collection_);
  EXPECT_EQ(Ids(*collection_), IdsTo(30));
  EXPECT_EQ(orders_.Database->Reads, 3);
}

TEST_F(PagedBusinessObjectsTest, GoingBackStartsAgainFromTheFirstPage) {
  collection_->Item(25);
  ASSERT_EQ(orders_.Database->Reads, 3);
  EXPECT_EQ(IdOf(*collection_->Item(15)), 15);
  EXPECT_EQ(orders_.Database->Reads, 5);
}

TEST_F(PagedBusinessObjectsTest, DispatcherGoesBackAndForth) {
  const auto dispatcher = orders_.Collection({.ObjectType = otModel, .CollectionType = cltDispatcher});
  for (const int position : {25, 5, 15, 30, 1}) EXPECT_EQ(IdOf(*dispatcher->Item(position)), position);
}

TEST_F(PagedBusinessObjectsTest, RowsBeyondEitherEndAreNotThereAndNothingReadsOn) {
  ExpectRaised(errPersistence_Row, [&] { collection_->Item(31); }, {.Text = "Row: 10  Count: 10"});
  EXPECT_EQ(orders_.Database->Reads, 3);
  ExpectRaised(errPersistence_Row, [&] { collection_->Item(1000); });
  ExpectRaised(errPersistence_Row, [&] { collection_->Item(0); }, {.Text = "Row: -1  Count: 10"});
  ExpectRaised(errPersistence_Row, [&] { collection_->Item(-5); });
  EXPECT_EQ(orders_.Database->Reads, 3);
}

TEST_F(PagedBusinessObjectsTest, PagesOfOneRowAreWalkedToTheEnd) {
  orders_.Fill({.Rows = 5, .Buffer = 1});
  const auto orders = orders_.Collection();
  EXPECT_EQ(IdOf(*orders->Item(5)), 5);
  EXPECT_EQ(IdOf(*orders->Item(2)), 2);
  ExpectRaised(errPersistence_Row, [&] { orders->Item(6); });
  EXPECT_EQ(Ids(*orders), "1,2,3,4,5");
}

TEST_F(PagedBusinessObjectsTest, LastPageMayBeShorter) {
  orders_.Fill({.Rows = 23, .Buffer = 10});
  const auto orders = orders_.Collection();
  EXPECT_EQ(IdOf(*orders->Item(23)), 23);
  ExpectRaised(errPersistence_Row, [&] { orders->Item(24); }, {.Text = "Row: 3  Count: 3"});
  EXPECT_EQ(Ids(*orders_.Collection()), IdsTo(23));
}

TEST_F(PagedBusinessObjectsTest, KeyIsFoundAcrossPages) {
  EXPECT_EQ(IdOf(*collection_->Item("27")), 27);
  EXPECT_EQ(IdOf(*collection_->Item("3")), 3);
  ExpectRaised(errItem_BusinessObject, [&] { collection_->Item("31"); }, {.Text = "Index: '31'", .Count = 1});
}

TEST_F(PagedBusinessObjectsTest, SameRowOfTwoPagesIsTwoObjectsUnderTwoKeys) {
  const auto first = collection_->Item(1);
  const auto eleventh = collection_->Item(11);
  EXPECT_NE(first, eleventh);
  EXPECT_EQ(collection_->Item("1"), first);
  EXPECT_EQ(collection_->Item("11"), eleventh);
}

TEST_F(PagedBusinessObjectsTest, SetupItemNeedsTheEndOfTheResultWhichTheLastItemReaches) {
  ExpectRaised(errBusinessObjects_Buffer, [&] { collection_->SetupItem(); }, {.Text = "ObjectBuffer: 10."});
  collection_->Item(collection_->Count());
  const auto order = collection_->SetupItem();
  EXPECT_EQ(order->StateFlags(), sfNew);
  EXPECT_EQ(collection_->Item(31), order);
}

TEST_F(PagedBusinessObjectsTest, LastItemReachesTheEndAgainThoughItIsHeldAlready) {
  collection_->Item(30);
  collection_->Item(5);
  ExpectRaised(errBusinessObjects_Buffer, [&] { collection_->SetupItem(); });
  collection_->Item(30);
  EXPECT_NE(collection_->SetupItem(), nullptr);
}

TEST_F(PagedBusinessObjectsTest, NewObjectsMadeBeforeAndAfterGoingBackAreBothHeldAndInserted) {
  const auto add = [&](std::int32_t id) {
    collection_->Item(30);
    const auto order = collection_->SetupItem();
    order->FindProperty("Id")->SetValue(id);
    return order;
  };
  const auto first = add(77);
  collection_->Item(5);
  const auto second = add(78);
  EXPECT_EQ(collection_->Item(31), first);
  EXPECT_EQ(collection_->Item(32), second);
  collection_->Update();
  EXPECT_EQ(orders_.Database->Inserts, 2);
}

TEST_F(PagedBusinessObjectsTest, DeleteReachesEveryPageAndUpdateWritesEachRowThroughItsOwn) {
  collection_->Delete();
  collection_->Update();
  EXPECT_EQ(orders_.Database->Deletes, 30);
  EXPECT_EQ(orders_.Database->WrittenRows[11], 1) << "row 12 is the second of its page";
}

TEST_F(PagedBusinessObjectsTest, CountThatIsNotToldYetIsWalkedToTheLastRow) {
  orders_.Database->TotalRows = -1;
  EXPECT_EQ(collection_->Count(), -1);
  EXPECT_EQ(Ids(*collection_), IdsTo(30));
  EXPECT_EQ(collection_->Statistics()->Item("Build Optimized Collection")->SubjectCount(), 30);
}

TEST_F(PagedBusinessObjectsTest, DatabaseThatVanishesBetweenPagesIsReportedAndTheNextCallWorks) {
  const auto tenth = collection_->Item(10);
  orders_.Database->FailsReads = true;
  ExpectReported(RuntimeFailure::DriverFailure, [&] { collection_->Item(11); });
  ExpectReported(RuntimeFailure::DriverFailure, [&] { collection_->NewEnum(); });
  EXPECT_EQ(collection_->Item(10), tenth);
  orders_.Database->FailsReads = false;
  EXPECT_EQ(IdOf(*collection_->Item(11)), 11);
}

}  // namespace
}  // namespace velmoria::test

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {
namespace {

TEST_F(BoundBusinessObjectsTest, CollectionTypeIsTheActionsUnlessGiven) {
  orders_.Action->SetCollectionType(cltDispatcher);
  EXPECT_EQ(orders_.Collection()->CollectionType(), cltDispatcher);
  EXPECT_EQ(orders_.Collection({.ObjectType = otModel, .CollectionType = cltInitialized})->CollectionType(),
            cltInitialized);
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

TEST_F(BoundBusinessObjectsTest, CollectionTypeThatIsNoneOfTheThreeGivesAnotherObjectEachTime) {
  const auto orders = orders_.Collection({.ObjectType = otDefault});
  orders->SetCollectionType(cltDefault);
  EXPECT_EQ(orders->CollectionType(), cltDefault);
  const auto first = orders->Item(1);
  EXPECT_NE(orders->Item(1), first);
  EXPECT_FALSE(orders->KeyFormat()->Locked()) << "nothing is held";
}

TEST_F(BoundBusinessObjectsTest, CollectionTypeThatIsNoneOfTheThreeForgetsKeysThatASearchHasPassed) {
  const auto orders = orders_.Collection({.ObjectType = otDefault});
  orders->SetCollectionType(cltDefault);
  EXPECT_EQ(IdOf(*orders->Item("3")), 3);
  ExpectRaised(errItem_BusinessObject, [&] { orders->Item("1"); }, {.Text = "Index: '1'"});
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

}  // namespace
}  // namespace velmoria::test

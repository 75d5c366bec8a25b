#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"

namespace velmoria::test {
namespace {

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

TEST_F(BoundBusinessObjectsTest, PositionThatNoRowNumberCanHoldOverflows) {
  const auto orders = orders_.Collection();
  for (const Variant& index : {Variant(1e10), Variant(-1e10), Variant(std::numeric_limits<std::int32_t>::min())}) {
    SCOPED_TRACE(index.AsText());
    ExpectReported(RuntimeFailure::Overflow, [&] { orders->Item(index); });
  }
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
  ExpectRaised(errItem_BusinessObject, [&] { orders->Item("9"); });
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

TEST_F(BoundBusinessObjectsTest, RangeForVisitsEveryRowInOrder) {
  const auto orders = orders_.Collection();
  const auto third = orders->Item(3);
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(orders->Item(3), third);
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

}  // namespace
}  // namespace velmoria::test

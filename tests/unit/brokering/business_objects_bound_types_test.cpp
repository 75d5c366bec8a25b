#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/component_offer.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"
#include "tests/unit/brokering/broker_fixture.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {
namespace {

void KeyByName(velmoria::KeyFormat& format) {
  format.Properties()->SetupItem({.Name = "Name", .DataType = dtString, .SourceName = "Name"});
}

TEST_F(BoundBusinessObjectsTest, FormatOfTheActionIsCopiedWithItsProperties) {
  const auto format = orders_.Action->KeyFormat();
  KeyByName(*format);
  const auto orders = orders_.Collection();
  EXPECT_EQ(IdOf(*orders->Item("Order 2")), 2);
  EXPECT_NE(orders->KeyFormat(), format);
  ASSERT_EQ(orders->KeyFormat()->Properties()->Count(), 1);
  EXPECT_NE(orders->KeyFormat()->Properties()->Item(1)->Data(), format->Properties()->Item(1)->Data());
}

TEST_F(BrokerTest, FormatOfTheContextIsCopiedWithItsProperties) {
  Design(3);
  const auto format = Framework{}.CreateKeyFormat({});
  KeyByName(*format);
  context_->SetKeyFormat(format);
  const auto orders = context_->GetBusinessObjects({.ClassName = "Order"});
  EXPECT_EQ(IdOf(*orders->Item("Order 2")), 2);
  EXPECT_NE(orders->KeyFormat(), format);
  ASSERT_EQ(orders->KeyFormat()->Properties()->Count(), 1);
  EXPECT_NE(orders->KeyFormat()->Properties()->Item(1)->Data(), format->Properties()->Item(1)->Data());
}

/// Orders under an Action that names no collection type either.
class TypelessCollectionTest : public BoundBusinessObjectsTest {
 protected:
  TypelessCollectionTest() { orders_.Action->SetCollectionType(cltDefault); }
};

TEST_F(TypelessCollectionTest, TypeStaysTheDefaultAndEveryObjectIsThere) {
  const auto orders = orders_.Collection();
  EXPECT_EQ(orders->CollectionType(), cltDefault);
  EXPECT_EQ(orders->Count(), 3);
  EXPECT_EQ(IdOf(*orders->Item(3)), 3);
  EXPECT_EQ(IdOf(*orders->Item("2")), 2);
  EXPECT_EQ(Ids(*orders), "1,2,3");
}

TEST_F(TypelessCollectionTest, ObjectIsBuiltAnewEachTimeItIsAskedFor) {
  const auto orders = orders_.Collection();
  EXPECT_NE(orders->Item(1), orders->Item(1));
}

TEST_F(TypelessCollectionTest, HostObjectsAreBuiltAndNoneIsKept) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  orders_.Design.Order->SetActiveXClass("Order");
  HostOrder::Made = HostOrder::FailsFrom = 0;
  const auto orders = orders_.Collection({.ObjectType = otBusiness});
  EXPECT_TRUE(orders->NewEnum().empty());
  EXPECT_EQ(HostOrder::Made, 3);
  EXPECT_FALSE(orders->KeyFormat()->Locked());
}

}  // namespace
}  // namespace velmoria::test

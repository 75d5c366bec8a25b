#include <string>

#include <gtest/gtest.h>

#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/broker_fixture.h"

namespace velmoria::test {
namespace {

/// A class of the host that complains while it is made, and looks who has suspended messaging.
template <class Base>
class Complaining final : public Base {
 public:
  Complaining() {
    SuspendedBy = Framework{}.Messages()->SuspendRoutine();
    Framework{}.Messages()->SetupItem({.Number = errItem_Class, .TypeFlags = tfVelmoria, .SeverityFlags = svfError});
  }
  static inline std::string SuspendedBy;
};

using ComplainingOrder = Complaining<BusinessObject>;
using ComplainingCollection = Complaining<BusinessCollection>;

/// What is said while the component of the host is made.
class HostObjectMakingTest : public BrokerTest {
 protected:
  HostObjectMakingTest() {
    Design(3);
    design_->Class->SetActiveXClass("Trade.Order");
    ComplainingOrder::SuspendedBy.clear();
    ComplainingCollection::SuspendedBy.clear();
  }
  IBusinessObjectsPtr Get() { return context_->GetBusinessObjects({.ClassName = "Order", .ObjectType = otBusiness}); }
  void ExpectNothingSaid() const {
    EXPECT_EQ(apartment_.Messages().Item("15065"), nullptr);
    EXPECT_EQ(apartment_.Messages().SuspendRoutine(), "");
  }
};

TEST_F(HostObjectMakingTest, ClassThatComplainsWhileAnItemIsBuiltLeavesNoMessage) {
  const ComponentOffer<ComplainingOrder> offer("Trade.Order");
  const auto orders = Get();
  EXPECT_NE(orders->Item(1), nullptr);
  EXPECT_EQ(ComplainingOrder::SuspendedBy, "BusinessObjects.IBusinessObjects_Item");
  ExpectNothingSaid();
}

TEST_F(HostObjectMakingTest, ClassThatComplainsWhileItStandsForANewRowLeavesNoMessage) {
  const ComponentOffer<ComplainingOrder> offer("Trade.Order");
  EXPECT_NE(Get()->SetupItem(), nullptr);
  EXPECT_NE(ComplainingOrder::SuspendedBy, "");
  ExpectNothingSaid();
}

TEST_F(HostObjectMakingTest, ClassThatComplainsWhileANewObjectIsCreatedLeavesNoMessage) {
  const ComponentOffer<ComplainingOrder> offer("Trade.Order");
  EXPECT_NE(context_->CreateBusinessObject({.ClassName = "Order", .ObjectType = otBusiness}), nullptr);
  EXPECT_EQ(ComplainingOrder::SuspendedBy, "BusinessContext.CreateBusinessObject");
  ExpectNothingSaid();
}

TEST_F(HostObjectMakingTest, CollectionThatComplainsWhileItIsMadeLeavesNoMessage) {
  const ComponentOffer<ComplainingCollection> offer("Trade.Orders");
  design_->Class->SetActiveXCollection("Trade.Orders");
  EXPECT_EQ(Get()->Count(), 3);
  EXPECT_EQ(ComplainingCollection::SuspendedBy, "BusinessContext.GetBusinessObjects");
  ExpectNothingSaid();
  EXPECT_NE(Framework{}.CreateBusinessObjects({.ClassName = "Order"}), nullptr);
  EXPECT_EQ(ComplainingCollection::SuspendedBy, "Framework.CreateBusinessObjects");
  ExpectNothingSaid();
}

TEST_F(HostObjectMakingTest, ComponentThatIsNoCollectionIsMadeButCannotBeSetUp) {
  const ComponentOffer<UnrelatedThing> offer("Trade.Orders");
  design_->Class->SetActiveXCollection("Trade.Orders");
  const RaisedExpectation told{
      .Text = "Problem setting up the Line of Business Collection.  ActiveXBusinessCollection: Trade.Orders"};
  ExpectRaised(errBusinessCollection_Setup, [&] { Get(); }, told);
  ExpectRaised(errBusinessCollection_Setup, [&] { Framework{}.CreateBusinessObjects({.ClassName = "Order"}); }, told);
}

}  // namespace
}  // namespace velmoria::test

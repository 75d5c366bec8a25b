#include <utility>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_bad_input_fixture.h"
#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

/// A business class that asks the broker for something else while it is given its Model.
class AskingOrder final : public BusinessObject {
 public:
  void SetModel(ModelPtr model) override {
    BusinessObject::SetModel(std::move(model));
    Framework{}.GetBusinessObjects({.ClassName = "Item", .ObjectType = otModel});
  }
};

/// A business class that throws what is no Error at all.
class RaisingOrder final : public BusinessObject {
 public:
  void SetModel(ModelPtr) override { throw 7; }
};

class BadHostClassTest : public BrokeringBadInputTest {
 protected:
  BadHostClassTest() { shop_.Design.Order->SetActiveXClass("Order"); }
};

TEST_F(BadHostClassTest, ClassThatAsksTheSameBrokerInItsHandshakeIsServed) {
  const ComponentOffer<AskingOrder> offer("Sales.Order");
  for (const auto type : {cltOptimized, cltInitialized, cltDispatcher}) {
    const auto orders = Framework{}.GetBusinessObjects(
        {.ClassName = "Order", .ActionName = "All", .ObjectType = otBusiness, .CollectionType = type});
    EXPECT_EQ(Value(orders->Item(3), "Name"), Variant("Cyd"));
  }
  EXPECT_EQ(Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness})->Key(),
            "2");
  EXPECT_EQ(Framework{}
                .CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otBusiness})
                ->StateFlags(),
            sfNew);
}

TEST_F(BadHostClassTest, ClassThatSelectsAnotherInItsHandshakeLeavesTheCollectionOfItsOwn) {
  const ComponentOffer<AskingOrder> offer("Sales.Order");
  shop_.Design.Order->SetActiveXCollection("Orders");
  ExpectRaised(errBusinessCollection_Create,
               [] {
                 Framework{}.GetBusinessObjects(
                     {.ClassName = "Order", .ObjectType = otBusiness, .CollectionType = cltInitialized});
               },
               {.Text = "ActiveXBusinessCollection: Sales.Orders"});
}

TEST_F(BadHostClassTest, ClassThatThrowsNoErrorInItsHandshakeIsReported) {
  const ComponentOffer<RaisingOrder> offer("Sales.Order");
  const RaisedExpectation told{.Text = "Problem initializing Line of Business object with a Model.  Identifier: '2'"};
  ExpectRaised(
      errBusinessObject_Initialize,
      [&] { context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness}); }, told);
  ExpectRaised(errBusinessObject_Initialize,
               [&] {
                 context_->LoadBusinessObjects(
                     {.ClassName = "Order", .ObjectType = otBusiness, .CollectionType = cltInitialized});
               },
               {.Text = "Identifier: '1'"});
  EXPECT_EQ(context_->Count(), 0);
}

}  // namespace
}  // namespace velmoria::test

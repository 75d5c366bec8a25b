#include "velmoria/platform/components/components.h"

#include <gtest/gtest.h>

#include "velmoria/platform/components/offered_components_impl.h"
#include "velmoria/runtime/error.h"

namespace velmoria {
namespace {

class Order : public Object {};
class Invoice : public Object {};

class ComponentsTest : public testing::Test {
 public:
  ~ComponentsTest() override { Components::Unregister("Sales.Order"); }
};

int NumberOf(void (*routine)()) {
  try {
    routine();
  } catch (const Error& error) { return error.Number(); }
  return 0;
}

TEST_F(ComponentsTest, RegisteredClassIsMadeByItsName) {
  Components::Register<Order>("Sales.Order");
  const auto one = Components::Create("sales.ORDER");
  const auto two = Components::Create("Sales.Order");
  EXPECT_NE(dynamic_cast<Order*>(one.get()), nullptr);
  EXPECT_NE(one, two);
}

TEST_F(ComponentsTest, LaterRegistrationTakesThePlaceOfTheEarlier) {
  Components::Register<Order>("Sales.Order");
  Components::Register<Invoice>("Sales.Order");
  EXPECT_NE(dynamic_cast<Invoice*>(Components::Create("Sales.Order").get()), nullptr);
}

TEST_F(ComponentsTest, UnknownNameCannotBeCreated) {
  EXPECT_EQ(NumberOf([] { Components::Create("Sales.Order"); }), 429);
}

TEST_F(ComponentsTest, DoorGivesNoneForAnUnknownName) { EXPECT_EQ(OfferedComponents().Create("Sales.Order"), nullptr); }

TEST_F(ComponentsTest, UnregisteredNameIsUnknownAgain) {
  Components::Register<Order>("Sales.Order");
  EXPECT_TRUE(Components::Unregister("Sales.Order"));
  EXPECT_FALSE(Components::Unregister("Sales.Order"));
  EXPECT_EQ(OfferedComponents().Create("Sales.Order"), nullptr);
}

TEST_F(ComponentsTest, EmptyNameIsRefused) {
  EXPECT_EQ(NumberOf([] { Components::Register<Order>(""); }), 5);
}

TEST_F(ComponentsTest, FailureOfTheFactoryPasses) {
  Components::Register("Sales.Order", []() -> Ref<Object> { Fail(RuntimeFailure::DivisionByZero); });
  EXPECT_EQ(NumberOf([] { Components::Create("Sales.Order"); }), 11);
}

}  // namespace
}  // namespace velmoria

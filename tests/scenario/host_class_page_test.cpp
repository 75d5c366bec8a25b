#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/scenario/orders_of_the_page.h"
#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"
#include "tests/support/temporary_folder.h"

namespace velmoria::test {
namespace {

/// A header as the page shows it: without its first line, and without the header of another class of the page.
std::string Shown(const std::string& path) {
  std::string text = ReadText(std::string(VELMORIA_TESTS_DIR) + "/" + path);
  for (const std::string left : {"#pragma once\n\n", "#include \"tests/scenario/order_of_the_page.h\"\n\n"})
    if (text.starts_with(left)) text.erase(0, left.size());
  return text;
}

using PageOrder = ::Order;
using PageOrders = ::Orders;

class HostClassPageTest : public BrokeringTest {
 protected:
  HostClassPageTest() {
    shop_.Design.Order->SetActiveXClass("Order");
    shop_.Design.Order->SetActiveXCollection("Orders");
    shop_.File.Run("update orders set Total = 8.5 where Id = 3");
  }
  static Ref<PageOrder> Get(int id) {
    const auto found = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = id, .ObjectType = otBusiness});
    return dynamic_pointer_cast<PageOrder>(found);
  }
  static Ref<PageOrders> GetAll() {
    const auto found =
        Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .ObjectType = otBusiness});
    return dynamic_pointer_cast<PageOrders>(found);
  }

  ComponentOffer<PageOrder> order_{"Sales.Order"};
  ComponentOffer<PageOrders> orders_{"Sales.Orders"};
};

TEST_F(HostClassPageTest, PageShowsTheVeryClassesThatAreTestedHere) {
  const std::string page = ReadText(VELMORIA_TESTS_DIR "/../docs/host_classes.md");
  for (const auto* header : {"scenario/order_of_the_page.h", "scenario/orders_of_the_page.h"}) {
    const std::string shown = Shown(header);
    ASSERT_NE(shown, "");
    EXPECT_NE(page.find("```cpp\n" + shown + "```\n"), std::string::npos) << shown;
  }
}

TEST_F(HostClassPageTest, AccessorsReadAndWriteTheRow) {
  const auto order = Get(1);
  ASSERT_NE(order, nullptr);
  EXPECT_EQ(order->Name(), "Ada");
  order->SetName("Ann");
  order->Discount(20);
  order->Update();
  EXPECT_EQ(order->Total(), 10);
  EXPECT_EQ(shop_.File.Column("select Name || ' ' || Total from orders where Id = 1"), "Ann 10.0");
}

TEST_F(HostClassPageTest, ValueFromASecondTableIsReadWhenItIsAskedFor) {
  const auto order = Get(1);
  EXPECT_EQ(order->PropertiesCount(), 1);
  EXPECT_EQ(order->Note(), "ring twice");
  EXPECT_EQ(order->PropertiesCount(), 2);
}

TEST_F(HostClassPageTest, RuleOfTheClassStandsBeforeTheDatabase) {
  const auto order = Get(1);
  order->Discount(200);
  EXPECT_THROW(order->Update(), std::domain_error);
  EXPECT_EQ(shop_.File.Column("select Total from orders where Id = 1"), "12.5");
}

TEST_F(HostClassPageTest, RuleOfTheClassEndsTheUpdateOfItsCollectionAsOneError) {
  const auto orders = GetAll();
  orders->At(1)->Discount(20);
  orders->At(2)->Discount(200);
  const auto error = Thrown([&] { orders->Update(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15000);
  EXPECT_NE(error->Description().find("Nobody is paid for an order."), std::string::npos) << error->Description();
  EXPECT_EQ(shop_.File.Column("select Total from orders"), "10.0|99.0|8.5") << "what was written stays written";
}

TEST_F(HostClassPageTest, CollectionHandsOutItsMembersByPositionOrKeyUnderTheirOwnClass) {
  const auto orders = GetAll();
  ASSERT_NE(orders, nullptr);
  EXPECT_EQ(orders->At("2")->Name(), "Ben");
  EXPECT_EQ(orders->At(2), orders->At("2"));
}

TEST_F(HostClassPageTest, CollectionAddsUpWhatItsMembersHold) {
  const auto orders = GetAll();
  EXPECT_EQ(orders->Total(), 120);
  orders->At(3)->Discount(100);
  EXPECT_EQ(orders->Total(), 111.5);
}

TEST_F(HostClassPageTest, CollectionsEventsAreThoseOfItsBusinessObjects) {
  const auto orders = GetAll();
  orders->GetBusinessObjects()->BeforeItemUpdate +=
      [](IBusinessObject& order, bool& Cancel) { Cancel = order.Key() == "1"; };
  for (const auto& order : orders) order->FindProperty("Name")->SetValue("x");
  orders->Update();
  EXPECT_EQ(shop_.File.Column("select Name from orders"), "Ada|x|x");
}

}  // namespace
}  // namespace velmoria::test

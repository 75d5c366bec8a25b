#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/scenario/order_of_the_page.h"
#include "tests/support/component_offer.h"

namespace velmoria::test {
namespace {

std::string TextOf(const std::string& path) {
  std::ifstream file(std::string(VELMORIA_TESTS_DIR) + "/" + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

using PageOrder = ::Order;

class HostClassPageTest : public BrokeringTest {
 protected:
  HostClassPageTest() { shop_.Design.Order->SetActiveXClass("Order"); }
  static Ref<PageOrder> Get(int id) {
    const auto found = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = id, .ObjectType = otBusiness});
    return dynamic_pointer_cast<PageOrder>(found);
  }

  ComponentOffer<PageOrder> offer_{"Sales.Order"};
};

TEST_F(HostClassPageTest, PageShowsTheVeryClassThatIsTestedHere) {
  std::string shown = TextOf("scenario/order_of_the_page.h");
  const std::string once = "#pragma once\n\n";
  ASSERT_EQ(shown.find(once), 0U);
  shown.erase(0, once.size());
  EXPECT_NE(TextOf("../docs/host_classes.md").find("```cpp\n" + shown + "```\n"), std::string::npos) << shown;
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

}  // namespace
}  // namespace velmoria::test

#include "velmoria/platform/components/component_library.h"

#include <gtest/gtest.h>

#include "velmoria/runtime/error.h"

namespace velmoria {
namespace {

class Order : public Object {};
class Invoice : public Object {};

TEST(ComponentLibraryTest, GivesTheFactoryOfAClassInAnyCase) {
  ComponentLibrary library;
  library.Offer<Order>("Order");
  library.Offer<Invoice>("Invoice");
  EXPECT_NE(dynamic_cast<Order*>(library.Find("ORDER")().get()), nullptr);
  EXPECT_NE(dynamic_cast<Invoice*>(library.Find("invoice")().get()), nullptr);
}

TEST(ComponentLibraryTest, GivesNoneForAClassThatIsNotOffered) {
  ComponentLibrary library;
  library.Offer<Order>("Order");
  EXPECT_EQ(library.Find("Orders"), nullptr);
  EXPECT_EQ(library.Find(""), nullptr);
}

TEST(ComponentLibraryTest, LaterOfferTakesThePlaceOfTheEarlier) {
  ComponentLibrary library;
  library.Offer<Order>("Order");
  library.Offer<Invoice>("ORDER");
  EXPECT_NE(dynamic_cast<Invoice*>(library.Find("Order")().get()), nullptr);
}

TEST(ComponentLibraryTest, EmptyNameAndNoFactoryAreRefused) {
  ComponentLibrary library;
  for (const auto& [name, factory] : {std::pair<const char*, Components::Factory>{"", [] { return Ref<Object>(); }},
                                      std::pair<const char*, Components::Factory>{"Order", nullptr}}) {
    try {
      library.Offer(name, factory);
      ADD_FAILURE() << "not refused: " << name;
    } catch (const Error& error) { EXPECT_EQ(error.Number(), 5); }
  }
}

}  // namespace
}  // namespace velmoria

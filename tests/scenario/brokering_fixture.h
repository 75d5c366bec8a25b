#pragma once

#include <cstdint>

#include <gtest/gtest.h>

#include "tests/scenario/shop.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// Requests to the broker over the database of Shop.
class BrokeringTest : public testing::Test {
 protected:
  static BusinessContextPtr NewContext(const BusinessContextFields& fields = {}) {
    return Framework{}.CreateBusinessContext(fields);
  }
  static Variant Value(const IBusinessObjectPtr& object, const char* property) {
    return object->FindProperty(property)->Value();
  }
  IBusinessObjectPtr Order(std::int32_t id) const {
    return Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = id});
  }

  ScopedApartment apartment_;
  Shop shop_;
};

}  // namespace velmoria::test

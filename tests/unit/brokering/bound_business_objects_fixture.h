#pragma once

#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// Collections over a result of three orders that fits one page.
class BoundBusinessObjectsTest : public testing::Test {
 protected:
  static KeyFormatPtr Keyless() { return Framework{}.CreateKeyFormat({.EmptyKey = true}); }

  ScopedApartment apartment_;
  BoundOrders orders_;
};

}  // namespace velmoria::test

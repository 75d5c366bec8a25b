#pragma once

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/bound_orders.h"

namespace velmoria::test {

/// What goes wrong is a numbered error or the silence that is told of, nothing is changed by it, and the same context
/// answers the next request.
class BrokeringBadInputTest : public BrokeringTest {
 protected:
  void TearDown() override { ExpectUnharmed(); }
  void ExpectUnharmed() {
    EXPECT_EQ(apartment_.Messages().SuspendRoutine(), "");
    EXPECT_EQ(shop_.File.Column("select Name from orders order by Id"), "Ada|Ben|Cyd");
    context_->SetServerName("");
    EXPECT_EQ(Value(context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2}), "Name"), Variant("Ben"));
    EXPECT_EQ(Ids(*context_->GetBusinessObjects({.ClassName = "Order", .ActionName = "All"})), "1,2,3");
  }
  IBusinessObjectPtr Get(const Variant& key1, const Variant& key2 = Variant::Missing()) {
    return context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = key1, .KeyValue2 = key2});
  }

  BusinessContextPtr context_ = NewContext();
};

}  // namespace velmoria::test

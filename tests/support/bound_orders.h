#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/fake_orders.h"
#include "velmoria/brokering/business_objects_impl.h"
#include "velmoria/data/database_agent_impl.h"

namespace velmoria::test {

struct BoundOrdersFields {
  std::int32_t Rows = 3;
  std::int32_t Buffer = 0;
  std::vector<std::int32_t> Ids{};  // instead of 1 to Rows
  bool WithKeyColumn = true;
};

/// Collections bound to orders of the class "Order" and its Action "Get" of SampleDesign, over a FakeAgent. The columns
/// are Id, 1 to Rows, and Name, "Order 1" and so on.
class BoundOrders : public FakeOrders {
 public:
  explicit BoundOrders(const BoundOrdersFields& fields = {});
  /// Other rows, for the collections from here on.
  void Fill(const BoundOrdersFields& fields);

  /// The first page.
  RecordsetPtr Read() const;
  /// A collection over a result of its own; without an object type of Models.
  BusinessObjectsPtr Collection(BusinessObjectsBinding binding = {.ObjectType = otModel}) const;
};

/// The Id of every member in turn, with "," between.
std::string Ids(IBusinessObjects& collection);
std::int32_t IdOf(IBusinessObject& object);

}  // namespace velmoria::test

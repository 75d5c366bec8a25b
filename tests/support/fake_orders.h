#pragma once

#include <vector>

#include "tests/support/fake_agent.h"
#include "tests/support/sample_design.h"
#include "velmoria/properties/property_fields.h"

namespace velmoria::test {

/// The class "Order" and its Action "Get" of SampleDesign over a FakeAgent.
class FakeOrders {
 public:
  SampleDesign Design;
  ActionPtr Action;
  FakeAgent* Database = nullptr;  // lives with Agent
  DatabaseAgentPtr Agent;

 protected:
  FakeOrders();
  /// Makes the Agent, anew each time, over a FakeAgent of its own.
  void Connect();
};

/// Definitions of columns of the table "orders"; a column is called as its Property is.
PropertiesDataPtr OrderColumns(std::vector<PropertyFields> columns);

}  // namespace velmoria::test

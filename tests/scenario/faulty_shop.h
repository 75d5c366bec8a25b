#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "tests/scenario/shop.h"
#include "tests/support/faulty_odbc.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// The shop over the real driver, which fails when it is told to: orders 1 to 130, two with lines, a picture and notes
/// that are longer than their column says. Beside the Actions of Shop, Order has "Paged" (40 at a time) and "Backwards"
/// (pages of as many), "Filtered" (a statement without parameters), "Raise" (Totals), "Picture" and "Notes".
class FaultyShop {
 public:
  explicit FaultyShop(const std::shared_ptr<FaultyOdbc>& driver);

  static std::shared_ptr<odbc::Calls> Driver();
  static constexpr int kOrders = 130;  // more than come with the first rows
  static constexpr int kPage = 40;
  static constexpr const char* kPing = "Cyd";
  std::string Ping();

  ConnectionPtr Connection() { return Base.OrderAction("Get")->Connection(); }
  ConnectionsPtr Group() { return Apartment().ConnectionContext->Item(""); }
  IBusinessObjectPtr Order(std::int32_t id) {
    return Context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = id});
  }
  /// What the database holds of the first orders, seen from outside.
  std::string Stored() {
    return Base.File.Column("select Id || ' ' || Name || ' ' || ifnull(Total, '-') from orders where Id <= 3 or Id > " +
                            std::to_string(kOrders) + " order by Id");
  }

  ScopedApartment Scope;
  Shop Base;
  BusinessContextPtr Context;
  // What an operation works on.
  IBusinessObjectPtr Object;
  IBusinessObjectsPtr Objects;
  DatabaseAgentPtr Agent;
  RecordsetPtr Page;
};

}  // namespace velmoria::test

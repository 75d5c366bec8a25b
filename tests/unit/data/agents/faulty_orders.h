#pragma once

#include <memory>
#include <string>

#include "tests/support/fake_odbc.h"
#include "tests/support/faulty_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// One Action over a driver in memory, which fails when it is told to: orders 1 to 150 of Id and Name, "n1" to "n150".
/// A second Action "Look" serves the requests behind a failure.
class FaultyOrders {
 public:
  explicit FaultyOrders(const std::shared_ptr<FaultyOdbc>& driver);
  ~FaultyOrders() { Fake.Release(); }

  static std::shared_ptr<odbc::Calls> Driver() { return std::make_shared<FakeOdbc>(); }
  static constexpr const char* kPing = "read";
  std::string Ping();

  void Design(const OneActionFields& fields);
  void SetRows(int count, std::size_t length = 0);
  void MakeAgent() { Agent = One->Agent(Parameters); }
  ConnectionPtr Connection() const { return One->Action->Connection(); }
  ConnectionsPtr Group() const { return Apartment().ConnectionContext->Item(""); }
  /// Until the driver has been told to run the statement that Agent opens.
  void AwaitExecution() const;
  std::string Ids(const RecordsetPtr& page) const;

  ScopedApartment Scope;
  FaultyOdbc& Faulty;
  FakeOdbc& Fake;
  std::unique_ptr<OneAction> One;
  // What an operation works on.
  PropertiesPtr Parameters;
  DatabaseAgentPtr Agent;
  RecordsetPtr Page;
  PropertiesPtr Row;
};

}  // namespace velmoria::test

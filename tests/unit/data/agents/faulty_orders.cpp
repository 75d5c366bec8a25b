#include "tests/unit/data/agents/faulty_orders.h"

#include <algorithm>
#include <thread>

#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

FaultyOrders::FaultyOrders(const std::shared_ptr<FaultyOdbc>& driver)
    : Faulty(*driver), Fake(dynamic_cast<FakeOdbc&>(driver->Driver())) {
  Scope.State().Platform.Odbc = driver;
  Fake.Columns = {{"Id", 4}, {"Name", 12, 40}};
  SetRows(150);
}

std::string FaultyOrders::Ping() {
  const auto look = One->Class->Actions()->Item("Look");
  auto agent = Make<DatabaseAgent>();
  agent->Initialize(One->Class, look, {}, -1);
  return agent->GetRecordset(0, {}, false) ? "read" : "";
}

void FaultyOrders::Design(const OneActionFields& fields) {
  One = std::make_unique<OneAction>(fields);
  const auto look = One->Class->Actions()->SetupItem(
      {.Name = "Look", .DatabaseName = "Shop", .UsageFlags = ufAll, .ObjectType = otModel});
  look->Sources()->SetupItem({.Engine = fields.Engine, .SourceType = stTable, .SourceText = "orders"});
}

void FaultyOrders::SetRows(int count, std::size_t length) {
  Fake.Rows.clear();
  for (int number = 1; number <= count; ++number) {
    const auto id = std::to_string(number);
    Fake.Rows.push_back({id, "n" + id + std::string(length, 'x')});
  }
}

void FaultyOrders::AwaitExecution() const {
  const auto isRun = [this] {
    const auto names = Faulty.Names();
    return std::find(names.begin(), names.end(), "ExecDirect") != names.end();
  };
  while (Agent->StillExecuting() && !isRun()) std::this_thread::yield();
}

std::string FaultyOrders::Ids(const RecordsetPtr& page) const {
  std::string ids;
  for (std::int32_t row = 0; page && row < page->Count(); ++row)
    ids += page->Values(row, *page->Columns()->Item("Id")).AsText() + ",";
  return ids;
}

}  // namespace velmoria::test

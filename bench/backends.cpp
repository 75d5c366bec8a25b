#include "backends.h"

#include <cstdlib>
#include <set>

#include "tables.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

std::vector<Backend> FindBackends() {
  const std::string sqlite = "Driver=SQLite3;SyncPragma=OFF;Database=bench.db";
  std::vector<Backend> found = {{"sqlite", sqlite, false}, {"sqlite-step", sqlite + ";StepAPI=1", true}};
  if (const char* const server = std::getenv("VELMORIA_BENCH_PG")) {
    const std::string postgres(server);
    found.push_back({"postgres", postgres, false});
    found.push_back({"postgres-declare", postgres + ";UseDeclareFetch=1;Fetch=1000", true});
    found.push_back({"postgres-lean", postgres + ";UseServerSidePrepare=0;Protocol=7.4-0", false});
  }
  return found;
}

class HostRow final : public BusinessObject {};

struct DescribedAction {
  const char* Name;
  const char* Table;
  std::int32_t Buffer;
};
constexpr DescribedAction DescribedActions[] = {{"Get", "many", 0}, {"All", "few", 0}, {"Page", "many", 500}};

void DescribeClass(const Backend& backend, const std::string& name, const char* hostClass, zObjectTypes objectType) {
  const auto described = Framework{}.Servers()->Item("Bench")->Classes()->SetupItem(
      {.Name = name, .ActiveXClass = hostClass, .SingleActionName = "Get", .DefaultActionName = "All"});
  described->Properties()->SetupItem(
      {.Name = "id", .DataType = dtLongInteger, .SourceName = "id", .SourceColumn = "id", .Flags = pfInput});
  for (const auto& each : DescribedActions) {
    const auto action = described->Actions()->SetupItem({.Name = each.Name,
                                                         .DatabaseName = backend.Name,
                                                         .UsageFlags = ufAll,
                                                         .EditFlags = efAll,
                                                         .ObjectType = objectType,
                                                         .ObjectBuffer = each.Buffer});
    action->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = each.Table});
  }
}

void DescribeServer() {
  Framework{}.Servers()->SetupItem({.Name = "Bench", .ActiveXComponent = "Bench"});
  Components::Register<HostRow>("Bench.HostRow");
}

void Describe(const Backend& backend) {
  const auto described =
      Framework{}.Databases()->SetupItem({.Name = backend.Name, .Engine = engODBC, .AutoConnect = true});
  described->Connectors()->SetupItem(
      {.Engine = engODBC, .ConnectionType = ctText, .ConnectionString = backend.Connect});
  DescribeClass(backend, backend.Class(), "", otModel);
  DescribeClass(backend, backend.HostClass(), "HostRow", otBusiness);
}

}  // namespace

const std::vector<Backend>& Backends() {
  static const std::vector<Backend> found = FindBackends();
  return found;
}

const Backend& AnyBackend() { return Backends().front(); }

void Prepare(const Backend& backend) {
  static std::set<std::string> described;
  if (!described.insert(backend.Name).second) return;
  MakeTables(backend.Connect);
  if (described.size() == 1) DescribeServer();
  Describe(backend);
}

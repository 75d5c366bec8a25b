#include "rows.h"

#include <cstdlib>

#include "measure.h"
#include "plain_loop.h"
#include "table.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/runtime/row_block.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

constexpr int Rounds = 5;
constexpr int Requests = 20000;

/// One page that holds the whole table.
RecordsetPtr FillPage() {
  const ClassPtr described = Framework{}.Servers()->Item("Bench")->Classes()->Item("Row");
  const ActionPtr action = described->Actions()->Item("Get");
  auto agent = Make<DatabaseAgent>();
  agent->Initialize(described, action, action->CreateParameters(), -1);
  return agent->GetRecordset(0, {}, false);
}

/// Reads each value as a host does: through the Property of its row.
std::size_t ReadEveryValue(Recordset& page) {
  std::size_t seen = 0;
  for (std::int32_t row = 0; row < page.Count(); ++row) {
    const PropertiesPtr properties = page.GetPersistentProperties(row, {});
    for (const auto& property : *properties) seen += property->Value().IsNull() ? 0 : 1;
  }
  return seen;
}

void GetByKey() {
  Framework framework;
  for (int request = 0; request < Requests; ++request) {
    const int key = Jump(request, Rows);
    const auto row = framework.GetBusinessObject({.ClassName = "Row", .KeyValue1 = key});
    if (row->FindProperty("Id")->Value() != Variant(key)) std::abort();
  }
}

}  // namespace

void BenchRows() {
  const std::string& connectString = BenchDatabase();
  DescribeBenchDatabase();
  std::vector<double> plain, fill, read;
  std::size_t bytes = 0;
  for (int round = 0; round < Rounds; ++round) {
    plain.push_back(Seconds([&] { FetchPlainly(connectString, "SELECT * FROM rows", Rows); }));
    RecordsetPtr page;
    fill.push_back(Seconds([&] { page = FillPage(); }));
    if (page->Count() != Rows) std::abort();
    bytes = page->HeapBytes();
    std::size_t seen = 0;
    read.push_back(Seconds([&] { seen = ReadEveryValue(*page); }));
    if (seen == 0) std::abort();
  }
  std::printf("%d rows of 8 mixed columns, medians of %d rounds\n", Rows, Rounds);
  Print("plain block-fetch loop", Median(plain), Median(plain), "1.00");
  Print("fill a page", Median(fill), Median(plain), "1.10");
  Print("read every value through Property.Value", Median(read), Median(plain), "1.50");
  std::printf("%-52s %9.1f     goal 100\n\n", "bytes per row held", static_cast<double>(bytes) / Rows);
}

void BenchByKey() {
  DescribeBenchDatabase();
  std::vector<double> plain, objects;
  for (int round = 0; round < Rounds; ++round) {
    plain.push_back(
        Seconds([] { FetchByKeyPlainly(BenchDatabase(), "SELECT * FROM rows WHERE Id = ", Requests, Rows); }));
    objects.push_back(Seconds(GetByKey));
  }
  std::printf("one object by key, %d times, medians of %d rounds\n", Requests, Rounds);
  Print("plain statement and fetch", Median(plain), Median(plain), "1.00");
  Print("GetBusinessObject", Median(objects), Median(plain), "1.50");
  std::printf("\n");
}

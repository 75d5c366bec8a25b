#include "rows.h"

#include <cstdio>
#include <cstdlib>

#include "backends.h"
#include "measure.h"
#include "plain_loop.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

constexpr int Rounds = 5;
constexpr double Megabyte = 1048576;
constexpr const char* Text = "SELECT * FROM many";
constexpr const char* Names[] = {"id", "customer_id", "number", "note", "amount", "total", "placed", "status"};

DatabaseAgentPtr AgentOf(const Backend& backend, const char* actionName) {
  const ClassPtr described = Framework{}.Servers()->Item("Bench")->Classes()->Item(backend.Class());
  const ActionPtr action = described->Actions()->Item(actionName);
  auto agent = Make<DatabaseAgent>();
  agent->Initialize(described, action, action->CreateParameters(), -1);
  return agent;
}

void RequireRows(std::int64_t rows) {
  if (rows != Rows) std::abort();
}

/// One page that holds the whole table.
RecordsetPtr FillPage(const Backend& backend) {
  auto page = AgentOf(backend, "Get")->GetRecordset(0, {}, false);
  RequireRows(page->Count());
  return page;
}

void ReadInPages(const Backend& backend) {
  const auto agent = AgentOf(backend, "Page");
  std::int64_t rows = 0;
  RecordsetPtr page;
  do {
    page = agent->GetRecordset(0, page, false);
    rows += page->Count();
  } while (!page->NextBookmark().IsEmpty());
  RequireRows(rows);
}

std::size_t ReadByName(IBusinessObject& object) {
  std::size_t seen = 0;
  for (const char* name : Names) seen += object.FindProperty(name)->Value().IsNull() ? 0 : 1;
  return seen;
}

/// Everything as a host does: a collection, its objects, their values by name.
void ReadObjects(const Backend& backend) {
  const auto objects = Framework{}.GetBusinessObjects({.ClassName = backend.HostClass(),
                                                       .ActionName = "Get",
                                                       .ObjectType = otBusiness,
                                                       .CollectionType = cltDispatcher});
  std::size_t seen = 0;
  for (std::int32_t position = 1; position <= Rows; ++position) seen += ReadByName(*objects->Item(position));
  if (seen != Rows * std::size(Names) - Rows / 5) std::abort();
}

void ReadPlainly(const Backend& backend) { FetchPlainly(backend.Connect, Text, Rows); }

double Grown(const Backend& backend, void (*work)(const Backend& backend)) {
  struct Call {
    const Backend& On;
    void (*Work)(const Backend& backend);
  } const call{backend, work};
  return static_cast<double>(BytesOfProcess(
      [](const void* argument) {
        const auto& made = *static_cast<const Call*>(argument);
        made.Work(made.On);
      },
      &call));
}

void PrintGrown(const char* what, double bytes, const char* goal) {
  std::printf("%-52s %9.1f MB  %6.1f bytes a row   goal %s\n", what, bytes / Megabyte, bytes / Rows, goal);
}

}  // namespace

void BenchRows(const Backend& backend) {
  std::vector<Taken> plain, fill, read;
  std::size_t bytes = 0;
  for (int round = 0; round < Rounds; ++round) {
    plain.push_back(Measure([&] { ReadPlainly(backend); }));
    RecordsetPtr page;
    fill.push_back(Measure([&] { page = FillPage(backend); }));
    bytes = page->HeapBytes();
    page = nullptr;
    read.push_back(Measure([&] { ReadObjects(backend); }));
  }
  std::printf("%s: %d rows of 8 mixed columns, medians of %d rounds\n", backend.Name.c_str(), Rows, Rounds);
  Print("plain block-fetch loop", plain, plain, "1.00");
  Print("fill a page with all rows", fill, plain, "1.10");
  Print("fill, then all values by name through objects", read, plain, "1.50");
  std::printf("%-52s %9.1f B\n\n", "values kept, for each row", static_cast<double>(bytes) / Rows);
}

void BenchPages(const Backend& backend) {
  std::vector<Taken> plain, pages;
  for (int round = 0; round < Rounds; ++round) {
    plain.push_back(Measure([&] { ReadPlainly(backend); }));
    pages.push_back(Measure([&] { ReadInPages(backend); }));
  }
  std::printf("%s: %d rows in pages of 500, medians of %d rounds\n", backend.Name.c_str(), Rows, Rounds);
  Print("plain block-fetch loop", plain, plain, "1.00");
  Print("pages, one held at a time", pages, plain, "-");
  std::printf("\n");
}

void BenchRowMemory(const Backend& backend) {
  std::printf("%s: what the process grows by for %d rows, the driver included\n", backend.Name.c_str(), Rows);
  PrintGrown("plain block-fetch loop", Grown(backend, ReadPlainly), "-");
  PrintGrown("fill a page with all rows", Grown(backend, [](const Backend& on) { FillPage(on); }),
             backend.Streams ? "100" : "-");
  PrintGrown("pages of 500, one held at a time", Grown(backend, ReadInPages), "-");
  std::printf("\n");
}

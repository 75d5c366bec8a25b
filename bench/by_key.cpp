#include "by_key.h"

#include <cstdio>
#include <cstdlib>

#include "backends.h"
#include "measure.h"
#include "plain_loop.h"
#include "plain_odbc.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

constexpr int Rounds = 5;
constexpr int Requests = 20000;
constexpr int FirstNew = 1000000;

ClassPtr ClassOf(const Backend& backend) {
  return Framework{}.Servers()->Item("Bench")->Classes()->Item(backend.Class());
}

void GetRows(const Backend& backend) {
  const ClassPtr described = ClassOf(backend);
  const ActionPtr action = described->Actions()->Item("Get");
  const auto parameters = action->CreateParameters(described->CreateIdentifier());
  const auto parameter = parameters->Item("id");
  for (int request = 0; request < Requests; ++request) {
    const int key = Jump(request, Rows);
    parameter->SetValue(key);
    const auto agent = Make<DatabaseAgent>();
    agent->Initialize(described, action, parameters, -1);
    const auto row = agent->GetRecordset(0, {}, false);
    if (row->Count() != 1 || row->Values(0, *row->Columns()->Item("id")) != Variant(key)) std::abort();
  }
}

void GetObjects(const Backend& backend) {
  Framework framework;
  for (int request = 0; request < Requests; ++request) {
    const int key = Jump(request, Rows);
    const auto row = framework.GetBusinessObject({.ClassName = backend.Class(), .KeyValue1 = key});
    if (row->FindProperty("id")->Value() != Variant(key)) std::abort();
  }
}

RecordsetPtr FewRowsOf(const Backend& backend) {
  const ClassPtr described = ClassOf(backend);
  const ActionPtr action = described->Actions()->Item("All");
  auto agent = Make<DatabaseAgent>();
  agent->Initialize(described, action, action->CreateParameters(), -1);
  return agent->GetRecordset(0, {}, false);
}

std::string UpdateText(int key, int value) {
  return "UPDATE few SET customer_id = " + std::to_string(value) + " WHERE id = " + std::to_string(key);
}

std::string InsertText(int key) {
  return "INSERT INTO few (id, customer_id, number, note, amount, total, placed, status) VALUES (" +
         std::to_string(key) + ", 17, 'A-2026-00001', 'a new order', 17.25, 99.5, '2026-11-22 09:30:00', 1)";
}

std::string DeleteText(int key) { return "DELETE FROM few WHERE id = " + std::to_string(key); }

void Update(Recordset& rows, int value) {
  for (std::int32_t row = 0; row < Requests; ++row) {
    const auto properties = rows.GetPersistentProperties(row, {});
    properties->Item("customer_id")->SetValue(value);
    rows.UpdatePersistentProperties(properties);
  }
}

void Insert(Recordset& rows) {
  const Date placed = Date::From({.Year = 2026, .Month = 11, .Day = 22, .Hour = 9, .Minute = 30});
  for (std::int32_t number = 1; number <= Requests; ++number) {
    const auto properties = rows.CreatePersistentProperties({});
    properties->Item("id")->SetValue(FirstNew + number);
    properties->Item("customer_id")->SetValue(17);
    properties->Item("number")->SetValue("A-2026-00001");
    properties->Item("note")->SetValue("a new order");
    properties->Item("amount")->SetValue(17.25);
    properties->Item("total")->SetValue(99.5);
    properties->Item("placed")->SetValue(placed);
    properties->Item("status")->SetValue(1);
    rows.UpdatePersistentProperties(properties);
  }
}

void Delete(Recordset& rows) {
  for (std::int32_t row = rows.Count() - Requests; row < rows.Count(); ++row) {
    rows.DeletePersistentProperties(row);
    rows.UpdatePersistentProperties(rows.GetPersistentProperties(row, {}));
  }
}

struct Figures {
  std::vector<Taken> Plain;
  std::vector<Taken> Library;
};

void MeasureWrites(const Backend& backend, int round, Figures& updates, Figures& inserts, Figures& deletes) {
  const Connected connected(backend.Connect);
  const auto rows = FewRowsOf(backend);
  const auto plainly = [&](const auto& textOf) { return Measure([&] { WritePlainly(connected, Requests, textOf); }); };
  updates.Plain.push_back(plainly([&](int number) { return UpdateText(number, 60000 + 2 * round); }));
  updates.Library.push_back(Measure([&] { Update(*rows, 60001 + 2 * round); }));
  inserts.Plain.push_back(plainly([](int number) { return InsertText(FirstNew + number); }));
  deletes.Plain.push_back(plainly([](int number) { return DeleteText(FirstNew + number); }));
  inserts.Library.push_back(Measure([&] { Insert(*rows); }));
  deletes.Library.push_back(Measure([&] { Delete(*rows); }));
}

}  // namespace

void BenchByKey(const Backend& backend) {
  const Connected connected(backend.Connect);
  std::vector<Taken> plain, rows, objects;
  for (int round = 0; round < Rounds; ++round) {
    plain.push_back(Measure([&] { FetchByKeyPlainly(connected, "SELECT * FROM many WHERE id = ", Requests, Rows); }));
    rows.push_back(Measure([&] { GetRows(backend); }));
    objects.push_back(Measure([&] { GetObjects(backend); }));
  }
  std::printf("%s: one row by key, %d times, medians of %d rounds\n", backend.Name.c_str(), Requests, Rounds);
  Print("plain statement and fetch", plain, plain, "1.00");
  Print("DatabaseAgent.GetRecordset", rows, plain, "1.20");
  Print("Framework.GetBusinessObject", objects, plain, "1.50");
  std::printf("\n");
}

void BenchWrites(const Backend& backend) {
  Figures updates, inserts, deletes;
  for (int round = 0; round < Rounds; ++round) MeasureWrites(backend, round, updates, inserts, deletes);
  std::printf("%s: one row written by key, %d times, medians of %d rounds\n", backend.Name.c_str(), Requests, Rounds);
  Print("plain UPDATE texts", updates.Plain, updates.Plain, "1.00");
  Print("set a value, UpdatePersistentProperties", updates.Library, updates.Plain, "1.15");
  Print("plain INSERT texts", inserts.Plain, inserts.Plain, "1.00");
  Print("set eight values, insert", inserts.Library, inserts.Plain, "1.15");
  Print("plain DELETE texts", deletes.Plain, deletes.Plain, "1.00");
  Print("flag and delete", deletes.Library, deletes.Plain, "1.15");
  std::printf("\n");
}

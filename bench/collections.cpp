#include "collections.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unordered_map>
#include <vector>

#include "backends.h"
#include "measure.h"
#include "plain_loop.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

constexpr int Rounds = 3;
constexpr const char* Text = "SELECT * FROM few";

struct Kind {
  const char* Name;
  bool HostObjects;
  zCollectionTypes Type;
  bool Enumerates;
};
constexpr Kind Kinds[] = {{"cltOptimized", false, cltOptimized, true},
                          {"cltInitialized", false, cltInitialized, true},
                          {"cltDispatcher", false, cltDispatcher, false},
                          {"cltOptimized, host objects", true, cltOptimized, true},
                          {"cltDispatcher, host objects", true, cltDispatcher, false}};

IBusinessObjectsPtr Get(const Kind& kind) {
  Framework framework;
  const auto& backend = AnyBackend();
  return framework.GetBusinessObjects(
      {.ClassName = kind.HostObjects ? backend.HostClass() : backend.Class(), .CollectionType = kind.Type});
}

/// What every walk reads of an object; every walk gives the same sum.
std::int64_t ReadTwo(const IBusinessObjectPtr& object) {
  return object->FindProperty("id")->Value().AsLong() + object->FindProperty("customer_id")->Value().AsLong();
}
std::int64_t ReadTwo(const PlainRow& row) { return row.Id + std::int64_t{row.CustomerId}; }

struct PlainRows {
  std::vector<PlainRow> InOrder;
  std::unordered_map<std::string, std::size_t> Places;
};

PlainRows GetPlainly(bool keyed) {
  PlainRows rows{.InOrder = FetchRowsPlainly(AnyBackend().Connect, Text), .Places = {}};
  for (std::size_t place = 0; keyed && place < rows.InOrder.size(); ++place)
    rows.Places.emplace(std::to_string(rows.InOrder[place].Id), place);
  return rows;
}

struct Walk {
  const char* Name;
  std::int64_t (*Objects)(IBusinessObjects& objects);
  std::int64_t (*Plain)(const PlainRows& rows);
  bool Enumerates = false;
  bool Keyed = false;
};

std::int64_t ByPosition(IBusinessObjects& objects) {
  std::int64_t sum = 0;
  const std::int32_t count = objects.Count();
  for (std::int32_t position = 1; position <= count; ++position) sum += ReadTwo(objects.Item(position));
  return sum;
}

std::int64_t ByRangeFor(IBusinessObjects& objects) {
  std::int64_t sum = 0;
  for (const auto& object : objects) sum += ReadTwo(object);
  return sum;
}

std::int64_t ByKey(IBusinessObjects& objects) {
  std::int64_t sum = 0;
  for (int request = 0; request < FewRows; ++request)
    sum += ReadTwo(objects.Item(std::to_string(Jump(request, FewRows))));
  return sum;
}

std::int64_t InOrderPlainly(const PlainRows& rows) {
  std::int64_t sum = 0;
  for (const auto& row : rows.InOrder) sum += ReadTwo(row);
  return sum;
}

std::int64_t ByKeyPlainly(const PlainRows& rows) {
  std::int64_t sum = 0;
  for (int request = 0; request < FewRows; ++request)
    sum += ReadTwo(rows.InOrder[rows.Places.at(std::to_string(Jump(request, FewRows)))]);
  return sum;
}

constexpr Walk Walks[] = {
    {.Name = "by position", .Objects = ByPosition, .Plain = InOrderPlainly},
    {.Name = "range-for", .Objects = ByRangeFor, .Plain = InOrderPlainly, .Enumerates = true},
    {.Name = "by key", .Objects = ByKey, .Plain = ByKeyPlainly, .Keyed = true},
};

/// Every walk sees the same.
void CheckSum(std::int64_t sum) {
  static const std::int64_t expected = InOrderPlainly(GetPlainly(false));
  if (sum != expected) std::abort();
}

/// The first walk of a collection, its statement and fetch included, and a second one over what is there by then.
struct Passes {
  std::vector<Taken> First;
  std::vector<Taken> Again;
};

void Pass(Passes& passes, auto&& get, auto&& walk) {
  decltype(get()) held{};
  passes.First.push_back(Measure([&] {
    held = get();
    CheckSum(walk(held));
  }));
  passes.Again.push_back(Measure([&] { CheckSum(walk(held)); }));
}

void PrintPasses(const std::string& what, const Passes& passes, const Passes& plain) {
  Print((what + ", fetched and walked").c_str(), passes.First, plain.First, "-");
  Print((what + ", walked again").c_str(), passes.Again, plain.Again, "-");
}

void BenchWalk(const Walk& walk) {
  Passes plain;
  std::vector<Passes> passes(std::size(Kinds));
  for (int round = 0; round < Rounds; ++round) {
    Pass(plain, [&] { return GetPlainly(walk.Keyed); }, walk.Plain);
    for (std::size_t at = 0; at < std::size(Kinds); ++at) {
      if (walk.Enumerates && !Kinds[at].Enumerates) continue;
      Pass(
          passes[at], [&] { return Get(Kinds[at]); },
          [&](const IBusinessObjectsPtr& objects) { return walk.Objects(*objects); });
    }
  }
  std::printf("%d objects %s, two values of each read, medians of %d rounds\n", FewRows, walk.Name, Rounds);
  PrintPasses("plain structs", plain, plain);
  for (std::size_t at = 0; at < std::size(Kinds); ++at)
    if (!passes[at].First.empty()) PrintPasses(Kinds[at].Name, passes[at], plain);
  std::printf("\n");
}

/// Bytes in use that the making leaves behind, for each of the few rows.
double BytesOfEach(auto&& make) {
  const auto before = HeapBytes();
  make();
  return static_cast<double>(HeapBytes() - before) / FewRows;
}

}  // namespace

// Everything stays alive to the end, so that nothing is made from memory kept for reuse.
void BenchMemory() {
  Prepare(AnyBackend());
  Get(Kinds[0])->Item(1);  // what exists once: connection, definitions of the class
  std::vector<PlainRow> plainRows;
  const double plain = BytesOfEach([&] {
    plainRows = FetchRowsPlainly(AnyBackend().Connect, Text);
    plainRows.shrink_to_fit();
  });
  std::printf("memory of each of %d objects, with its row\n", FewRows);
  PrintBytes("plain structs", plain, plain, "-");
  std::vector<IBusinessObjectsPtr> kept;
  const double untouched = BytesOfEach([&] { kept.push_back(Get(Kinds[0])); });
  PrintBytes("cltOptimized, no object asked for", untouched, plain, "-");
  for (const auto& kind : Kinds) {
    const double bytes = BytesOfEach([&] { ByPosition(*kept.emplace_back(Get(kind))); });
    PrintBytes((std::string(kind.Name) + ", two values of each read").c_str(), bytes, plain, "-");
  }
  std::printf("\n");
}

void BenchWalks() {
  Prepare(AnyBackend());
  for (const auto& walk : Walks) BenchWalk(walk);
}

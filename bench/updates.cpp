#include "updates.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "backends.h"
#include "measure.h"
#include "plain_loop.h"
#include "plain_odbc.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

constexpr int Rounds = 3;
constexpr int Changed = 10000;

/// Every round writes values that are there in no other.
std::int32_t CustomerOf(int round, int key) { return 1000000 * (round + 1) + key; }

std::string TextOf(int round, int key) {
  return "UPDATE few SET customer_id = " + std::to_string(CustomerOf(round, key)) +
         " WHERE id = " + std::to_string(key);
}

void Change(IBusinessObjects& objects, int round) {
  for (int position = 1; position <= Changed; ++position)
    objects.Item(position)->FindProperty("customer_id")->SetValue(CustomerOf(round, position));
}

void CheckWritten(int round) {
  const auto rows = FetchRowsPlainly(AnyBackend().Connect, "SELECT * FROM few ORDER BY id");
  for (int key = 1; key <= Changed; ++key)
    if (rows[static_cast<std::size_t>(key) - 1].CustomerId != CustomerOf(round, key)) std::abort();
}

}  // namespace

void BenchUpdates() {
  Prepare(AnyBackend());
  Framework framework;
  const Connected connected(AnyBackend().Connect);
  std::vector<Taken> plain, change, update;
  for (int round = 0; round < Rounds; ++round) {
    plain.push_back(
        Measure([&] { WritePlainly(connected, Changed, [round](int key) { return TextOf(2 * round, key); }); }));
    const auto objects =
        framework.GetBusinessObjects({.ClassName = AnyBackend().Class(), .CollectionType = cltOptimized});
    change.push_back(Measure([&] { Change(*objects, 2 * round + 1); }));
    update.push_back(Measure([&] { objects->Update(); }));
    CheckWritten(2 * round + 1);
  }
  std::printf("%d changed objects, each written in a transaction of its own, medians of %d rounds\n", Changed, Rounds);
  Print("plain UPDATE texts", plain, plain, "1.00");
  Print("Update of the collection", update, plain, "-");
  Print("change a value through Property.SetValue", change, plain, "-");
  std::printf("\n");
}

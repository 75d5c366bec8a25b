#include "updates.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "measure.h"
#include "plain_loop.h"
#include "table.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

constexpr int Rounds = 3;
constexpr int Changed = 10000;

/// Every round writes values that are there in no other.
std::int32_t UnitsOf(int round, int key) { return 1000000 * (round + 1) + key; }

std::vector<std::string> Texts(int round) {
  std::vector<std::string> texts;
  for (int key = 1; key <= Changed; ++key)
    texts.push_back("UPDATE few SET Units = " + std::to_string(UnitsOf(round, key)) +
                    " WHERE Id = " + std::to_string(key));
  return texts;
}

void Change(IBusinessObjects& objects, int round) {
  for (int position = 1; position <= Changed; ++position)
    objects.Item(position)->FindProperty("Units")->SetValue(UnitsOf(round, position));
}

void CheckWritten(int round) {
  const auto rows = FetchRowsPlainly(BenchDatabase(), "SELECT * FROM few ORDER BY Id");
  for (int key = 1; key <= Changed; ++key)
    if (rows[static_cast<std::size_t>(key) - 1].Units != UnitsOf(round, key)) std::abort();
}

}  // namespace

void BenchUpdates() {
  DescribeBenchDatabase();
  Framework framework;
  std::vector<double> plain, change, update;
  for (int round = 0; round < Rounds; ++round) {
    const auto texts = Texts(2 * round);
    plain.push_back(Seconds([&] { WritePlainly(BenchDatabase(), texts); }));
    const auto objects = framework.GetBusinessObjects({.ClassName = "Row", .CollectionType = cltOptimized});
    change.push_back(Seconds([&] { Change(*objects, 2 * round + 1); }));
    update.push_back(Seconds([&] { objects->Update(); }));
    CheckWritten(2 * round + 1);
  }
  std::printf("%d changed objects, each written in a transaction of its own, medians of %d rounds\n", Changed, Rounds);
  Print("plain UPDATE texts", Median(plain), Median(plain), "1.00");
  Print("Update of the collection", Median(update), Median(plain), "-");
  Print("change a value through Property.SetValue", Median(change), Median(plain), "-");
  std::printf("\n");
}

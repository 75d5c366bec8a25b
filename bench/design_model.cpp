#include "design_model.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "measure.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

constexpr int Rounds = 5;
constexpr int ClassCount = 1000;
constexpr int ActionsEach = 10;
constexpr int ObjectCount = 1 + ClassCount * (1 + ActionsEach);
constexpr int Finds = 200000;

std::string ClassNameOf(int number) { return "Class " + std::to_string(number); }
std::string ActionNameOf(int number) { return "Action " + std::to_string(number); }

ActionFields ActionOf(int number) {
  return {.Name = ActionNameOf(number), .DatabaseName = "Orders", .UsageFlags = ufAll, .Description = "One of many"};
}

/// The yardstick: the fields, in order and by exact name, with nothing around them.
struct PlainClass {
  ClassFields Fields;
  std::vector<std::shared_ptr<ActionFields>> Actions;
  std::unordered_map<std::string, std::shared_ptr<ActionFields>> ActionsByName;
};

struct PlainServer {
  std::vector<std::shared_ptr<PlainClass>> Classes;
  std::unordered_map<std::string, std::shared_ptr<PlainClass>> ClassesByName;
};

PlainServer BuildPlain() {
  PlainServer server;
  for (int n = 1; n <= ClassCount; ++n) {
    const auto made = std::make_shared<PlainClass>();
    made->Fields.Name = ClassNameOf(n);
    server.Classes.push_back(made);
    server.ClassesByName[made->Fields.Name] = made;
    for (int m = 1; m <= ActionsEach; ++m) {
      const auto action = std::make_shared<ActionFields>(ActionOf(m));
      made->Actions.push_back(action);
      made->ActionsByName[action->Name] = action;
    }
  }
  return server;
}

ServerPtr Build() {
  ServerPtr server = Framework{}.CreateServer({.Name = "Sales"});
  for (int n = 1; n <= ClassCount; ++n) {
    const ActionsPtr actions = server->Classes()->SetupItem({.Name = ClassNameOf(n)})->Actions();
    for (int m = 1; m <= ActionsEach; ++m) actions->SetupItem(ActionOf(m));
  }
  return server;
}

void FindPlainly(const PlainServer& server) {
  for (int step = 0; step < Finds; ++step) {
    const auto& found = *server.ClassesByName.at(ClassNameOf(Jump(step, ClassCount)))
                             ->ActionsByName.at(ActionNameOf(Jump(step, ActionsEach)));
    if (found.UsageFlags != ufAll) std::abort();
  }
}

void Find(const Classes& classes) {
  for (int step = 0; step < Finds; ++step) {
    const ActionPtr found =
        classes.Item(ClassNameOf(Jump(step, ClassCount)))->Actions()->Item(ActionNameOf(Jump(step, ActionsEach)));
    if (found->UsageFlags() != ufAll) std::abort();
  }
}

/// What one way to make the design takes: seconds of each round, and bytes for each object of the last.
struct Making {
  std::vector<Taken> Rounds;
  double Bytes = 0;
};

void MeasureMaking(Making& making, auto&& make) {
  const auto before = HeapBytes();
  making.Rounds.push_back(Measure(make));
  making.Bytes = static_cast<double>(HeapBytes() - before) / ObjectCount;
}

void PrintMaking(const char* what, const Making& making, const Making& plain) {
  const double seconds = Median(making.Rounds).Processor;
  std::printf("%-52s %9.0f ns  ratio %5.2f   %6.0f bytes\n", what, seconds / ObjectCount * 1e9,
              seconds / Median(plain.Rounds).Processor, making.Bytes);
}

}  // namespace

void BenchDesignModel() {
  Making plainBuild, build, copy;
  std::vector<Taken> plainFind, find;
  for (int round = 0; round < Rounds; ++round) {
    PlainServer plain;
    MeasureMaking(plainBuild, [&] { plain = BuildPlain(); });
    ServerPtr server;
    MeasureMaking(build, [&] { server = Build(); });
    ServerPtr second;
    MeasureMaking(copy, [&] { second = server->Copy(); });
    plainFind.push_back(Measure([&] { FindPlainly(plain); }));
    find.push_back(Measure([&] { Find(*server->Classes()); }));
  }
  std::printf("one Server, %d Classes of %d Actions each: time and memory for each design object\n", ClassCount,
              ActionsEach);
  PrintMaking("plain structs in maps", plainBuild, plainBuild);
  PrintMaking("SetupItem", build, plainBuild);
  PrintMaking("recursive Copy", copy, plainBuild);
  std::printf("one Action by name among %d, %d times\n", ClassCount * ActionsEach, Finds);
  Print("plain maps", plainFind, plainFind, "1.00");
  Print("Item", find, plainFind, "-");
  std::printf("\n");
}

#include "design_model.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <unordered_map>

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

/// A number per step that jumps about, the same in every run.
int Jump(int step, int count) {
  return 1 + static_cast<int>(std::uint64_t{2654435761} * static_cast<unsigned>(step) % static_cast<unsigned>(count));
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

void PrintPerObject(const char* what, double seconds, double plain, double bytes) {
  std::printf("%-52s %9.0f ns  ratio %5.2f   %6.0f bytes\n", what, seconds / ObjectCount * 1e9, seconds / plain, bytes);
}

}  // namespace

void BenchDesignModel() {
  std::vector<double> plainBuild, build, copy, plainFind, find;
  double plainBytes = 0;
  double bytes = 0;
  double copyBytes = 0;
  for (int round = 0; round < Rounds; ++round) {
    auto held = HeapBytes();
    const auto taken = [&held](double& each) {
      const auto now = HeapBytes();
      each = static_cast<double>(now - held) / ObjectCount;
      held = now;
    };
    PlainServer plain;
    plainBuild.push_back(Seconds([&] { plain = BuildPlain(); }));
    taken(plainBytes);
    ServerPtr server;
    build.push_back(Seconds([&] { server = Build(); }));
    taken(bytes);
    ServerPtr second;
    copy.push_back(Seconds([&] { second = server->Copy(); }));
    taken(copyBytes);
    plainFind.push_back(Seconds([&] { FindPlainly(plain); }));
    find.push_back(Seconds([&] { Find(*server->Classes()); }));
  }
  std::printf("one Server, %d Classes of %d Actions each: time and memory for each design object\n", ClassCount,
              ActionsEach);
  PrintPerObject("plain structs in maps", Median(plainBuild), Median(plainBuild), plainBytes);
  PrintPerObject("SetupItem", Median(build), Median(plainBuild), bytes);
  PrintPerObject("recursive Copy", Median(copy), Median(plainBuild), copyBytes);
  std::printf("one Action by name among %d, %d times\n", ClassCount * ActionsEach, Finds);
  Print("plain maps", Median(plainFind), Median(plainFind), "1.00");
  Print("Item", Median(find), Median(plainFind), "-");
  std::printf("\n");
}

// bench [section...]    Every figure is a ratio of two medians taken in turn in this one run; goals stand behind them.

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "collections.h"
#include "design_model.h"
#include "rows.h"
#include "updates.h"

namespace {

struct Section {
  std::string_view Name;
  void (*Run)();
};

// Memory is measured before anything large was let go of: what is kept for reuse would be invisible.
constexpr Section Sections[] = {{"design", BenchDesignModel}, {"memory", BenchMemory}, {"rows", BenchRows},
                                {"key", BenchByKey},          {"walks", BenchWalks},   {"updates", BenchUpdates}};

}  // namespace

int main(int count, char** arguments) {
  setenv("VELMORIA_SETTINGS_DIR", ".", 1);
  char** const last = arguments + count;
  for (const auto& section : Sections)
    if (count == 1 || std::find(arguments + 1, last, section.Name) != last) section.Run();
  return 0;
}

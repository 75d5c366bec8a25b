// bench [section or backend...]    Every figure is a ratio of two medians taken in turn in this one run; goals stand
// behind them. Without a name of a kind, all of that kind are measured; an unknown name measures nothing and ends
// with 2.

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "backends.h"
#include "by_key.h"
#include "collections.h"
#include "design_model.h"
#include "rows.h"
#include "updates.h"

namespace {

struct Section {
  std::string Name;
  void (*Run)();
};

struct BackendSection {
  std::string Name;
  void (*Run)(const Backend& backend);
};

// Memory is measured before anything large was let go of: what is kept for reuse would be invisible.
const std::vector<BackendSection> First = {{"row-memory", BenchRowMemory}};
const std::vector<Section> Sections = {
    {"design", BenchDesignModel}, {"memory", BenchMemory}, {"walks", BenchWalks}, {"updates", BenchUpdates}};
const std::vector<BackendSection> Last = {
    {"rows", BenchRows}, {"pages", BenchPages}, {"key", BenchByKey}, {"writes", BenchWrites}};

using Names = std::vector<std::string>;

bool Contains(const Names& names, const std::string& name) { return std::ranges::find(names, name) != names.end(); }

bool IsBackend(const std::string& name) {
  return std::ranges::find(Backends(), name, &Backend::Name) != Backends().end();
}

Names SectionNames() {
  Names names;
  for (const auto& section : First) names.push_back(section.Name);
  for (const auto& section : Sections) names.push_back(section.Name);
  for (const auto& section : Last) names.push_back(section.Name);
  return names;
}

void Refuse(const std::string& unknown) {
  std::cerr << "bench: there is no section or backend \"" << unknown << "\".\nSections:";
  for (const auto& name : SectionNames()) std::cerr << ' ' << name;
  std::cerr << "\nBackends:";
  for (const auto& backend : Backends()) std::cerr << ' ' << backend.Name;
  std::cerr << '\n';
}

void RunOnBackends(const std::vector<BackendSection>& sections, const Names& asked, const Names& on) {
  for (const auto& backend : Backends()) {
    if (!on.empty() && !Contains(on, backend.Name)) continue;
    for (const auto& section : sections) {
      if (!asked.empty() && !Contains(asked, section.Name)) continue;
      Prepare(backend);
      section.Run(backend);
    }
  }
}

}  // namespace

int main(int count, char** arguments) {
  setenv("VELMORIA_SETTINGS_DIR", ".", 1);
  Names asked, on;
  for (char** each = arguments + 1; each < arguments + count; ++each) (IsBackend(*each) ? on : asked).push_back(*each);
  const Names known = SectionNames();
  for (const auto& name : asked) {
    if (Contains(known, name)) continue;
    Refuse(name);
    return 2;
  }
  RunOnBackends(First, asked, on);
  for (const auto& section : Sections)
    if (asked.empty() ? on.empty() : Contains(asked, section.Name)) section.Run();
  RunOnBackends(Last, asked, on);
  return 0;
}

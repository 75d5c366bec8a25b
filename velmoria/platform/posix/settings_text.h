#pragma once

#include <string>
#include <string_view>

#include "velmoria/platform/posix/settings_store.h"

namespace velmoria {

/// The settings of one application as a text for people: sections in brackets, one key=value a line. A backslash
/// starts an escape (\n \r \t \s for a blank at an end, \xHH, \= \[ \] \# \; and \\), so that every text round-trips.
class SettingsText {
 public:
  SettingsText() = default;
  /// Lines that cannot be read, and those that start with # or ;, are passed over.
  explicit SettingsText(std::string_view text);

  std::string Print() const;

  const std::string* Find(std::string_view section, std::string_view key) const;
  void Set(std::string_view section, std::string_view key, std::string_view value);
  void Delete(std::string_view section);
  /// The section keeps its place among the others.
  void Replace(std::string_view section, const SettingsStore::Entries& entries);

 private:
  struct Section {
    std::string Name;
    SettingsStore::Entries Entries;
  };

  const Section* FindSection(std::string_view name) const;
  Section& SectionOf(std::string_view name);
  void ReadLine(std::string_view line, Section*& current);

  std::vector<Section> sections_;
};

}  // namespace velmoria

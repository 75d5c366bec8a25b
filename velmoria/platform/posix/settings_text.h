#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/platform/posix/settings_store.h"

namespace velmoria {

/// The settings of one application as a text for people: sections in brackets, one key=value a line, comments behind #
/// or ;. A backslash starts an escape (\n \r \t \s for a blank at an end, \xHH, \= \[ \] \# \; and \\), so that every
/// text round-trips; before any other character it is itself. Blanks around names and values do not count. Comments
/// stay at the head of their section.
class SettingsText {
 public:
  SettingsText() = default;
  /// Reads what can be read; the rest is passed over. See DamagedLines.
  explicit SettingsText(std::string_view text);

  std::string Print() const;

  /// The lines of the text read, numbered from 1, that Print would not bring back: neither section nor key, not UTF-8,
  /// with a NUL, outside a section, of a key that stands already, or a last one that breaks off.
  const std::vector<std::size_t>& DamagedLines() const noexcept { return damagedLines_; }

  const std::string* Find(std::string_view section, std::string_view key) const;
  void Set(std::string_view section, std::string_view key, std::string_view value);
  void Delete(std::string_view section);
  /// The section keeps its place among the others, and its comments.
  void Replace(std::string_view section, const SettingsStore::Entries& entries);

 private:
  struct Section {
    std::string Name;
    std::vector<std::string> Comments{};
    SettingsStore::Entries Entries{};
  };

  const Section* FindSection(std::string_view name) const;
  Section& SectionOf(std::string_view name);
  // Whether the line could be read whole; `current` is none where the section is not known.
  bool ReadLine(std::string_view line, Section*& current);
  bool ReadSection(std::string_view line, Section*& current);

  std::vector<std::string> comments_;
  std::vector<Section> sections_;
  std::vector<std::size_t> damagedLines_;
};

}  // namespace velmoria

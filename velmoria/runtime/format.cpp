#include "velmoria/runtime/format.h"

#include <algorithm>
#include <optional>

#include "velmoria/runtime/date_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/format_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

enum class Kind : std::uint8_t { Text, Number, Date };

constexpr std::size_t kMostNumberSections = 4;
constexpr std::size_t kMostTextSections = 2;
constexpr std::size_t kNumberSectionOfNull = 3;

struct NamedPattern {
  std::string_view Name;
  std::string_view Pattern;
};

constexpr NamedPattern kNamedPatterns[] = {
    {"Currency", "$#,##0.00;($#,##0.00)"},
    {"Fixed", "0.00"},
    {"Standard", "#,##0.00"},
    {"Percent", "0.00%"},
    {"Scientific", "0.00E+00"},
    {"Yes/No", R"(\Y\e\s;\Y\e\s;\N\o)"},
    {"True/False", R"(\T\r\u\e;\T\r\u\e;\F\a\l\s\e)"},
    {"On/Off", R"(\O\n;\O\n;\O\f\f)"},
    {"General Date", "c"},
    {"Long Date", "dddddd"},
    {"Medium Date", "dd-mmm-yy"},
    {"Short Date", "ddddd"},
    {"Long Time", "ttttt"},
    {"Medium Time", "hh:nn AM/PM"},
    {"Short Time", "hh:nn"},
};

std::string_view UserPattern(std::string_view pattern) noexcept {
  for (const NamedPattern& row : kNamedPatterns) {
    if (EqualFolded(row.Name, pattern)) return row.Pattern;
  }
  return pattern;
}

// Quotes and backslashes make what they cover literal; so is every byte beyond ASCII.
std::vector<PatternByte> ReadPattern(std::string_view pattern) {
  std::vector<PatternByte> bytes;
  bytes.reserve(pattern.size());
  bool quoted = false;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const char c = pattern[at];
    if (c == '"') {
      quoted = !quoted;
      if (quoted && pattern.substr(at, 2) == "\"\"") bytes.push_back({.Character = c, .Literal = true, .Shown = false});
    } else if (c == '\\' && !quoted) {
      if (++at == pattern.size()) Fail(RuntimeFailure::InvalidArgument);
      bytes.push_back({pattern[at], true});
    } else {
      bytes.push_back({c, quoted || static_cast<unsigned char>(c) >= 0x80});
    }
  }
  if (quoted) Fail(RuntimeFailure::InvalidArgument);
  return bytes;
}

Kind KindOf(Pattern pattern) {
  const auto holds = [&](std::string_view specials) {
    return std::any_of(pattern.begin(), pattern.end(), [&](PatternByte byte) { return byte.IsOneOf(specials); });
  };
  if (holds("@&") || pattern.front().IsOneOf("<>!")) return Kind::Text;
  if (holds("0#")) return Kind::Number;
  return holds("cdhmnqstwyCDHMNQSTWY") || HasHalves(pattern) ? Kind::Date : Kind::Number;
}

Sections SplitSections(Pattern pattern, std::size_t most) {
  Sections sections;
  for (;;) {
    const auto end = std::find_if(pattern.begin(), pattern.end(), [](PatternByte byte) { return byte.Is(';'); });
    const auto size = static_cast<std::size_t>(end - pattern.begin());
    sections.push_back(pattern.first(size));
    if (end == pattern.end()) break;
    pattern = pattern.subspan(size + 1);
  }
  if (sections.size() > most) Fail(RuntimeFailure::InvalidArgument);
  return sections;
}

bool IsNothing(const Variant& value) noexcept { return value.IsEmpty() || value.IsNull(); }

// Booleans and dates count as numbers here; only a text may be none.
std::string NumberTextOf(const Variant& value) {
  if (value.Type() == VarType::Boolean) return NumberText(value.AsLong());
  return value.Type() == VarType::Date ? Variant(value.AsDouble()).AsText() : value.AsText();
}

std::string FormatPlain(const Variant& value) {
  if (IsNothing(value)) return {};
  std::string text = NumberTextOf(value);
  if (!value.IsText()) return text;
  const auto number = NumberInText::Read(text);
  return number ? PlainNumber(*number) : text;
}

std::string FormatAsNumber(const Variant& value, Pattern pattern) {
  const Sections sections = SplitSections(pattern, kMostNumberSections);
  for (const Pattern section : sections) CheckNumberPattern(section);
  if (IsNothing(value)) {
    if (sections.size() <= kNumberSectionOfNull) return {};
    return FormatNumber(*NumberInText::Read("0"), {sections[kNumberSectionOfNull]}, {});
  }
  std::string text = NumberTextOf(value);
  const auto number = NumberInText::Read(text);
  return number ? FormatNumber(*number, sections, FormatPlain(value)) : text;
}

std::string FormatAsDate(const Variant& value, Pattern pattern) {
  if (IsNothing(value)) return {};
  if (!value.IsText()) return FormatDate(value.AsDate(), pattern);
  const auto parts = ReadDate(value.TextView());
  return parts ? FormatDate(Date::From(*parts), pattern) : value.AsText();
}

std::string FormatAsText(const Variant& value, Pattern pattern) {
  const Sections sections = SplitSections(pattern, kMostTextSections);
  if (!IsNothing(value)) return FormatCharacters(value.AsText(), sections);
  return sections.size() == kMostTextSections ? FormatCharacters({}, sections) : std::string();
}

}  // namespace

std::string FormatText(const Variant& value, std::string_view pattern) {
  if (pattern.empty()) return IsNothing(value) ? std::string() : value.AsText();
  if (EqualFolded(pattern, "General Number")) return FormatPlain(value);
  const std::vector<PatternByte> bytes = ReadPattern(UserPattern(pattern));
  switch (KindOf(bytes)) {
    case Kind::Text: return FormatAsText(value, bytes);
    case Kind::Date: return FormatAsDate(value, bytes);
    case Kind::Number: break;
  }
  return FormatAsNumber(value, bytes);
}

}  // namespace velmoria

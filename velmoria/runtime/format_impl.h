#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/runtime/date.h"
#include "velmoria/runtime/number_text_impl.h"

namespace velmoria {

/// One byte of a pattern, quotes and backslashes resolved. Quotes without text between leave a literal that shows
/// nothing, so that what holds them is not empty.
struct PatternByte {
  char Character;
  bool Literal;
  bool Shown = true;

  bool Is(char special) const noexcept { return !Literal && Character == special; }
  bool IsOneOf(std::string_view specials) const noexcept {
    return !Literal && specials.find(Character) != std::string_view::npos;
  }
  void AppendTo(std::string& text) const {
    if (Shown) text.push_back(Character);
  }
};

using Pattern = std::span<const PatternByte>;
/// For numbers: positive, negative, zero, Null. For texts: text, none.
using Sections = std::vector<Pattern>;

/// The digits of a number without zeros that say nothing, with an exponent when the point is far away from them.
std::string PlainNumber(const NumberInText& number);
/// `plain` is what an empty first section shows.
std::string FormatNumber(const NumberInText& number, const Sections& sections, const std::string& plain);
/// Raises 5 unless the pattern can show every number.
void CheckNumberPattern(Pattern pattern);

std::string FormatDate(Date date, Pattern pattern);
/// Whether AM/PM, A/P or AMPM occurs.
bool HasHalves(Pattern pattern) noexcept;

std::string FormatCharacters(std::string_view text, const Sections& sections);

}  // namespace velmoria

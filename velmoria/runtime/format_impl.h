#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/runtime/date.h"
#include "velmoria/runtime/number_text_impl.h"

namespace velmoria {

/// One byte of a pattern, quotes and backslashes resolved.
struct PatternByte {
  char Character;
  bool Literal;

  bool Is(char special) const noexcept { return !Literal && Character == special; }
  bool IsOneOf(std::string_view specials) const noexcept {
    return !Literal && specials.find(Character) != std::string_view::npos;
  }
};

using Pattern = std::span<const PatternByte>;
/// For numbers: positive, negative, zero, Null. For texts: text, none.
using Sections = std::vector<Pattern>;

std::string FormatNumber(const NumberInText& number, const Sections& sections);
std::string FormatDate(Date date, Pattern pattern);
std::string FormatCharacters(std::string_view text, const Sections& sections);
/// What a section for Null shows.
std::string LiteralsOf(Pattern pattern);

}  // namespace velmoria

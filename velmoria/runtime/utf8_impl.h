#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmoria {

/// One character of a UTF-8 text. A byte that belongs to no valid sequence is a character of its own, whose code lies
/// above every code point.
struct Utf8Character {
  char32_t Code;
  std::size_t Bytes;
};

inline constexpr char32_t kStrayByte = 0x110000;

/// The character at the start of a text that is not empty.
Utf8Character DecodeUtf8(std::string_view text) noexcept;
void AppendUtf8(std::string& text, char32_t code);

/// Simple case mappings of Latin, Greek and Cyrillic letters; every other character is its own.
char32_t FoldCharacter(char32_t code) noexcept;
char32_t LowerCharacter(char32_t code) noexcept;
char32_t UpperCharacter(char32_t code) noexcept;

}  // namespace velmoria

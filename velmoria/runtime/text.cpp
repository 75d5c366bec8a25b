#include "velmoria/runtime/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "velmoria/runtime/utf8_impl.h"

namespace velmoria {

namespace {

template <class Number>
void AppendReal(std::string& text, Number value) {
  if (value == 0) {
    text.push_back('0');  // also for a negative zero, which is equal
    return;
  }
  if (std::isnan(value)) {
    text.append("nan");  // its sign means nothing and depends on the processor
    return;
  }
  constexpr Number kLeastPlain = static_cast<Number>(1e-4);
  constexpr Number kEndOfPlain = static_cast<Number>(1e15);
  const Number size = value < 0 ? -value : value;
  const bool plain = size >= kLeastPlain && size < kEndOfPlain;
  char buffer[64];
  const auto result = plain ? std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed)
                            : std::to_chars(buffer, buffer + sizeof buffer, value);
  text.append(buffer, result.ptr);
}

bool IsAscii(char c) noexcept { return static_cast<unsigned char>(c) < 0x80; }

unsigned char FoldAscii(char c) noexcept {
  const auto byte = static_cast<unsigned char>(c);
  return static_cast<unsigned char>(byte | (static_cast<unsigned>(byte - 'A') < 26U ? 0x20U : 0U));
}

// Takes the first character off a text that is not empty, and folds it.
char32_t TakeFolded(std::string_view& text) noexcept {
  if (IsAscii(text.front())) {
    const char32_t folded = FoldAscii(text.front());
    text.remove_prefix(1);
    return folded;
  }
  const Utf8Character character = DecodeUtf8(text);
  text.remove_prefix(character.Bytes);
  return FoldCharacter(character.Code);
}

bool StartsWithFolded(std::string_view text, std::string_view part) noexcept {
  while (!part.empty()) {
    if (text.empty() || TakeFolded(text) != TakeFolded(part)) return false;
  }
  return true;
}

}  // namespace

std::size_t CharacterCount(std::string_view text) noexcept {
  std::size_t count = 0;
  for (; !text.empty(); ++count) text.remove_prefix(IsAscii(text.front()) ? 1 : DecodeUtf8(text).Bytes);
  return count;
}

std::string FoldCase(std::string_view text) {
  std::string folded;
  folded.reserve(text.size());
  while (!text.empty()) AppendUtf8(folded, TakeFolded(text));
  return folded;
}

bool EqualFolded(std::string_view left, std::string_view right) noexcept {
  const std::size_t common = std::min(left.size(), right.size());
  std::size_t ascii = 0;
  for (; ascii < common && IsAscii(left[ascii]) && IsAscii(right[ascii]); ++ascii) {
    if (FoldAscii(left[ascii]) != FoldAscii(right[ascii])) return false;
  }
  left.remove_prefix(ascii);
  right.remove_prefix(ascii);
  while (!left.empty() && !right.empty()) {
    if (TakeFolded(left) != TakeFolded(right)) return false;
  }
  return left.empty() && right.empty();
}

std::size_t HashFolded(std::string_view text) noexcept {
  std::uint64_t hash = 0xCBF29CE484222325U;
  const auto mix = [&](char32_t folded) { hash = (hash ^ folded) * 0x100000001B3U; };
  std::size_t ascii = 0;
  for (; ascii < text.size() && IsAscii(text[ascii]); ++ascii) mix(FoldAscii(text[ascii]));
  text.remove_prefix(ascii);
  while (!text.empty()) mix(TakeFolded(text));
  hash ^= hash >> 29U;
  return static_cast<std::size_t>(hash * 0x9E3779B97F4A7C15U);
}

bool ContainsFolded(std::string_view text, std::string_view part) noexcept {
  if (part.empty()) return true;
  while (!text.empty()) {
    if (StartsWithFolded(text, part)) return true;
    TakeFolded(text);
  }
  return false;
}

std::string Quoted(std::string_view text) {
  std::string quoted;
  quoted.reserve(text.size() + 2);
  return quoted.append("'").append(text).append("'");
}

std::string NumberText(long long value) {
  std::string text;
  AppendNumber(text, value);
  return text;
}

void AppendNumber(std::string& text, double value) { AppendReal(text, value); }
void AppendNumber(std::string& text, float value) { AppendReal(text, value); }

void AppendNumber(std::string& text, long long value) {
  char buffer[24];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  text.append(buffer, result.ptr);
}

}  // namespace velmoria

#include "velmoria/runtime/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

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

constexpr std::uint64_t kEachByte = 0x0101010101010101U;

template <class Unsigned>
std::uint64_t Load(const char* at) noexcept {
  Unsigned word;
  std::memcpy(&word, at, sizeof word);
  return word;
}

/// The first eight bytes of a text that is not empty, or all it has and zeros behind them. Those that two loads overlap
/// in stand at the same place in both.
std::uint64_t WordOf(std::string_view text) noexcept {
  const char* const at = text.data();
  const std::size_t size = text.size();
  if (size >= 8) return Load<std::uint64_t>(at);
  if (size >= 4) return Load<std::uint32_t>(at) | Load<std::uint32_t>(at + size - 4) << (8 * (size - 4));
  const std::size_t middle = size / 2;
  return Load<std::uint8_t>(at) | Load<std::uint8_t>(at + middle) << (8 * middle) |
         Load<std::uint8_t>(at + size - 1) << (8 * (size - 1));
}

bool IsAsciiWord(std::uint64_t word) noexcept { return (word & (kEachByte * 0x80U)) == 0; }

/// FoldAscii of eight characters at once: bit 7 tells where one is at least 'A', and where it is above 'Z'.
std::uint64_t FoldWord(std::uint64_t word) noexcept {
  const std::uint64_t fromA = word + kEachByte * (0x80U - 'A');
  const std::uint64_t aboveZ = word + kEachByte * (0x7FU - 'Z');
  return word | ((fromA & ~aboveZ & (kEachByte * 0x80U)) >> 2U);
}

/// Hashes a folded text: words of eight bytes, a character that is not ASCII as a word of its own.
class FoldedHash {
 public:
  void MixWord(std::uint64_t word) noexcept {
    hash_ = (hash_ ^ word) * 0x9E3779B97F4A7C15U;
    hash_ ^= hash_ >> 29U;
  }
  void Mix(char32_t folded) noexcept {
    if (folded >= 0x80) return EndWord(), MixWord(folded);
    word_ |= std::uint64_t{folded} << (8U * bytes_++);
    if (bytes_ == sizeof word_) EndWord();
  }
  std::size_t End() noexcept {
    EndWord();
    return static_cast<std::size_t>(hash_ * 0xBF58476D1CE4E5B9U);
  }

 private:
  void EndWord() noexcept {
    if (bytes_ != 0) MixWord(word_);
    word_ = 0;
    bytes_ = 0;
  }

  std::uint64_t hash_ = 0xCBF29CE484222325U;
  std::uint64_t word_ = 0;
  unsigned bytes_ = 0;
};

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
  // Names are mostly written as they were given.
  if (left == right) return true;
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

// Eight ASCII characters are a word. A character that is not ASCII folds to one that may be, so the folded text is what
// words are made of.
std::size_t HashFolded(std::string_view text) noexcept {
  FoldedHash hash;
  for (; text.size() >= sizeof(std::uint64_t); text.remove_prefix(sizeof(std::uint64_t))) {
    const auto word = WordOf(text);
    if (!IsAsciiWord(word)) break;
    hash.MixWord(FoldWord(word));
  }
  if (text.empty()) return hash.End();
  const auto last = WordOf(text);
  if (text.size() < sizeof(std::uint64_t) && IsAsciiWord(last)) {
    hash.MixWord(FoldWord(last));
    return hash.End();
  }
  while (!text.empty()) hash.Mix(TakeFolded(text));
  return hash.End();
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

#include <algorithm>

#include "velmoria/runtime/format_impl.h"
#include "velmoria/runtime/utf8_impl.h"

namespace velmoria {

namespace {

std::vector<char32_t> CharactersOf(std::string_view text) {
  std::vector<char32_t> characters;
  while (!text.empty()) {
    const Utf8Character next = DecodeUtf8(text);
    characters.push_back(next.Code);
    text.remove_prefix(next.Bytes);
  }
  return characters;
}

bool IsPlace(PatternByte byte) noexcept { return byte.IsOneOf("@&"); }

class CharacterWriter {
 public:
  CharacterWriter(std::string_view text, Pattern pattern) : characters_(CharactersOf(text)), pattern_(pattern) {
    for (const PatternByte byte : pattern) {
      if (byte.Is('<')) change_ = LowerCharacter;
      if (byte.Is('>')) change_ = UpperCharacter;
      if (byte.Is('!')) fromLeft_ = true;
      if (IsPlace(byte)) ++places_;
    }
  }

  std::string Write() {
    // From the right: places without a character stand in front, surplus characters go before the first place.
    const std::size_t count = characters_.size();
    std::size_t missing = !fromLeft_ && places_ > count ? places_ - count : 0;
    std::size_t surplus = !fromLeft_ && places_ > 0 && count > places_ ? count - places_ : 0;
    for (const PatternByte byte : pattern_) {
      if (IsPlace(byte)) {
        for (; surplus > 0; --surplus) WriteCharacter();
        WritePlace(byte, missing);
      } else if (!byte.IsOneOf("<>!")) {
        byte.AppendTo(text_);
      }
    }
    while (next_ < count) WriteCharacter();
    return std::move(text_);
  }

 private:
  void WritePlace(PatternByte byte, std::size_t& missing) {
    if (missing == 0 && next_ < characters_.size()) {
      WriteCharacter();
      return;
    }
    if (missing > 0) --missing;
    if (byte.Is('@')) text_.push_back(' ');
  }
  void WriteCharacter() { AppendUtf8(text_, change_(characters_[next_++])); }

  std::vector<char32_t> characters_;
  Pattern pattern_;
  char32_t (*change_)(char32_t) = [](char32_t code) { return code; };
  bool fromLeft_ = false;
  std::size_t places_ = 0;
  std::size_t next_ = 0;
  std::string text_;
};

}  // namespace

std::string FormatCharacters(std::string_view text, const Sections& sections) {
  const bool isOfNone = text.empty() && sections.size() > 1;
  return CharacterWriter(text, sections[isOfNone ? 1 : 0]).Write();
}

}  // namespace velmoria

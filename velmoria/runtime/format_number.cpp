#include <algorithm>

#include "velmoria/runtime/date_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/format_impl.h"

namespace velmoria {

namespace {

// The number 0.Text * 10^Point, without zeros at either end; no digits at all for zero.
class Digits {
 public:
  Digits() = default;
  explicit Digits(const NumberInText& number)
      : text_(std::string(number.Whole).append(number.Fraction)),
        point_(static_cast<int>(number.Whole.size()) + number.Exponent) {
    Normalize();
  }

  bool IsZero() const noexcept { return text_.empty(); }
  int Count() const noexcept { return static_cast<int>(text_.size()); }
  int Point() const noexcept { return point_; }
  void SetPoint(int point) noexcept { point_ = point; }
  void Shift(int places) noexcept {
    if (!IsZero()) point_ += places;
  }
  int WholeDigits() const noexcept { return std::max(point_, 0); }
  int FractionDigits() const noexcept { return std::max(static_cast<int>(text_.size()) - point_, 0); }
  /// The digit worth 10^place.
  char At(int place) const noexcept {
    const int index = point_ - 1 - place;
    return index >= 0 && index < static_cast<int>(text_.size()) ? text_[static_cast<std::size_t>(index)] : '0';
  }

  /// Rounds to digits behind the point, halves away from zero.
  void Round(int places) {
    const int kept = point_ + places;
    if (kept >= static_cast<int>(text_.size())) return;
    const bool up = kept >= 0 && text_[static_cast<std::size_t>(kept)] >= '5';
    text_.resize(static_cast<std::size_t>(std::max(kept, 0)));
    if (up) CountUp();
    Normalize();
  }

 private:
  void CountUp() {
    for (auto digit = text_.rbegin(); digit != text_.rend(); ++digit) {
      if (*digit != '9') {
        ++*digit;
        return;
      }
      *digit = '0';
    }
    text_.insert(text_.begin(), '1');
    ++point_;
  }
  void Normalize() {
    const std::size_t zeros = std::min(text_.find_first_not_of('0'), text_.size());
    text_.erase(0, zeros);
    point_ -= static_cast<int>(zeros);
    text_.erase(text_.find_last_not_of('0') + 1);
    if (text_.empty()) point_ = 0;
  }

  std::string text_;
  int point_ = 0;
};

// What a section says about the number as a whole.
struct Layout {
  int WholePlaces = 0;
  int FirstZero = -1;  // the first place before the point that is never left out, counted from the left
  int FractionPlaces = 0;
  int LastZero = -1;  // the last such place behind the point
  int Thousands = 0;  // how often the number is divided by a thousand
  int Percents = 0;
  bool Grouped = false;
  bool HasPoint = false;
  std::size_t ExponentAt = std::string::npos;
  std::size_t ExponentDigits = 0;

  bool HasPlaces() const noexcept { return WholePlaces + FractionPlaces > 0; }
  bool IsScientific() const noexcept { return ExponentAt != std::string::npos; }
  std::size_t ExponentEnd() const noexcept { return ExponentAt + 2 + ExponentDigits; }
};

class LayoutReader {
 public:
  explicit LayoutReader(Pattern pattern) : pattern_(pattern) {}

  Layout Read() {
    for (std::size_t at = 0; at < pattern_.size(); ++at) {
      if (StartsExponent(at)) {
        ReadExponent(at);
        at = layout_.ExponentEnd() - 1;
      } else {
        ReadByte(pattern_[at]);
      }
    }
    layout_.Thousands = commas_;
    return layout_;
  }

 private:
  bool StartsExponent(std::size_t at) const {
    return !layout_.IsScientific() && pattern_[at].IsOneOf("Ee") && at + 1 < pattern_.size() &&
           pattern_[at + 1].IsOneOf("+-");
  }
  void ReadExponent(std::size_t at) {
    layout_.ExponentAt = at;
    for (at += 2; at < pattern_.size() && pattern_[at].IsOneOf("0#"); ++at) ++layout_.ExponentDigits;
    if (layout_.ExponentDigits == 0 || !layout_.HasPlaces()) Fail(RuntimeFailure::InvalidArgument);
  }
  void ReadByte(PatternByte byte) {
    if (byte.Is('%')) ++layout_.Percents;
    if (layout_.IsScientific()) {
      if (byte.IsOneOf("0#")) Fail(RuntimeFailure::InvalidArgument);
    } else if (byte.IsOneOf("0#")) {
      ReadPlace(byte.Is('0'));
    } else if (byte.Is('.')) {
      layout_.HasPoint = true;
    } else if (byte.Is(',') && layout_.WholePlaces > 0 && !layout_.HasPoint) {
      ++commas_;
    }
  }
  void ReadPlace(bool zero) {
    if (layout_.HasPoint) {
      if (zero) layout_.LastZero = layout_.FractionPlaces;
      ++layout_.FractionPlaces;
      return;
    }
    if (zero && layout_.FirstZero < 0) layout_.FirstZero = layout_.WholePlaces;
    ++layout_.WholePlaces;
    layout_.Grouped = layout_.Grouped || commas_ > 0;
    commas_ = 0;
  }

  Pattern pattern_;
  Layout layout_;
  int commas_ = 0;  // since the last place before the point
};

// Scales and rounds; gives the exponent of a scientific layout. Where no digit is shown, a small number is no zero.
int Fit(Digits& digits, const Layout& layout) {
  if (!layout.HasPlaces() && !layout.HasPoint) return 0;
  digits.Shift(2 * layout.Percents - 3 * layout.Thousands);
  if (!layout.IsScientific() || digits.IsZero()) {
    digits.Round(layout.FractionPlaces);
    return 0;
  }
  int exponent = digits.Point() - layout.WholePlaces;
  digits.SetPoint(layout.WholePlaces);
  digits.Round(layout.FractionPlaces);
  if (digits.Point() > layout.WholePlaces) {
    digits.SetPoint(layout.WholePlaces);
    ++exponent;
  }
  return exponent;
}

class SectionWriter {
 public:
  SectionWriter(Pattern pattern, const Layout& layout, const Digits& digits, int exponent)
      : pattern_(pattern), layout_(layout), digits_(digits), exponent_(exponent) {}

  void Write(std::string& text) {
    for (std::size_t at = 0; at < pattern_.size(); ++at) {
      if (at == layout_.ExponentAt) {
        WriteExponent(text);
        at = layout_.ExponentEnd() - 1;
      } else {
        WriteByte(text, pattern_[at]);
      }
    }
  }

 private:
  void WriteByte(std::string& text, PatternByte byte) {
    if (byte.IsOneOf("0#")) {
      if (pointWritten_) {
        WriteFractionPlace(text);
      } else {
        WriteWholePlace(text);
      }
    } else if (byte.Is('.') && !pointWritten_) {
      if (layout_.WholePlaces == 0) WriteWhole(text, digits_.WholeDigits() - 1, 0);
      text.push_back('.');
      pointWritten_ = true;
    } else if (!byte.Is(',')) {
      byte.AppendTo(text);
    }
  }
  // The first place takes all digits for which there is no place of their own.
  void WriteWholePlace(std::string& text) {
    const int worth = layout_.WholePlaces - 1 - whole_;
    const bool forced = layout_.FirstZero >= 0 && whole_ >= layout_.FirstZero;
    if (whole_ == 0 && digits_.WholeDigits() > layout_.WholePlaces) {
      WriteWhole(text, digits_.WholeDigits() - 1, worth);
    } else if (worth < digits_.WholeDigits() || forced) {
      WriteWhole(text, worth, worth);
    }
    ++whole_;
  }
  void WriteWhole(std::string& text, int from, int to) const {
    for (int worth = from; worth >= to; --worth) {
      text.push_back(digits_.At(worth));
      if (layout_.Grouped && worth > 0 && worth % 3 == 0) text.push_back(',');
    }
  }
  void WriteFractionPlace(std::string& text) {
    if (fraction_ < digits_.FractionDigits() || fraction_ <= layout_.LastZero)
      text.push_back(digits_.At(-1 - fraction_));
    ++fraction_;
  }
  void WriteExponent(std::string& text) const {
    text.push_back(pattern_[layout_.ExponentAt].Character);
    if (exponent_ < 0) text.push_back('-');
    if (exponent_ >= 0 && pattern_[layout_.ExponentAt + 1].Is('+')) text.push_back('+');
    text.append(Padded(std::abs(exponent_), static_cast<int>(layout_.ExponentDigits)));
  }

  Pattern pattern_;
  const Layout& layout_;
  const Digits& digits_;
  int exponent_;
  int whole_ = 0;
  int fraction_ = 0;
  bool pointWritten_ = false;
};

enum Section : std::uint8_t { kPositive, kNegative, kZero };

// An empty section leaves its numbers to the first one.
std::size_t SectionFor(Section wanted, const Sections& sections) noexcept {
  return wanted < sections.size() && !sections[wanted].empty() ? wanted : kPositive;
}

// An exponent has two digits or more, as everywhere in plain texts.
std::string WithExponent(const Digits& digits) {
  std::string text(1, digits.At(digits.Point() - 1));
  if (digits.Count() > 1) text.push_back('.');
  for (int digit = 1; digit < digits.Count(); ++digit) text.push_back(digits.At(digits.Point() - 1 - digit));
  const int exponent = digits.Point() - 1;
  return text.append(exponent < 0 ? "e-" : "e+") + Padded(std::abs(exponent), 2);
}

std::string WithoutExponent(const Digits& digits) {
  std::string text;
  for (int place = std::max(digits.WholeDigits(), 1) - 1; place >= 0; --place) text.push_back(digits.At(place));
  if (digits.FractionDigits() > 0) text.push_back('.');
  for (int place = 1; place <= digits.FractionDigits(); ++place) text.push_back(digits.At(-place));
  return text;
}

}  // namespace

std::string PlainNumber(const NumberInText& number) {
  constexpr int kLeastPoint = -3;
  constexpr int kLargestPoint = kLargestScale + 1;
  const Digits digits(number);
  const bool plain = digits.Point() >= kLeastPoint && digits.Point() <= kLargestPoint;
  const std::string text = plain ? WithoutExponent(digits) : WithExponent(digits);
  return number.Negative && !digits.IsZero() ? "-" + text : text;
}

void CheckNumberPattern(Pattern pattern) { LayoutReader(pattern).Read(); }

std::string FormatNumber(const NumberInText& number, const Sections& sections, const std::string& plain) {
  Digits digits(number);
  std::size_t section = SectionFor(digits.IsZero() ? kZero : number.Negative ? kNegative : kPositive, sections);
  if (sections[section].empty()) return plain;
  Layout layout = LayoutReader(sections[section]).Read();
  const bool wasZero = digits.IsZero();
  int exponent = Fit(digits, layout);
  if (digits.IsZero() && !wasZero) {
    section = SectionFor(kZero, sections);
    if (sections[section].empty()) return "0";
    layout = LayoutReader(sections[section]).Read();
    exponent = 0;
  }
  std::string text;
  if (number.Negative && !digits.IsZero() && section == kPositive) text.push_back('-');
  SectionWriter(sections[section], layout, digits, exponent).Write(text);
  return text;
}

}  // namespace velmoria

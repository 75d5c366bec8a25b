#include <algorithm>
#include <array>

#include "velmoria/runtime/date_impl.h"
#include "velmoria/runtime/format_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

constexpr std::array<std::string_view, 7> kDays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                "Thursday", "Friday", "Saturday"};
constexpr std::array<std::string_view, 12> kMonths{"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};

int DayOfYear(const DateParts& parts) noexcept {
  return DayOfEra(parts.Year, parts.Month, parts.Day) - DayOfEra(parts.Year, 1, 1) + 1;
}

// 0 for Sunday. The first day of the era was a Monday.
int DayOfWeek(int dayOfEra) noexcept { return dayOfEra % 7; }
int DayOfWeek(const DateParts& parts) noexcept { return DayOfWeek(DayOfEra(parts.Year, parts.Month, parts.Day)); }

// Weeks begin on Sunday; 1 January lies in the first.
int WeekOfYear(const DateParts& parts) noexcept {
  return (DayOfYear(parts) - 1 + DayOfWeek(DayOfEra(parts.Year, 1, 1))) / 7 + 1;
}

std::string_view DayName(const DateParts& parts) { return kDays[static_cast<std::size_t>(DayOfWeek(parts))]; }
std::string_view MonthName(const DateParts& parts) { return kMonths[static_cast<std::size_t>(parts.Month - 1)]; }

int HourShown(const DateParts& parts, bool halves) noexcept { return halves ? (parts.Hour + 11) % 12 + 1 : parts.Hour; }

std::string LongDate(const DateParts& parts) {
  return std::string(DayName(parts)).append(", ").append(MonthName(parts)).append(" ") + NumberText(parts.Day) + ", " +
         Padded(parts.Year, 4);
}

struct Writer {
  std::string_view Letters;  // in lower case
  std::string (*Write)(const DateParts& parts, bool halves);
};

// Of equal letters the longer run stands first.
constexpr Writer kWriters[] = {
    {"dddddd", [](const DateParts& parts, bool) { return LongDate(parts); }},
    {"ddddd", [](const DateParts& parts, bool) { return ShortDate(parts); }},
    {"dddd", [](const DateParts& parts, bool) { return std::string(DayName(parts)); }},
    {"ddd", [](const DateParts& parts, bool) { return std::string(DayName(parts).substr(0, 3)); }},
    {"dd", [](const DateParts& parts, bool) { return Padded(parts.Day, 2); }},
    {"d", [](const DateParts& parts, bool) { return NumberText(parts.Day); }},
    {"ww", [](const DateParts& parts, bool) { return NumberText(WeekOfYear(parts)); }},
    {"w", [](const DateParts& parts, bool) { return NumberText(DayOfWeek(parts) + 1); }},
    {"mmmm", [](const DateParts& parts, bool) { return std::string(MonthName(parts)); }},
    {"mmm", [](const DateParts& parts, bool) { return std::string(MonthName(parts).substr(0, 3)); }},
    {"mm", [](const DateParts& parts, bool) { return Padded(parts.Month, 2); }},
    {"m", [](const DateParts& parts, bool) { return NumberText(parts.Month); }},
    {"q", [](const DateParts& parts, bool) { return NumberText((parts.Month + 2) / 3); }},
    {"yyyy", [](const DateParts& parts, bool) { return Padded(parts.Year, 4); }},
    {"yy", [](const DateParts& parts, bool) { return Padded(parts.Year % 100, 2); }},
    {"y", [](const DateParts& parts, bool) { return NumberText(DayOfYear(parts)); }},
    {"hh", [](const DateParts& parts, bool halves) { return Padded(HourShown(parts, halves), 2); }},
    {"h", [](const DateParts& parts, bool halves) { return NumberText(HourShown(parts, halves)); }},
    {"nn", [](const DateParts& parts, bool) { return Padded(parts.Minute, 2); }},
    {"n", [](const DateParts& parts, bool) { return NumberText(parts.Minute); }},
    {"ss", [](const DateParts& parts, bool) { return Padded(parts.Second, 2); }},
    {"s", [](const DateParts& parts, bool) { return NumberText(parts.Second); }},
    {"ttttt", [](const DateParts& parts, bool) { return LongTime(parts); }},
};

struct HalfOfDay {
  std::string_view Marker;  // in lower case
  std::string_view Morning;
  std::string_view Afternoon;
};

constexpr HalfOfDay kHalves[] = {{"am/pm", "am", "pm"}, {"a/p", "a", "p"}, {"ampm", "AM", "PM"}};

char Lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
char Upper(char c) noexcept { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }

bool StartsWith(Pattern pattern, std::string_view special) noexcept {
  if (pattern.size() < special.size()) return false;
  return std::equal(special.begin(), special.end(), pattern.begin(),
                    [](char c, PatternByte byte) { return !byte.Literal && Lower(byte.Character) == c; });
}

const HalfOfDay* HalfAt(Pattern pattern) noexcept {
  for (const HalfOfDay& half : kHalves) {
    if (StartsWith(pattern, half.Marker)) return &half;
  }
  return nullptr;
}

const Writer* WriterAt(Pattern pattern) noexcept {
  for (const Writer& writer : kWriters) {
    if (StartsWith(pattern, writer.Letters)) return &writer;
  }
  return nullptr;
}

class DateWriter {
 public:
  DateWriter(Date date, Pattern pattern)
      : date_(date), parts_(date.Parts()), pattern_(pattern), halves_(HasHalves(pattern)) {}

  std::string Write() {
    while (!pattern_.empty()) pattern_ = pattern_.subspan(WriteNext());
    return std::move(text_);
  }

 private:
  // Writes what stands next and tells how much of the pattern that was.
  std::size_t WriteNext() {
    if (const HalfOfDay* half = HalfAt(pattern_)) return WriteHalf(*half);
    if (const Writer* writer = WriterAt(pattern_)) return WriteBy(*writer);
    if (pattern_.front().IsOneOf("cC")) {
      text_.append(date_.AsGeneralDate());
      afterHour_ = false;
    } else {
      pattern_.front().AppendTo(text_);
    }
    return 1;
  }
  std::size_t WriteHalf(const HalfOfDay& half) {
    const bool capital = pattern_.front().Is('A');
    for (const char c : parts_.Hour < 12 ? half.Morning : half.Afternoon) text_.push_back(capital ? Upper(c) : c);
    afterHour_ = false;
    return half.Marker.size();
  }
  std::size_t WriteBy(const Writer& writer) {
    const std::string_view letters = writer.Letters;
    if (afterHour_ && letters == "mm") {
      text_.append(Padded(parts_.Minute, 2));
    } else if (afterHour_ && letters == "m") {
      text_.append(NumberText(parts_.Minute));
    } else {
      text_.append(writer.Write(parts_, halves_));
    }
    afterHour_ = letters.front() == 'h';
    return letters.size();
  }

  Date date_;
  DateParts parts_;
  Pattern pattern_;
  bool halves_;
  bool afterHour_ = false;
  std::string text_;
};

}  // namespace

bool HasHalves(Pattern pattern) noexcept {
  for (; !pattern.empty(); pattern = pattern.subspan(1)) {
    if (HalfAt(pattern)) return true;
  }
  return false;
}

std::string FormatDate(Date date, Pattern pattern) { return DateWriter(date, pattern).Write(); }

}  // namespace velmoria

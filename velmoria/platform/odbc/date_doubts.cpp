#include "velmoria/platform/odbc/date_doubts.h"

#include <cmath>
#include <cstring>
#include <ctime>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/raw_values.h"
#include "velmoria/platform/odbc/statement.h"
#include "velmoria/platform/posix/local_time.h"

namespace velmoria::odbc {
namespace {

constexpr int kUntouched = 0xFF;
constexpr SQLUSMALLINT kUntouchedMonth = 0xFFFF;

bool IsMidnight(const SQL_TIMESTAMP_STRUCT& stamp) noexcept {
  return stamp.hour == 0 && stamp.minute == 0 && stamp.second == 0 && stamp.fraction == 0;
}

bool IsLastSecond(const SQL_TIMESTAMP_STRUCT& stamp) noexcept {
  return stamp.year == 9999 && stamp.month == 12 && stamp.day == 31 && stamp.hour == 23 && stamp.minute == 59 &&
         stamp.second == 59 && stamp.fraction == 0;
}

// What is not a number to the driver is 0, and what has no end is infinite.
double YearOfText(Statement& statement, Word column, std::size_t place) {
  double year = 0;
  Length indicator = 0;
  statement.Check(statement.Calls().SetPos(statement.Get(), place, SQL_POSITION, SQL_LOCK_NO_CHANGE));
  statement.Check(statement.Calls().GetData(statement.Get(), column, SQL_C_DOUBLE, &year, sizeof year, &indicator));
  return std::trunc(year);
}

}  // namespace

void DateDoubts::Begin(std::byte* slots, std::size_t rows) {
  if (misreading_ == Misreading::AsNull) std::memset(slots, kUntouched, rows * sizeof(SQL_TIMESTAMP_STRUCT));
  NoteDay();
}

void DateDoubts::NoteDay() {
  if (misreading_ != Misreading::AsToday) return;
  const std::time_t now = std::time(nullptr);
  if (now == noted_) return;
  noted_ = now;
  const DateParts today = LocalParts(now);
  days_.set(static_cast<std::size_t>(today.Month * 32 + today.Day));
}

bool DateDoubts::MayBeToday(unsigned month, unsigned day) const noexcept {
  const std::size_t place = std::size_t{month} * 32 + day;
  return place < kDays && days_[place];
}

bool DateDoubts::IsMisread(Statement& statement, Word column, std::size_t place, const std::byte* slot,
                           bool isNull) const {
  const auto stamp = Load<SQL_TIMESTAMP_STRUCT>(slot);
  if (misreading_ == Misreading::AsNull) return isNull && stamp.month != kUntouchedMonth;
  if (isNull) return false;
  const bool isDoubtful = (MayBeToday(stamp.month, stamp.day) && IsMidnight(stamp)) || IsLastSecond(stamp);
  return isDoubtful && YearOfText(statement, column, place) != stamp.year;
}

}  // namespace velmoria::odbc

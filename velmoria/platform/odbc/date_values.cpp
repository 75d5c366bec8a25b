#include "velmoria/platform/odbc/date_values.h"

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/raw_values.h"

namespace velmoria::odbc {
namespace {

SQL_DATE_STRUCT DateOf(const DateParts& parts) noexcept {
  SQL_DATE_STRUCT date{};
  date.year = static_cast<SQLSMALLINT>(parts.Year);
  date.month = static_cast<SQLUSMALLINT>(parts.Month);
  date.day = static_cast<SQLUSMALLINT>(parts.Day);
  return date;
}

SQL_TIME_STRUCT TimeOf(const DateParts& parts) noexcept {
  SQL_TIME_STRUCT time{};
  time.hour = static_cast<SQLUSMALLINT>(parts.Hour);
  time.minute = static_cast<SQLUSMALLINT>(parts.Minute);
  time.second = static_cast<SQLUSMALLINT>(parts.Second);
  return time;
}

SQL_TIMESTAMP_STRUCT StampOf(const DateParts& parts) noexcept {
  const auto date = DateOf(parts);
  const auto time = TimeOf(parts);
  const auto fraction = static_cast<SQLUINTEGER>(parts.Millisecond) * 1000000U;
  return {date.year, date.month, date.day, time.hour, time.minute, time.second, fraction};
}

}  // namespace

Length StoreDate(std::byte* place, Small cType, velmoria::Date date) {
  const DateParts parts = date.Parts();
  switch (cType) {
    case SQL_C_TYPE_DATE: return Store(place, DateOf(parts));
    case SQL_C_TYPE_TIME: return Store(place, TimeOf(parts));
    default: return Store(place, StampOf(parts));
  }
}

}  // namespace velmoria::odbc

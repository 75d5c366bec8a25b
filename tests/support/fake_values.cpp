#include "tests/support/fake_values.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <sql.h>
#include <sqlext.h>

namespace velmoria::test {
namespace {

SQL_TIMESTAMP_STRUCT StampOf(const std::string& text) {
  SQL_TIMESTAMP_STRUCT stamp{};
  unsigned year = 0;
  std::sscanf(text.c_str(), "%u-%hu-%hu %hu:%hu:%hu", &year, &stamp.month, &stamp.day, &stamp.hour, &stamp.minute,
              &stamp.second);
  stamp.year = static_cast<SQLSMALLINT>(year);
  return stamp;
}

}  // namespace

odbc::Small CopyText(const std::string& text, void* target, odbc::Length capacity) {
  auto* const place = static_cast<char*>(target);
  if (capacity == 0) return static_cast<odbc::Small>(text.size());
  const std::size_t given = std::min(text.size(), static_cast<std::size_t>(capacity - 1));
  std::memcpy(place, text.data(), given);
  place[given] = '\0';
  return static_cast<odbc::Small>(text.size());
}

odbc::Code PutValue(const std::optional<std::string>& value, const FakeBinding& binding, std::size_t row) {
  odbc::Length& indicator = binding.Indicator[row] = SQL_NULL_DATA;
  if (!value) return SQL_SUCCESS;
  indicator = static_cast<odbc::Length>(value->size());
  switch (binding.CType) {
    case SQL_C_SLONG: Put(binding.Value, row, static_cast<std::int32_t>(std::atol(value->c_str()))); break;
    case SQL_C_SSHORT: Put(binding.Value, row, static_cast<std::int16_t>(std::atol(value->c_str()))); break;
    case SQL_C_SBIGINT: Put(binding.Value, row, std::int64_t{std::atoll(value->c_str())}); break;
    case SQL_C_DOUBLE: Put(binding.Value, row, std::strtod(value->c_str(), nullptr)); break;
    case SQL_C_FLOAT: Put(binding.Value, row, std::strtof(value->c_str(), nullptr)); break;
    case SQL_C_BIT: Put(binding.Value, row, static_cast<unsigned char>(*value == "1" ? 1 : 0)); break;
    case SQL_C_TYPE_TIMESTAMP: Put(binding.Value, row, StampOf(*value)); break;
    default: {
      auto* const slot = static_cast<std::byte*>(binding.Value) + row * static_cast<std::size_t>(binding.Capacity);
      CopyText(*value, slot, binding.Capacity);
      return indicator < binding.Capacity ? SQL_SUCCESS : SQL_SUCCESS_WITH_INFO;
    }
  }
  return SQL_SUCCESS;
}

}  // namespace velmoria::test

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/row_block.h"

namespace velmoria::odbc {

/// What a driver says about a column of a result.
struct ColumnInfo {
  std::string Name{};
  std::int32_t Type = 0;  // the documented code: ODBC 3 dates and wide texts are mapped to theirs
  std::int32_t Size = 0;
  Small Digits = 0;
  bool Required = false;
  bool IsText = false;
  bool IsLong = false;  // not fetched with its row
  bool IsFixed = false;
  bool AutoIncrement = false;
  bool Updatable = false;
  std::string BaseTable{};
  std::string BaseColumn{};
  ColumnStorage Storage = ColumnStorage::Text;
  Small DriverType = 0;
  Small Nullable = 0;  // as described, before the attributes are asked
};

/// The columns of a result, which those who know them share.
using Columns = std::shared_ptr<const std::vector<ColumnInfo>>;

/// The columns of an executed statement's result; none when it gives no result. Where these are described as `known`
/// are, that is given back, and the driver is not asked for the attributes of each, which is dear.
Columns DescribeColumns(Statement& statement, const Columns& known = nullptr);

/// The documented code of a driver's code: 91, 92, 93 become 9, 10, 11, and -8, -9, -10 become 1, 12, -1.
std::int32_t DocumentedType(std::int32_t type) noexcept;

/// How a column of a documented code is held; a code that is not listed is held as Text.
ColumnStorage StorageOf(std::int32_t documentedType) noexcept;

}  // namespace velmoria::odbc

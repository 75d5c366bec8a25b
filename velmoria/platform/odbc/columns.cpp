#include "velmoria/platform/odbc/columns.h"

#include <algorithm>
#include <array>
#include <limits>

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include "velmoria/platform/rdo/constants.h"

namespace velmoria::odbc {
namespace {

struct TypePair {
  std::int32_t From;
  std::int32_t To;
};

constexpr std::array kDocumentedTypes = {
    TypePair{SQL_TYPE_DATE, rdTypeDATE},           TypePair{SQL_TYPE_TIME, rdTypeTIME},
    TypePair{SQL_TYPE_TIMESTAMP, rdTypeTIMESTAMP}, TypePair{SQL_WCHAR, rdTypeCHAR},
    TypePair{SQL_WVARCHAR, rdTypeVARCHAR},         TypePair{SQL_WLONGVARCHAR, rdTypeLONGVARCHAR},
};

enum class Form : std::uint8_t { Fixed, FixedText, Variable, Long };

struct TypeRow {
  std::int32_t Type;
  ColumnStorage Storage;
  Form Shape;
  ColumnStorage Unsigned;  // how the type without a sign is held
};

using enum ColumnStorage;
constexpr std::array kTypes = {
    TypeRow{rdTypeCHAR, Text, Form::FixedText, Text},
    TypeRow{rdTypeNUMERIC, Decimal, Form::Fixed, Decimal},
    TypeRow{rdTypeDECIMAL, Decimal, Form::Fixed, Decimal},
    TypeRow{rdTypeINTEGER, Long, Form::Fixed, BigInteger},
    TypeRow{rdTypeSMALLINT, Integer, Form::Fixed, Long},
    TypeRow{rdTypeFLOAT, Double, Form::Fixed, Double},
    TypeRow{rdTypeREAL, Single, Form::Fixed, Single},
    TypeRow{rdTypeDOUBLE, Double, Form::Fixed, Double},
    TypeRow{rdTypeDATE, Date, Form::Fixed, Date},
    TypeRow{rdTypeTIME, Date, Form::Fixed, Date},
    TypeRow{rdTypeTIMESTAMP, Date, Form::Fixed, Date},
    TypeRow{rdTypeVARCHAR, Text, Form::Variable, Text},
    TypeRow{rdTypeLONGVARCHAR, Placeholder, Form::Long, Placeholder},
    TypeRow{rdTypeBINARY, Placeholder, Form::Long, Placeholder},
    TypeRow{rdTypeVARBINARY, Placeholder, Form::Long, Placeholder},
    TypeRow{rdTypeLONGVARBINARY, Placeholder, Form::Long, Placeholder},
    TypeRow{rdTypeBIGINT, BigInteger, Form::Fixed, Decimal},
    TypeRow{rdTypeTINYINT, Byte, Form::Fixed, Byte},
    TypeRow{rdTypeBIT, Boolean, Form::Fixed, Boolean},
};
constexpr TypeRow kOtherType{0, Text, Form::Variable, Text};

const TypeRow& RowOf(std::int32_t documentedType) noexcept {
  const auto row =
      std::find_if(kTypes.begin(), kTypes.end(), [&](const TypeRow& r) { return r.Type == documentedType; });
  return row == kTypes.end() ? kOtherType : *row;
}

// What a driver does not know is empty and 0: attributes are help, not conditions.
std::string TextAttribute(Statement& statement, Word column, Word field) {
  std::array<char, 512> text{};
  Small length = 0;
  const Code code = statement.Calls().ColAttribute(statement.Get(), column, field, text.data(),
                                                   static_cast<Small>(text.size() - 1), &length, nullptr);
  return Succeeded(code) ? std::string(text.data()) : std::string();
}

Length NumberAttribute(Statement& statement, Word column, Word field, Length unknown = 0) {
  Length number = unknown;
  const Code code = statement.Calls().ColAttribute(statement.Get(), column, field, nullptr, 0, nullptr, &number);
  return Succeeded(code) ? number : unknown;
}

void Describe(Statement& statement, Word column, ColumnInfo& info) {
  std::array<Char, 1024> name{};
  Small length = 0;
  Small type = 0;
  Small nullable = SQL_NULLABLE_UNKNOWN;
  ULength size = 0;
  statement.Check(statement.Calls().DescribeCol(statement.Get(), column, name.data(),
                                                static_cast<Small>(name.size() - 1), &length, &type, &size,
                                                &info.Digits, &nullable));
  info.Name = reinterpret_cast<const char*>(name.data());
  info.Type = DocumentedType(type);
  info.Size = static_cast<std::int32_t>(std::min<ULength>(size, std::numeric_limits<std::int32_t>::max()));
  info.Required = nullable == SQL_NO_NULLS;
  info.DriverType = type;
  info.Nullable = nullable;
}

bool IsDescribedAs(const ColumnInfo& info, const ColumnInfo& known) noexcept {
  return info.DriverType == known.DriverType && info.Size == known.Size && info.Digits == known.Digits &&
         info.Nullable == known.Nullable && info.Name == known.Name;
}

bool IsWhole(std::int32_t type) noexcept {
  return type == rdTypeINTEGER || type == rdTypeSMALLINT || type == rdTypeBIGINT;
}

std::vector<ColumnInfo> Describe(Statement& statement) {
  std::vector<ColumnInfo> columns(static_cast<std::size_t>(statement.Columns()));
  Word column = 0;
  for (auto& info : columns) Describe(statement, ++column, info);
  return columns;
}

void AskAttributes(Statement& statement, Word column, ColumnInfo& info) {
  const TypeRow& row = RowOf(info.Type);
  info.IsLong = row.Shape == Form::Long;
  info.IsFixed = row.Shape == Form::Fixed || row.Shape == Form::FixedText;
  info.IsText = row.Storage == Text || info.Type == rdTypeLONGVARCHAR;
  // A driver may know from the table what it leaves open in the description.
  if (NumberAttribute(statement, column, SQL_DESC_NULLABLE, SQL_NULLABLE_UNKNOWN) == SQL_NO_NULLS) info.Required = true;
  info.AutoIncrement = NumberAttribute(statement, column, SQL_DESC_AUTO_UNIQUE_VALUE) == SQL_TRUE;
  info.Updatable = NumberAttribute(statement, column, SQL_DESC_UPDATABLE) != SQL_ATTR_READONLY;
  info.BaseTable = TextAttribute(statement, column, SQL_DESC_BASE_TABLE_NAME);
  info.BaseColumn = TextAttribute(statement, column, SQL_DESC_BASE_COLUMN_NAME);
  if (info.BaseColumn.empty()) info.BaseColumn = info.Name;
  const bool withoutSign = IsWhole(info.Type) && NumberAttribute(statement, column, SQL_DESC_UNSIGNED) == SQL_TRUE;
  info.Storage = withoutSign ? row.Unsigned : row.Storage;
}

}  // namespace

Columns DescribeColumns(Statement& statement, const Columns& known) {
  auto columns = Describe(statement);
  if (known && std::ranges::equal(columns, *known, IsDescribedAs)) return known;
  Word column = 0;
  for (auto& info : columns) AskAttributes(statement, ++column, info);
  return std::make_shared<const std::vector<ColumnInfo>>(std::move(columns));
}

std::int32_t DocumentedType(std::int32_t type) noexcept {
  for (const auto& pair : kDocumentedTypes) {
    if (pair.From == type) return pair.To;
  }
  return type;
}

ColumnStorage StorageOf(std::int32_t documentedType) noexcept { return RowOf(documentedType).Storage; }

}  // namespace velmoria::odbc

#include "velmoria/platform/odbc/columns.h"

#include <algorithm>
#include <array>
#include <limits>

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include "velmoria/platform/rdo_constants.h"

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

/// What a driver says of a column when it is asked for a description; one is used again for the next column.
class Description {
 public:
  void Ask(Statement& statement, Word column) {
    name_[0] = 0;
    digits_ = 0;
    nullable_ = SQL_NULLABLE_UNKNOWN;
    Small length = 0;
    statement.Check(statement.Calls().DescribeCol(statement.Get(), column, name_.data(),
                                                  static_cast<Small>(name_.size() - 1), &length, &type_, &size_,
                                                  &digits_, &nullable_));
  }

  bool IsOf(const ColumnInfo& known) const noexcept {
    return type_ == known.DriverType && Size() == known.Size && digits_ == known.Digits &&
           nullable_ == known.Nullable && known.Name == Name();
  }

  ColumnInfo Column() const {
    return {.Name = Name(),
            .Type = DocumentedType(type_),
            .Size = Size(),
            .Digits = digits_,
            .Required = nullable_ == SQL_NO_NULLS,
            .DriverType = type_,
            .Nullable = nullable_};
  }

 private:
  const char* Name() const noexcept { return reinterpret_cast<const char*>(name_.data()); }
  std::int32_t Size() const noexcept {
    return static_cast<std::int32_t>(std::min<ULength>(size_, std::numeric_limits<std::int32_t>::max()));
  }

  std::array<Char, 1024> name_{};
  Small type_ = 0;
  Small digits_ = 0;
  Small nullable_ = 0;
  ULength size_ = 0;
};

bool AreDescribedAs(Statement& statement, std::size_t count, const std::vector<ColumnInfo>& known) {
  if (count != known.size()) return false;
  Description description;
  for (std::size_t place = 0; place < count; ++place) {
    description.Ask(statement, static_cast<Word>(place + 1));
    if (!description.IsOf(known[place])) return false;
  }
  return true;
}

bool IsWhole(std::int32_t type) noexcept {
  return type == rdTypeINTEGER || type == rdTypeSMALLINT || type == rdTypeBIGINT;
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
  const auto count = static_cast<std::size_t>(statement.Columns());
  if (known && AreDescribedAs(statement, count, *known)) return known;
  std::vector<ColumnInfo> columns;
  columns.reserve(count);
  Description description;
  while (columns.size() < count) {
    const auto column = static_cast<Word>(columns.size() + 1);
    description.Ask(statement, column);
    AskAttributes(statement, column, columns.emplace_back(description.Column()));
  }
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

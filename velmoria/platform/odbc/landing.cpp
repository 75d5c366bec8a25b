#include "velmoria/platform/odbc/landing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/date_values.h"
#include "velmoria/platform/odbc/raw_values.h"
#include "velmoria/platform/rdo/constants.h"
#include "velmoria/runtime/date.h"
#include "velmoria/runtime/decimal.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria::odbc {
namespace {

constexpr std::size_t kBytesOfCharacter = 4;  // the widest in UTF-8
constexpr std::size_t kNarrowestText = 64;
constexpr std::size_t kUnknownText = 1024;
constexpr std::size_t kWidestText = 4096;
constexpr std::size_t kNumberText = 64;
constexpr std::size_t kFirstPiece = 16384;

struct Way {
  ColumnStorage Storage;
  Small CType;
  bool Direct;
  std::size_t SlotWidth;
};

// The narrow numbers land one size wider, because some drivers cut what does not fit without a word.
constexpr std::array kWays = {
    Way{ColumnStorage::Integer, SQL_C_SLONG, false, 4},
    Way{ColumnStorage::Long, SQL_C_SBIGINT, false, 8},
    Way{ColumnStorage::BigInteger, SQL_C_SBIGINT, true, 8},
    Way{ColumnStorage::Single, SQL_C_FLOAT, true, 4},
    Way{ColumnStorage::Double, SQL_C_DOUBLE, true, 8},
    Way{ColumnStorage::Byte, SQL_C_SSHORT, false, 2},
    Way{ColumnStorage::Boolean, SQL_C_BIT, true, 1},
    Way{ColumnStorage::Decimal, SQL_C_CHAR, false, kNumberText},
    Way{ColumnStorage::Date, SQL_C_TYPE_TIMESTAMP, false, sizeof(SQL_TIMESTAMP_STRUCT)},
    Way{ColumnStorage::Text, SQL_C_CHAR, false, 0},
    Way{ColumnStorage::Placeholder, SQL_C_CHAR, false, 0},
};

const Way& WayOf(ColumnStorage storage) {
  return *std::find_if(kWays.begin(), kWays.end() - 1, [&](const Way& way) { return way.Storage == storage; });
}

std::size_t TextWidth(std::int32_t characters) {
  if (characters <= 0) return kUnknownText;
  return std::clamp(static_cast<std::size_t>(characters) * kBytesOfCharacter + 1, kNarrowestText, kWidestText);
}

template <class To, class From>
To Narrowed(From number) {
  if (number < std::numeric_limits<To>::min() || number > std::numeric_limits<To>::max())
    Fail(RuntimeFailure::Overflow);
  return static_cast<To>(number);
}

std::int64_t WholeOf(const Variant& value) {
  const std::string text = value.AsDecimal().AsText();
  std::int64_t number = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (failure != std::errc() || end != text.data() + text.size()) Fail(RuntimeFailure::Overflow);
  return number;
}

}  // namespace

Landing::Landing(const ColumnInfo& info, Word number, const DateManners& manners)
    : name_(info.Name), number_(number), storage_(info.Storage), cType_(WayOf(storage_).CType) {
  const Way& way = WayOf(storage_);
  direct_ = way.Direct;
  slotWidth_ = way.SlotWidth;
  if (storage_ == ColumnStorage::Text) slotWidth_ = TextWidth(info.Size);
  if (storage_ != ColumnStorage::Date) return;
  const bool isTime = info.Type == rdTypeTIME;
  if (isTime ? manners.TimesAsText : manners.DatesAsText) {
    LandAsText();
  } else if (isTime) {
    cType_ = SQL_C_TYPE_TIME;
    slotWidth_ = sizeof(SQL_TIME_STRUCT);
  } else if (manners.Dates != Misreading::None) {
    doubts_ = std::make_unique<DateDoubts>(manners.Dates);
  }
}

bool Landing::IsDateText() const noexcept { return storage_ == ColumnStorage::Date && cType_ == SQL_C_CHAR; }

// A text that is longer than its slot is no date.
bool Landing::CanOverflow() const noexcept { return IsFetched() && cType_ == SQL_C_CHAR && !IsDateText(); }

void Landing::Begin(std::size_t rows) {
  whole_.clear();
  if (!IsFetched()) return;
  if (rows != rows_) {
    indicators_ = std::make_unique_for_overwrite<Length[]>(rows);
    if (!direct_) slots_ = std::make_unique_for_overwrite<std::byte[]>(rows * slotWidth_);
    rows_ = rows;
  }
  if (direct_) values_ = std::make_unique_for_overwrite<std::byte[]>(rows * slotWidth_);
  if (doubts_) doubts_->Begin(slots_.get(), rows);
}

void Landing::Bind(Statement& statement) {
  statement.Check(statement.Calls().BindCol(statement.Get(), number_, cType_, Buffer(), static_cast<Length>(slotWidth_),
                                            indicators_.get()));
}

void Landing::BindOutput(Statement& statement, Word number, Small direction, Small type, ULength size, Small digits,
                         const Variant& given) {
  // A parameter is given once: what the driver may misread is not looked at again.
  const DateManners& manners = statement.Dates();
  const bool misreads = manners.DatesAsText || manners.TimesAsText || manners.Dates != Misreading::None;
  if (IsWhole() || (storage_ == ColumnStorage::Date && misreads)) LandAsText();
  Begin(1);
  indicators_[0] = SQL_NULL_DATA;
  if (given.IsGiven() && !given.IsNull()) indicators_[0] = Put(given, type);
  statement.Check(statement.Calls().BindParameter(statement.Get(), number, direction, cType_, type, size, digits,
                                                  Buffer(), static_cast<Length>(slotWidth_), indicators_.get()));
}

bool Landing::IsWhole() const noexcept {
  return storage_ == ColumnStorage::Integer || storage_ == ColumnStorage::Long || storage_ == ColumnStorage::Byte ||
         storage_ == ColumnStorage::BigInteger;
}

// A driver that has given rows before it may put the digits where it was asked for the number.
void Landing::LandAsText() {
  cType_ = SQL_C_CHAR;
  direct_ = false;
  slotWidth_ = kNumberText;
}

std::string Landing::OutputText(const Variant& value, Small type) const {
  switch (storage_) {
    case ColumnStorage::Byte: return NumberText(static_cast<long long>(value.AsByte()));
    case ColumnStorage::Integer: return NumberText(static_cast<long long>(value.AsInteger()));
    case ColumnStorage::Long:
    case ColumnStorage::BigInteger: return NumberText(static_cast<long long>(WholeOf(value)));
    case ColumnStorage::Date: return DateText(value.AsDate(), type);
    default: return value.AsText();
  }
}

Length Landing::Put(const Variant& value, Small type) {
  switch (cType_) {
    case SQL_C_FLOAT: return Store(Buffer(), value.AsSingle());
    case SQL_C_DOUBLE: return Store(Buffer(), value.AsDouble());
    case SQL_C_BIT: return Store(Buffer(), static_cast<unsigned char>(value.AsBoolean() ? 1 : 0));
    case SQL_C_TYPE_TIME:
    case SQL_C_TYPE_TIMESTAMP: return StoreDate(Buffer(), cType_, value.AsDate());
    default: break;
  }
  const std::string text = OutputText(value, type);
  if (text.size() >= slotWidth_) Fail(RuntimeFailure::Overflow);
  std::memcpy(Buffer(), text.c_str(), text.size() + 1);
  return static_cast<Length>(text.size());
}

RowChunk::Column Landing::FinishOutput() {
  if (IsCut(0, true)) { Fail(RuntimeFailure::Overflow, "The value of the parameter '" + name_ + "' is too long."); }
  return Finish(1);
}

void Landing::Read(Statement& statement, std::size_t row) {
  Length& indicator = indicators_[row];
  const Code code = statement.Calls().GetData(statement.Get(), number_, cType_, Buffer() + row * slotWidth_,
                                              static_cast<Length>(slotWidth_), &indicator);
  statement.Check(code);
  if (IsCut(row, code == SQL_SUCCESS_WITH_INFO)) ReadRest(statement, row);
  if (!doubts_) return;
  doubts_->End();
  RefuseMisread(statement, row, 1);
}

void Landing::RefuseMisread(Statement& statement, std::size_t rows) {
  if (!doubts_) return;
  doubts_->End();
  for (std::size_t row = 0; row < rows; ++row) RefuseMisread(statement, row, row + 1);
}

void Landing::RefuseMisread(Statement& statement, std::size_t row, std::size_t place) {
  if (!doubts_->IsMisread(statement, number_, place, slots_.get() + row * slotWidth_, IsNull(row))) return;
  Fail(RuntimeFailure::InvalidArgument, RuntimeFailureText(RuntimeFailure::InvalidArgument) + InColumn());
}

// The slot holds the beginning, without the zero that ends it; the driver goes on where it stopped.
void Landing::ReadRest(Statement& statement, std::size_t row) {
  std::string& text = whole_[row];
  const auto* const slot = reinterpret_cast<const char*>(slots_.get() + row * slotWidth_);
  text.assign(slot, slotWidth_ - 1);
  for (std::size_t piece = kFirstPiece;; piece *= 2) {
    const std::size_t before = text.size();
    text.resize(before + piece);
    Length left = 0;
    const Code code = statement.Calls().GetData(statement.Get(), number_, cType_, text.data() + before,
                                                static_cast<Length>(piece), &left);
    if (code == SQL_NO_DATA || left == SQL_NULL_DATA) return text.resize(before);
    statement.Check(code);
    const bool more = left == SQL_NO_TOTAL || static_cast<std::size_t>(left) >= piece;
    text.resize(before + (more ? piece - 1 : static_cast<std::size_t>(left)));
    if (!more) return;
  }
}

bool Landing::IsNull(std::size_t row) const noexcept { return indicators_[row] == SQL_NULL_DATA; }

bool Landing::IsCut(std::size_t row, bool informed) const noexcept {
  if (!CanOverflow() || IsNull(row)) return false;
  const Length length = indicators_[row];
  if (length == SQL_NO_TOTAL || length >= static_cast<Length>(slotWidth_)) return true;
  // Some drivers report what they delivered, not what there is.
  return informed && length == static_cast<Length>(slotWidth_) - 1;
}

bool Landing::HasCut(std::size_t rows, bool informed) const noexcept {
  if (!CanOverflow()) return false;
  for (std::size_t row = 0; row < rows; ++row) {
    if (IsCut(row, informed)) return true;
  }
  return false;
}

std::string_view Landing::SlotAt(std::size_t row) const noexcept {
  return {reinterpret_cast<const char*>(slots_.get() + row * slotWidth_), static_cast<std::size_t>(indicators_[row])};
}

std::string_view Landing::TextAt(std::size_t row) const {
  if (IsNull(row)) return {};
  const auto whole = whole_.find(row);
  return whole == whole_.end() ? SlotAt(row) : std::string_view(whole->second);
}

template <class T, class Conversion>
void Landing::Convert(RowChunk::Column& column, std::size_t rows, Conversion convert) const {
  column.Values = std::make_unique_for_overwrite<std::byte[]>(rows * sizeof(T));
  for (std::size_t row = 0; row < rows; ++row) {
    T value{};
    if (!IsNull(row)) {
      try {
        value = convert(row);
      } catch (const Error& error) { throw Error(error.Number(), error.Description() + InColumn()); }
    }
    std::memcpy(column.Values.get() + row * sizeof(T), &value, sizeof(T));
  }
}

template <class From>
From Landing::Slot(std::size_t row) const {
  return Load<From>(slots_.get() + row * slotWidth_);
}

template <class From>
std::int64_t Landing::Whole(std::size_t row) const {
  return cType_ == SQL_C_CHAR ? WholeOf(Variant(std::string(TextAt(row)))) : Slot<From>(row);
}

RowChunk::Column Landing::Finish(std::size_t rows) {
  RowChunk::Column column;
  column.Storage = storage_;
  if (!IsFetched()) return column;
  if (IsDateText()) TakeEmptyAsNull(rows);
  MarkNulls(column, rows);
  if (direct_) {
    KeepFixed(column, rows);
  } else if (storage_ == ColumnStorage::Text) {
    FinishText(column, rows);
  } else {
    FinishConverted(column, rows);
  }
  return column;
}

void Landing::FinishConverted(RowChunk::Column& column, std::size_t rows) const {
  switch (storage_) {
    case ColumnStorage::Integer:
      return Convert<std::int16_t>(column, rows,
                                   [this](auto row) { return Narrowed<std::int16_t>(Whole<std::int32_t>(row)); });
    case ColumnStorage::Long:
      return Convert<std::int32_t>(column, rows,
                                   [this](auto row) { return Narrowed<std::int32_t>(Whole<std::int64_t>(row)); });
    case ColumnStorage::Byte:
      return Convert<Byte>(column, rows, [this](auto row) { return Narrowed<Byte>(Whole<std::int16_t>(row)); });
    case ColumnStorage::BigInteger:
      return Convert<std::int64_t>(column, rows, [this](auto row) { return Whole<std::int64_t>(row); });
    case ColumnStorage::Decimal:
      return Convert<Decimal>(column, rows, [this](auto row) { return Decimal::Parse(TextAt(row)); });
    default: break;
  }
  Convert<double>(column, rows, [this](auto row) { return DateAt(row).Days; });
}

velmoria::Date Landing::DateAt(std::size_t row) const {
  if (!IsDateText()) return LoadDate(slots_.get() + row * slotWidth_, cType_);
  // A length that the driver does not know is below 0, and one that fills the slot may have been cut.
  if (static_cast<std::size_t>(indicators_[row]) >= slotWidth_ - 1) Fail(RuntimeFailure::InvalidArgument);
  return ReadDateText(SlotAt(row));
}

// An empty text is no date at all.
void Landing::TakeEmptyAsNull(std::size_t rows) noexcept {
  std::replace(indicators_.get(), indicators_.get() + rows, Length{0}, Length{SQL_NULL_DATA});
}

std::string Landing::InColumn() const { return " in the column '" + name_ + "'"; }

void Landing::KeepFixed(RowChunk::Column& column, std::size_t rows) {
  column.Values = std::move(values_);
  if (rows == rows_) return;
  auto fitting = std::make_unique_for_overwrite<std::byte[]>(rows * slotWidth_);
  std::memcpy(fitting.get(), column.Values.get(), rows * slotWidth_);
  column.Values = std::move(fitting);
}

std::size_t Landing::BytesOfTexts(std::size_t rows) const {
  std::size_t total = 0;
  for (std::size_t row = 0; row < rows; ++row)
    total += whole_.empty() ? (IsNull(row) ? 0 : static_cast<std::size_t>(indicators_[row])) : TextAt(row).size();
  if (total <= ValueEnds::kMostBytes) return total;
  Fail(RuntimeFailure::Overflow, "The texts of the column '" + name_ + "' are too long to be read together.");
}

void Landing::FinishText(RowChunk::Column& column, std::size_t rows) const {
  column.Arena.resize(BytesOfTexts(rows));
  column.Ends = ValueEnds(rows, column.Arena.size());
  std::size_t end = 0;
  for (std::size_t row = 0; row < rows; ++row) {
    const std::string_view text = !whole_.empty() ? TextAt(row) : IsNull(row) ? std::string_view() : SlotAt(row);
    if (!text.empty()) std::memcpy(column.Arena.data() + end, text.data(), text.size());
    column.Ends.Set(row, end += text.size());
  }
}

void Landing::MarkNulls(RowChunk::Column& column, std::size_t rows) const {
  std::size_t nulls = 0;
  for (std::size_t row = 0; row < rows; ++row) nulls += IsNull(row) ? 1U : 0U;
  if (nulls == 0) return;
  column.NullBits = std::make_unique<std::uint64_t[]>((rows + 63) / 64);
  for (std::size_t row = 0; row < rows; ++row) {
    column.NullBits[row / 64] |= std::uint64_t{IsNull(row)} << (row % 64);
  }
}

}  // namespace velmoria::odbc

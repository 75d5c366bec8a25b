#include "velmoria/platform/odbc/landing.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/date_values.h"
#include "velmoria/platform/odbc/raw_values.h"
#include "velmoria/platform/odbc/whole_value.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/date.h"
#include "velmoria/runtime/decimal.h"
#include "velmoria/runtime/error.h"

namespace velmoria::odbc {
namespace {

constexpr std::size_t kBytesOfCharacter = 4;  // the widest in UTF-8
constexpr std::size_t kNarrowestText = 64;
constexpr std::size_t kUnknownText = 1024;
constexpr std::size_t kWidestText = 4096;
constexpr std::size_t kShortText = 64;
constexpr std::size_t kFirstPiece = 16384;
// A cache line and a little: buffers of a thousand rows one behind the other would have the same row of all columns
// compete for the same lines of the cache.
constexpr std::size_t kApart = 72;
static_assert(kApart % sizeof(Length) == 0);

struct Way {
  ColumnStorage Storage;
  Small CType;
  bool Plain;  // lands as it stands in the chunk
  std::size_t SlotWidth;
};

// In the order of ColumnStorage. The narrow numbers land one size wider, because some drivers cut what does not fit
// without a word.
constexpr std::array kWays = {
    Way{ColumnStorage::Integer, SQL_C_SLONG, false, 4},
    Way{ColumnStorage::Long, SQL_C_SBIGINT, false, 8},
    Way{ColumnStorage::BigInteger, SQL_C_SBIGINT, true, 8},
    Way{ColumnStorage::Single, SQL_C_FLOAT, true, 4},
    Way{ColumnStorage::Double, SQL_C_DOUBLE, true, 8},
    Way{ColumnStorage::Currency, SQL_C_CHAR, false, 0},  // of no column of a driver
    Way{ColumnStorage::Decimal, SQL_C_CHAR, false, kShortText},
    Way{ColumnStorage::Date, SQL_C_TYPE_TIMESTAMP, false, sizeof(SQL_TIMESTAMP_STRUCT)},
    Way{ColumnStorage::Boolean, SQL_C_BIT, true, 1},
    Way{ColumnStorage::Byte, SQL_C_SSHORT, false, 2},
    Way{ColumnStorage::Text, SQL_C_CHAR, false, 0},   // as wide as the column's
    Way{ColumnStorage::Bytes, SQL_C_CHAR, false, 0},  // of no column of a driver
    Way{ColumnStorage::Placeholder, SQL_C_CHAR, false, 0},
};

constexpr bool AreInOrder() {
  for (std::size_t place = 0; place < kWays.size(); ++place) {
    if (static_cast<std::size_t>(kWays[place].Storage) != place) return false;
  }
  return true;
}
static_assert(AreInOrder());

constexpr const Way& WayOf(ColumnStorage storage) { return kWays[static_cast<std::size_t>(storage)]; }

constexpr std::size_t Aligned(std::size_t bytes) {
  return (bytes + sizeof(Length) - 1) / sizeof(Length) * sizeof(Length);
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

}  // namespace

Landing::Landing(const ColumnInfo& info, Word number, const DateManners& manners)
    : info_(&info),
      number_(number),
      cType_(WayOf(info.Storage).CType),
      isPlain_(WayOf(info.Storage).Plain),
      slotWidth_(WayOf(info.Storage).SlotWidth) {
  if (info.Storage == ColumnStorage::Text) slotWidth_ = TextWidth(info.Size);
  if (info.Storage != ColumnStorage::Date) return;
  const bool isTime = info.Type == rdTypeTIME;
  if (isTime ? manners.TimesAsText : manners.DatesAsText) {
    LandAsText();
  } else if (isTime) {
    cType_ = SQL_C_TYPE_TIME;
    slotWidth_ = sizeof(SQL_TIME_STRUCT);
  } else if (manners.Misreads != Misreading::None) {
    doubts_ = std::make_unique<DateDoubts>(manners.Misreads);
  }
}

void Landing::LandAsText() noexcept {
  cType_ = SQL_C_CHAR;
  isPlain_ = false;
  slotWidth_ = kShortText;
}

bool Landing::IsDateText() const noexcept { return info_->Storage == ColumnStorage::Date && cType_ == SQL_C_CHAR; }

// A text that is longer than its slot is no date.
bool Landing::CanBeCut() const noexcept { return IsFetched() && cType_ == SQL_C_CHAR && !IsDateText(); }

std::size_t Landing::Bytes(std::size_t rows) const noexcept {
  return IsFetched() ? rows * sizeof(Length) + kApart + Aligned(rows * slotWidth_) + kApart : 0;
}

void Landing::LandIn(std::byte* memory, std::size_t rows) noexcept {
  indicators_ = reinterpret_cast<Length*>(memory);
  slots_ = memory + rows * sizeof(Length) + kApart;
  rows_ = rows;
}

void Landing::Begin() {
  if (!whole_.empty()) whole_.clear();
  if (doubts_) doubts_->Begin(slots_, rows_);
}

void Landing::Bind(Statement& statement) {
  statement.Check(statement.Calls().BindCol(statement.Get(), number_, cType_, slots_, static_cast<Length>(slotWidth_),
                                            indicators_));
}

void Landing::Read(Statement& statement, std::size_t row) {
  Length& indicator = indicators_[row];
  const Code code = statement.Calls().GetData(statement.Get(), number_, cType_, slots_ + row * slotWidth_,
                                              static_cast<Length>(slotWidth_), &indicator);
  statement.Check(code);
  if (IsCut(row, code == SQL_SUCCESS_WITH_INFO)) ReadRest(statement, row);
  if (!doubts_) return;
  doubts_->End();
  RefuseIfMisread(statement, row, 1);
}

void Landing::RefuseMisread(Statement& statement, std::size_t rows) {
  if (!doubts_) return;
  doubts_->End();
  for (std::size_t row = 0; row < rows; ++row) RefuseIfMisread(statement, row, row + 1);
}

void Landing::RefuseIfMisread(Statement& statement, std::size_t row, std::size_t place) {
  if (!doubts_->IsMisread(statement, number_, place, slots_ + row * slotWidth_, IsNull(row))) return;
  Fail(RuntimeFailure::InvalidArgument, "The date cannot be read as it is stored" + InColumn());
}

// The slot holds the beginning, without the zero that ends it; the driver goes on where it stopped.
void Landing::ReadRest(Statement& statement, std::size_t row) {
  std::string& text = whole_[row];
  const auto* const slot = reinterpret_cast<const char*>(slots_ + row * slotWidth_);
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
  if (!CanBeCut() || IsNull(row)) return false;
  const Length length = indicators_[row];
  if (length == SQL_NO_TOTAL || length >= static_cast<Length>(slotWidth_)) return true;
  // Some drivers report what they delivered, not what there is.
  return informed && length == static_cast<Length>(slotWidth_) - 1;
}

bool Landing::HasCut(std::size_t rows, bool informed) const noexcept {
  if (!CanBeCut()) return false;
  for (std::size_t row = 0; row < rows; ++row) {
    if (IsCut(row, informed)) return true;
  }
  return false;
}

std::string_view Landing::SlotAt(std::size_t row) const noexcept {
  return {reinterpret_cast<const char*>(slots_ + row * slotWidth_), static_cast<std::size_t>(indicators_[row])};
}

std::string_view Landing::TextAt(std::size_t row) const {
  if (IsNull(row)) return {};
  const auto whole = whole_.find(row);
  return whole == whole_.end() ? SlotAt(row) : std::string_view(whole->second);
}

template <class T, class Conversion>
void Landing::Convert(const RowChunk::Column& column, std::size_t rows, Conversion convert) const {
  for (std::size_t row = 0; row < rows; ++row) {
    T value{};
    if (!IsNull(row)) {
      try {
        value = convert(row);
      } catch (const Error& error) { throw Error(error.Number(), error.Description() + InColumn()); }
    }
    std::memcpy(column.Values + row * sizeof(T), &value, sizeof(T));
  }
}

template <class From>
From Landing::Slot(std::size_t row) const {
  return Load<From>(slots_ + row * slotWidth_);
}

// Only an output lands as text.
template <class From>
std::int64_t Landing::Whole(std::size_t row) const {
  return cType_ == SQL_C_CHAR ? WholeOf(Variant(std::string(TextAt(row)))) : Slot<From>(row);
}

RowChunk::Column Landing::Describe(std::size_t rows) {
  RowChunk::Column column{.Storage = info_->Storage};
  if (!IsFetched()) return column;
  if (IsDateText()) TakeEmptyAsNull(rows);
  column.HasNulls = std::find(indicators_, indicators_ + rows, Length{SQL_NULL_DATA}) != indicators_ + rows;
  if (column.Storage == ColumnStorage::Text) column.Bytes = static_cast<std::uint32_t>(BytesOfTexts(rows));
  return column;
}

void Landing::Fill(const RowChunk::Column& column, std::size_t rows) const {
  if (!IsFetched()) return;
  for (std::size_t row = 0; column.HasNulls && row < rows; ++row) {
    column.NullBits[row / 64] |= std::uint64_t{IsNull(row)} << (row % 64);
  }
  if (isPlain_) {
    std::memcpy(column.Values, slots_, rows * slotWidth_);
  } else if (column.Storage == ColumnStorage::Text) {
    FillTexts(column, rows);
  } else {
    FillConverted(column, rows);
  }
}

Variant Landing::Value() {
  RowChunk chunk({Describe(1)}, 1);
  Fill(chunk.Data(0), 1);
  return chunk.Value(0, 0);
}

void Landing::FillConverted(const RowChunk::Column& column, std::size_t rows) const {
  switch (column.Storage) {
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
    case ColumnStorage::Date: return Convert<double>(column, rows, [this](auto row) { return DateAt(row).Days; });
    default: break;
  }
}

velmoria::Date Landing::DateAt(std::size_t row) const {
  if (!IsDateText()) return LoadDate(slots_ + row * slotWidth_, cType_);
  // A length that the driver does not know is below 0, and one that fills the slot may have been cut.
  if (static_cast<std::size_t>(indicators_[row]) >= slotWidth_ - 1) Fail(RuntimeFailure::InvalidArgument);
  return ReadDateText(SlotAt(row));
}

// An empty text is no date at all.
void Landing::TakeEmptyAsNull(std::size_t rows) noexcept {
  std::replace(indicators_, indicators_ + rows, Length{0}, Length{SQL_NULL_DATA});
}

std::string Landing::InColumn() const { return " in the column '" + info_->Name + "'"; }

std::size_t Landing::BytesOfTexts(std::size_t rows) const {
  std::size_t total = 0;
  for (std::size_t row = 0; row < rows; ++row)
    total += whole_.empty() ? (IsNull(row) ? 0 : static_cast<std::size_t>(indicators_[row])) : TextAt(row).size();
  if (total <= ValueEnds::kMostBytes) return total;
  Fail(RuntimeFailure::Overflow, "The texts of the column '" + info_->Name + "' are too long to be read together.");
}

void Landing::FillTexts(const RowChunk::Column& column, std::size_t rows) const {
  std::size_t end = 0;
  for (std::size_t row = 0; row < rows; ++row) {
    const std::string_view text = !whole_.empty() ? TextAt(row) : IsNull(row) ? std::string_view() : SlotAt(row);
    if (!text.empty()) std::memcpy(column.Values + end, text.data(), text.size());
    column.Ends.Set(row, end += text.size());
  }
}

}  // namespace velmoria::odbc

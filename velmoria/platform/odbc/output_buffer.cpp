#include "velmoria/platform/odbc/output_buffer.h"

#include <algorithm>
#include <cstring>
#include <span>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/error.h"

namespace velmoria::odbc {
namespace {

constexpr std::size_t kNarrowest = std::size_t{64} << 10;
constexpr std::size_t kUnknown = std::size_t{16} << 20;
constexpr std::size_t kWidest = std::size_t{256} << 20;
constexpr std::size_t kBytesOfCharacter = 4;

bool IsLong(const ColumnInfo& info) { return info.Type == rdTypeLONGVARCHAR || info.Type == rdTypeLONGVARBINARY; }

std::size_t WidthOf(const ColumnInfo& info, bool comesAsRow) {
  if (comesAsRow) return kNarrowest;
  if (info.Size <= 0) return kUnknown;
  const std::size_t ofCharacter = info.Storage == ColumnStorage::Text ? kBytesOfCharacter : 1;
  const std::size_t least = IsLong(info) ? kUnknown : kNarrowest;
  // Two more, so that a value of the greatest length does not look like one that was cut.
  return std::clamp(static_cast<std::size_t>(info.Size) * ofCharacter + 2, least, kWidest);
}

// A server may have no parameters of its long types; what is no longer than a plain one is sent as that.
Small TypeOf(const ColumnInfo& info) {
  if (!IsLong(info) || info.Size > kLongestPlain) return static_cast<Small>(info.Type);
  return info.Type == rdTypeLONGVARCHAR ? SQL_VARCHAR : SQL_VARBINARY;
}

}  // namespace

OutputBuffer::OutputBuffer(const ColumnInfo& info, bool comesAsRow)
    : name_(info.Name),
      isText_(info.Storage == ColumnStorage::Text),
      type_(TypeOf(info)),
      size_(static_cast<ULength>(info.Size > 0 ? info.Size : kLongestPlain)),
      width_(WidthOf(info, comesAsRow)) {}

void OutputBuffer::Put(const Variant& given) {
  if (!isText_ && !given.IsByteArray()) Fail(RuntimeFailure::TypeMismatch);
  const std::string text = isText_ && !given.IsText() ? given.AsText() : std::string();
  const auto bytes = isText_ ? std::as_bytes(std::span(given.IsText() ? given.TextView() : std::string_view(text)))
                             : std::as_bytes(given.Bytes());
  if (bytes.size() >= Room()) {
    width_ = bytes.size() + 2;
    bytes_ = std::make_unique_for_overwrite<Byte[]>(width_);
  }
  if (!bytes.empty()) std::memcpy(bytes_.get(), bytes.data(), bytes.size());
  length_ = static_cast<Length>(bytes.size());
}

void OutputBuffer::Bind(Statement& statement, Word number, Small direction, const Variant& given) {
  bytes_ = std::make_unique_for_overwrite<Byte[]>(width_);
  length_ = SQL_NULL_DATA;
  if (given.IsGiven() && !given.IsNull()) Put(given);
  statement.Check(statement.Calls().BindParameter(statement.Get(), number, direction,
                                                  isText_ ? SQL_C_CHAR : SQL_C_BINARY, type_, size_, 0, bytes_.get(),
                                                  static_cast<Length>(width_), &length_));
}

Variant OutputBuffer::Value() const {
  if (length_ == SQL_NULL_DATA) return Variant::Null();
  // Some drivers report what they delivered, not what there is.
  if (length_ < 0 || static_cast<std::size_t>(length_) >= Room())
    Fail(RuntimeFailure::Overflow, "The value of the parameter '" + name_ + "' is too long.");
  const auto length = static_cast<std::size_t>(length_);
  if (isText_) return std::string_view(reinterpret_cast<const char*>(bytes_.get()), length);
  return std::span<const Byte>(bytes_.get(), length);
}

}  // namespace velmoria::odbc

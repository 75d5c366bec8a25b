#include "velmoria/platform/odbc/long_value.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <sql.h>
#include <sqlext.h>

namespace velmoria::odbc {
namespace {

constexpr std::size_t kPieceOfUnknown = std::size_t{1} << 20;

/// Asks the driver for a column piece by piece.
class Pieces {
 public:
  Pieces(Statement& statement, Word column, bool isText) : statement_(statement), column_(column), isText_(isText) {
    // The length is asked for first, so that a value takes no more room than its own and is not moved.
    Read(CType(), &nothing_, 0);
    if (isText && left_ == SQL_NO_TOTAL) Read(SQL_C_BINARY, &nothing_, 0);  // what would be converted has a length
  }

  bool IsNull() const noexcept { return left_ == SQL_NULL_DATA; }
  bool IsAtEnd() const noexcept { return left_ == 0; }
  void AppendTo(std::vector<Byte>& value) {
    const std::size_t before = value.size();
    const std::size_t ending = isText_ ? 1 : 0;  // a text ends in a zero in every piece
    const std::size_t taken = left_ > 0 ? static_cast<std::size_t>(left_) : kPieceOfUnknown;
    value.resize(before + taken + ending);
    Read(CType(), value.data() + before, taken + ending);
    const bool goesOn = left_ == SQL_NO_TOTAL || left_ > static_cast<Length>(taken);
    value.resize(before + (goesOn ? taken : static_cast<std::size_t>(std::max(left_, Length{0}))));
    if (left_ != SQL_NO_TOTAL) left_ = goesOn ? left_ - static_cast<Length>(taken) : 0;
  }

 private:
  Small CType() const noexcept { return isText_ ? SQL_C_CHAR : SQL_C_BINARY; }
  void Read(Small cType, Byte* place, std::size_t room) {
    left_ = 0;
    const Code code =
        statement_.Calls().GetData(statement_.Get(), column_, cType, place, static_cast<Length>(room), &left_);
    if (code == SQL_NO_DATA) left_ = 0;
    if (code != SQL_NO_DATA) statement_.Check(code);
  }

  Statement& statement_;
  Word column_;
  bool isText_;
  Byte nothing_ = 0;
  Length left_ = 0;
};

}  // namespace

Variant ReadLongValue(Statement& statement, Word column, bool isText) {
  Pieces pieces(statement, column, isText);
  if (pieces.IsNull()) return Variant::Null();
  std::vector<Byte> value;
  while (!pieces.IsAtEnd()) pieces.AppendTo(value);
  return Variant(std::move(value));
}

}  // namespace velmoria::odbc

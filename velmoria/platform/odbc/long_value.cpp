#include "velmoria/platform/odbc/long_value.h"

#include <sql.h>
#include <sqlext.h>

namespace velmoria::odbc {
namespace {

constexpr std::size_t kFirstPiece = 65536;

}  // namespace

std::optional<std::string> ReadLongValue(Statement& statement, Word column, bool isText) {
  const Small cType = isText ? SQL_C_CHAR : SQL_C_BINARY;
  const std::size_t ending = isText ? 1 : 0;  // a text ends in a zero in every piece
  std::string value;
  for (std::size_t piece = kFirstPiece;; piece *= 2) {
    const std::size_t before = value.size();
    value.resize(before + piece);
    Length left = 0;
    const Code code = statement.Calls().GetData(statement.Get(), column, cType, value.data() + before,
                                                static_cast<Length>(piece), &left);
    if (code == SQL_NO_DATA) {
      value.resize(before);
      return value;
    }
    statement.Check(code);
    if (left == SQL_NULL_DATA) return std::nullopt;
    const std::size_t room = piece - ending;
    const bool more = left == SQL_NO_TOTAL || static_cast<std::size_t>(left) > room;
    value.resize(before + (more ? room : static_cast<std::size_t>(left)));
    if (!more) return value;
  }
}

}  // namespace velmoria::odbc

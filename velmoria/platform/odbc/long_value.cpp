#include "velmoria/platform/odbc/long_value.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <sql.h>
#include <sqlext.h>

namespace velmoria::odbc {
namespace {

constexpr std::size_t kPieceOfUnknown = std::size_t{1} << 20;

// The room that the rest of a value needs, as the driver announces it; some cannot tell.
std::size_t RoomFor(Length left, std::size_t ending) {
  return left == SQL_NO_TOTAL ? kPieceOfUnknown : static_cast<std::size_t>(left) + ending;
}

// What the driver had to give; more than was taken where it cannot tell how much.
std::size_t GivenOf(Length left, std::size_t taken) {
  if (left == SQL_NULL_DATA) return 0;
  return left == SQL_NO_TOTAL ? taken + 1 : static_cast<std::size_t>(left);
}

}  // namespace

// The length is asked for first, so that a value takes the room of its own length and nothing is moved.
Variant ReadLongValue(Statement& statement, Word column, bool isText) {
  const Small cType = isText ? SQL_C_CHAR : SQL_C_BINARY;
  const std::size_t ending = isText ? 1 : 0;  // a text ends in a zero in every piece
  Length left = 0;
  const auto read = [&](Byte* place, std::size_t room) {
    const Code code =
        statement.Calls().GetData(statement.Get(), column, cType, place, static_cast<Length>(room), &left);
    if (code != SQL_NO_DATA) statement.Check(code);
    return code != SQL_NO_DATA;
  };
  std::vector<Byte> value;
  Byte nothing = 0;
  bool more = read(&nothing, 0) && left != 0;
  if (more && left == SQL_NULL_DATA) return Variant::Null();
  while (more) {
    const std::size_t before = value.size();
    const std::size_t room = RoomFor(left, ending);
    value.resize(before + room);
    const std::size_t taken = room - ending;
    const std::size_t given = read(value.data() + before, room) ? GivenOf(left, taken) : 0;
    more = given > taken;
    value.resize(before + std::min(given, taken));
    if (more && left != SQL_NO_TOTAL) left -= static_cast<Length>(taken);
  }
  return Variant(std::move(value));
}

}  // namespace velmoria::odbc

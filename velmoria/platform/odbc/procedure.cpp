#include "velmoria/platform/odbc/procedure.h"

#include <array>
#include <cstdlib>
#include <memory>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/arguments.h"
#include "velmoria/platform/odbc/columns.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria::odbc {
namespace {

// Places of the catalogue's row.
constexpr Word kProcedureName = 3;
constexpr Word kColumnName = 4;
constexpr Word kColumnType = 5;
constexpr Word kDataType = 6;
constexpr Word kColumnSize = 8;
constexpr Word kDecimalDigits = 10;

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view WithoutBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

bool TakeSign(std::string_view& text, char sign) {
  text = WithoutBlanks(text);
  if (!text.starts_with(sign)) return false;
  text = WithoutBlanks(text.substr(1));
  return true;
}

std::string Without(std::string_view text, std::string_view signs) {
  std::string result;
  for (const char c : text) {
    if (signs.find(c) == std::string_view::npos) result += c;
  }
  return result;
}

std::string TextOf(Statement& statement, Word column) {
  std::array<char, 256> text{};
  Length length = 0;
  const Code code = statement.Calls().GetData(statement.Get(), column, SQL_C_CHAR, text.data(),
                                              static_cast<Length>(text.size()), &length);
  return Succeeded(code) && length != SQL_NULL_DATA ? std::string(text.data()) : std::string();
}

std::int32_t NumberOf(Statement& statement, Word column) {
  return static_cast<std::int32_t>(std::strtol(TextOf(statement, column).c_str(), nullptr, 10));
}

// Some servers add the number of the procedure in its group: "name;1".
bool IsNamed(std::string_view listed, std::string_view name) {
  return EqualFolded(listed.substr(0, listed.find(';')), name);
}

/// None where the connection makes none: the call itself meets that, too.
std::unique_ptr<Statement> MakeStatement(Connection& connection) {
  try {
    return std::make_unique<Statement>(connection);
  } catch (const Error&) { return {}; }
}

ProcedureParameter ReadParameter(Statement& statement) {
  ProcedureParameter parameter;
  parameter.Name = Without(TextOf(statement, kColumnName), "[]@");
  parameter.Kind = static_cast<Small>(NumberOf(statement, kColumnType));
  parameter.Type = DocumentedType(NumberOf(statement, kDataType));
  parameter.Size = NumberOf(statement, kColumnSize);
  parameter.Digits = static_cast<Small>(NumberOf(statement, kDecimalDigits));
  if (parameter.Kind == SQL_RETURN_VALUE) parameter.Name = kReturnValue;
  return parameter;
}

}  // namespace

std::optional<ProcedureCall> ParseCall(std::string_view sql) {
  constexpr std::string_view kCall = "call";
  if (!TakeSign(sql, '{')) return std::nullopt;
  const bool returns = TakeSign(sql, '?');
  if (returns && !TakeSign(sql, '=')) return std::nullopt;
  if (sql.size() <= kCall.size() || !EqualFolded(sql.substr(0, kCall.size()), kCall)) return std::nullopt;
  std::string_view name = WithoutBlanks(sql.substr(kCall.size()));
  name = name.substr(0, name.find_first_of("(}"));
  name = name.substr(0, name.find_last_not_of(kBlanks) + 1);
  name = name.substr(name.rfind('.') + 1);
  return ProcedureCall{Without(name, "[]\"`"), returns};
}

std::vector<ProcedureParameter> DescribeProcedure(Connection& connection, const ProcedureCall& call) {
  std::vector<ProcedureParameter> parameters;
  if (call.Returns) parameters.push_back({.Name = std::string(kReturnValue), .Kind = SQL_RETURN_VALUE});
  const auto made = MakeStatement(connection);
  if (!made) return parameters;
  Statement& statement = *made;
  auto* const text = MutableText(call.Name);
  Calls& calls = statement.Calls();
  if (!Succeeded(calls.ProcedureColumns(statement.Get(), nullptr, 0, nullptr, 0, text, SQL_NTS, nullptr, 0)))
    return parameters;
  while (Succeeded(calls.Fetch(statement.Get()))) {
    if (!IsNamed(TextOf(statement, kProcedureName), call.Name)) continue;
    auto parameter = ReadParameter(statement);
    if (parameter.Kind == SQL_RETURN_VALUE) {
      if (call.Returns) parameters.front() = std::move(parameter);
    } else if (parameter.Kind != SQL_RESULT_COL) {
      parameters.push_back(std::move(parameter));
    }
  }
  return parameters;
}

}  // namespace velmoria::odbc

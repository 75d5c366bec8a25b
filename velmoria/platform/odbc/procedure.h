#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/platform/odbc/statement.h"

namespace velmoria::odbc {

/// What the text of a call escape says: "{ ? = call name ( ... ) }".
struct ProcedureCall {
  std::string Name;  // without its schema and delimiters
  bool Returns;      // whether the first marker takes the return value
};

/// None for any other text.
std::optional<ProcedureCall> ParseCall(std::string_view sql);

/// A parameter as the catalogue describes it.
struct ProcedureParameter {
  std::string Name{};     // without "[", "]" and "@"; "RETURN_VALUE" for the return value, however a driver names it
  Small Kind = 0;         // SQL_PARAM_INPUT, ..., SQL_RETURN_VALUE
  std::int32_t Type = 0;  // the documented code
  std::int32_t Size = 0;
  Small Digits = 0;
};

/// The parameters of a procedure in the order of the call's markers: the return value first, or not at all where the
/// call has none, and the columns of a result left out. What a driver does not know, or refuses to tell, is not there:
/// this never fails.
std::vector<ProcedureParameter> DescribeProcedure(Connection& connection, const ProcedureCall& call);

inline constexpr std::string_view kReturnValue = "RETURN_VALUE";

}  // namespace velmoria::odbc

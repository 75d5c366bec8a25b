#pragma once

#include <cstdint>
#include <string_view>

#include "velmoria/runtime/variant.h"

namespace velmoria {

/// What an Operator of a Property asks of a comparison of a value with the criterion.
struct MatchOperator {
  std::string_view Text;
  bool (*Holds)(std::int64_t comparison);
  bool IsOrdering;  // says nothing of a value that is Empty or Null
};

/// Null for a text that is none.
const MatchOperator* FindMatchOperator(std::string_view text) noexcept;

/// Orders a value and a criterion, which is brought to the kind of the value first; Null equals nothing. Raises 13 when
/// the two cannot be compared.
std::int64_t CompareOrdered(const Variant& value, const Variant& criterion);

/// Neither ordered nor compared by what it holds: an object, an error, an array.
bool IsOpaque(const Variant& value) noexcept;

}  // namespace velmoria

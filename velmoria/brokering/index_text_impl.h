#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>

#include "velmoria/runtime/text.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

inline constexpr std::initializer_list<VarType> AnyNumber = {VarType::Integer, VarType::Long,     VarType::Single,
                                                             VarType::Double,  VarType::Currency, VarType::Decimal,
                                                             VarType::Byte};

/// An index as messages show it: the text of a number of the given types, a String in single quotes, and for anything
/// else the name of its type in parentheses. Which types are numbers differs from class to class.
inline std::string IndexText(const Variant& index, std::initializer_list<VarType> numbers = AnyNumber) {
  if (index.IsText()) return Quoted(index.TextView());
  if (std::find(numbers.begin(), numbers.end(), index.Type()) != numbers.end()) return index.AsText();
  return "(" + index.TypeName() + ")";
}

}  // namespace velmoria

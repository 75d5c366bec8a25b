#pragma once

#include <initializer_list>
#include <string>

#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The types of an index that count as numbers where a message shows it, unless a class has others.
inline constexpr std::initializer_list<VarType> AnyNumber = {VarType::Integer, VarType::Long,     VarType::Single,
                                                             VarType::Double,  VarType::Currency, VarType::Decimal,
                                                             VarType::Byte};
inline constexpr std::initializer_list<VarType> AnyNumberOrBoolean = {
    VarType::Integer,  VarType::Long,    VarType::Single, VarType::Double,
    VarType::Currency, VarType::Decimal, VarType::Byte,   VarType::Boolean,
};

/// An index as messages show it: a number plain, a String in single quotes, and for anything else the name of its type
/// in parentheses.
std::string IndexText(const Variant& index, std::initializer_list<VarType> numbers = AnyNumber);
/// The same with the name of the type in single quotes.
std::string QuotingIndexText(const Variant& index, std::initializer_list<VarType> numbers = AnyNumber);

/// Before or After as messages show it: a number or a String plain, "(Missing)" or "(Empty)" when it is not given, and
/// for anything else the name of its type in parentheses.
std::string PlaceText(const Variant& place);
/// The placeholders of a "Problem adding" text with both places in single quotes.
Replacements AddTexts(std::string name, const Position& position);

}  // namespace velmoria

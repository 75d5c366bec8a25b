#pragma once

#include <optional>

#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// Why a definition does not take a value: the number to raise and its texts.
struct Refusal {
  zErrors Number;
  Replacements Texts;
};

/// The tests that a value meets before it is converted: none required (15162), length (15163, 15161), binary (15164).
/// A value that has no text form fails as its conversion does.
std::optional<Refusal> RefusalOf(const Variant& value, const PropertyData& definition);

/// What a conversion that failed is raised as: 15058 when the value has the storage of the DataType, 15059 otherwise.
Refusal MismatchOf(const Variant& value, const PropertyData& definition);

/// Whether a value differs from the one before it, as DirtyValue asks: by the type of the old one.
bool DiffersFromOld(const Variant& old, const Variant& present);

/// A value inside a line of Details: Null as nothing, what has no text form as its type in parentheses.
std::string ValueText(const Variant& value);

}  // namespace velmoria

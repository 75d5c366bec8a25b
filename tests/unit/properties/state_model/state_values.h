#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/dice.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

/// A value of any storage, more often one that goes into the data type.
Variant AnyValue(Dice& dice, zDataTypes dataType);
/// A value in the very storage of the data type, or Missing.
Variant OwnValue(Dice& dice, zDataTypes dataType);

/// Equal to the last bit: two dates in one second are not.
bool Identical(const Variant& left, const Variant& right);
/// The type and the value for the eye.
std::string Shown(const Variant& value);

}  // namespace velmoria::test

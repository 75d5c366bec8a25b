#pragma once

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The value in the storage of the data type. dtVariant, dtByteArray and codes outside the table give it as it is.
/// Empty becomes the zero of the type; Null is the caller's to keep, here it raises 94. What does not convert raises
/// 13, or 6 when it does not fit.
Variant ConvertToDataType(const Variant& value, zDataTypes dataType);

/// Whether a value of this storage has the data type's own storage. A real array carries the type of its elements, so
/// only a bare array code would match dtByteArray.
bool VarTypeMatches(VarType type, zDataTypes dataType) noexcept;

}  // namespace velmoria

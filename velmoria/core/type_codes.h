#pragma once

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

// Conversions between the codes of value types. The engine decides among three columns: engAccess, engSybase and every
// other. What a table does not list gives 0.

VELMORIA_API zSourceDataTypes SourceDataTypeForDataType(zEngines engine, zDataTypes dataType) noexcept;
/// The bare codes of objects, errors, variants and arrays count as binary; the code of a typed array is not listed.
VELMORIA_API zSourceDataTypes SourceDataTypeForVarType(zEngines engine, VarType type) noexcept;
/// dtVariant for Empty, Null and everything not listed, typed arrays included.
VELMORIA_API zDataTypes DataTypeForVarType(VarType type) noexcept;
VELMORIA_API zDataTypes DataTypeForSourceDataType(zEngines engine, zSourceDataTypes sourceDataType) noexcept;

}  // namespace velmoria

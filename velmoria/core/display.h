#pragma once

#include <cstdint>
#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/api.h"

namespace velmoria {

// The texts that stand for the values of the enumerations. A value outside its table gives "" unless told otherwise.

/// "(Unknown)" outside the table.
VELMORIA_API std::string EngineName(zEngines engine);
VELMORIA_API std::string DataTypeName(zDataTypes dataType);
/// The engine decides what a source data type means: engAccess has the DAO types, every other the RDO types. "Variant"
/// outside the table.
VELMORIA_API std::string SourceDataTypeName(zSourceDataTypes sourceDataType, zEngines engine);
VELMORIA_API std::string ConnectionTypeName(zConnectionTypes connectionType);
VELMORIA_API std::string CursorDriverName(zCursorDrivers cursorDriver);
VELMORIA_API std::string CursorTypeName(zCursorTypes cursorType);
VELMORIA_API std::string SourceTypeName(zSourceTypes sourceType);
VELMORIA_API std::string CollectionTypeName(zCollectionTypes collectionType);
VELMORIA_API std::string ObjectTypeName(zObjectTypes objectType);
VELMORIA_API std::string AssociationName(zAssociations association);
/// 1 is "RDO 2.0", 2 is "DAO 3.5", anything else "(None)".
VELMORIA_API std::string AccessMethodName(std::int32_t accessMethod);

// The words of the flags that are set, with "; " between; "(None)" for zero.

VELMORIA_API std::string FlagsDisplay(zPropertyFlags flags);
VELMORIA_API std::string UsageFlagsDisplay(zUsageFlags flags);
VELMORIA_API std::string EditFlagsDisplay(zEditFlags flags);
VELMORIA_API std::string SeverityFlagsDisplay(zSeverityFlags flags);
/// "(Unknown)" for zero.
VELMORIA_API std::string TypeFlagsDisplay(zTypeFlags flags);
/// "" for zero; sfnonpersistent has no word.
VELMORIA_API std::string StateFlagsDisplay(zStateFlags flags);

}  // namespace velmoria

#pragma once

#include <cstdint>
#include <type_traits>

namespace velmoria {

// Every enumeration of the library, with the values that definition files, settings and databases hold. The enumerators
// are names of the namespace. A value that a file or a host gives may lie outside its table.

enum class zAssociations : std::int32_t {
  raOneToMany = 0,
  raOneToOne = 1,
  raManyToOne = 2,
  raManyToMany = 3,
};
using enum zAssociations;

enum class zLinkTypes : std::int32_t {
  ltPropertyParameter = 0,
  ltIdentifierParameter = 1,
  ltPropertyIdentifier = 2,
};
using enum zLinkTypes;

enum class zPropertyFlags : std::int32_t {
  pfNone = 0,
  pfRequired = 1,
  pfAllowZeroLength = 2,
  pfInput = 4,
  pfOutput = 8,
  pfReturnValue = 16,
  pfcounter = 32,
};
using enum zPropertyFlags;

enum class zPropertyStyles : std::int32_t {
  psNone = 0,
  psIdentifier = 1,
  psParameter = 2,
  psNonPersistent = 3,
  psPersistent = 4,
  psUser = 5,
  psDefinition = 6,
  psLinkProperty = 7,
  psLinkParameter = 8,
  psCached = 9,
};
using enum zPropertyStyles;

enum class zStateFlags : std::int32_t {
  sfnonpersistent = 32,
  sfpersistent = 1,
  sfNew = 2,
  sfdeleted = 4,
  sfpendingdelete = 8,
  sfdirty = 16,
};
using enum zStateFlags;

enum class zObjectTypes : std::int32_t {
  otDefault = -1,
  otBusiness = 0,
  otModel = 1,
};
using enum zObjectTypes;

enum class zUsageFlags : std::int32_t {
  ufNone = 0,
  ufObjects = 1,
  ufProperties = 2,
  ufExecute = 4,
  ufAll = -1,
};
using enum zUsageFlags;

enum class zEditFlags : std::int32_t {
  efNone = 0,
  efUpdate = 1,
  efInsert = 2,
  efDelete = 4,
  efAll = -1,
};
using enum zEditFlags;

enum class zCollectionTypes : std::int32_t {
  cltDefault = -1,
  cltDispatcher = 1,
  cltInitialized = 2,
  cltOptimized = 0,
};
using enum zCollectionTypes;

enum class zEngines : std::int32_t {
  engUnknown = 0,
  engAccess = 1,
  engODBC = 2,
  engSQLServer = 3,
  engSybase = 4,
  engOracle = 5,
  engInformix = 6,
  engRMS = 7,
};
using enum zEngines;

enum class zDataTypes : std::int32_t {
  dtVariant = 0,
  dtString = 1,
  dtLongInteger = 2,
  dtDate = 3,
  dtInteger = 4,
  dtBoolean = 5,
  dtCurrency = 6,
  dtSingle = 7,
  dtDouble = 8,
  dtDecimal = 9,
  dtByte = 10,
  dtByteArray = 11,
};
using enum zDataTypes;

enum class zSourceDataTypes : std::int32_t {
  dtSourceVariant = 0,
  dtRDOChar = 1,
  dtRDONumeric = 2,
  dtRDODECIMAL = 3,
  dtRDOINTEGER = 4,
  dtRDOSMALLINT = 5,
  dtRDOFLOAT = 6,
  dtRDOREAL = 7,
  dtRDODouble = 8,
  dtRDODATE = 9,
  dtRDOTIME = 10,
  dtRDOTIMESTAMP = 11,
  dtRDOVARCHAR = 12,
  dtRDOLONGVARCHAR = -1,
  dtRDOBINARY = -2,
  dtRDOVARBINARY = -3,
  dtRDOLongVarBinary = -4,
  dtRDOBIGINT = -5,
  dtRDOTINYINT = -6,
  dtRDOBIT = -7,
  dtDAOBoolean = 1,
  dtDAOByte = 2,
  dtDAOInteger = 3,
  dtDAOLongInteger = 4,
  dtDAOCurrency = 5,
  dtDAOSingle = 6,
  dtDAODouble = 7,
  dtDAODate = 8,
  dtDAOBinary = 9,
  dtDAOText = 10,
  dtDAOLongBinary = 11,
  dtDAOMemo = 12,
  dtDAOGUID = 15,
  dtDAOBigInt = 16,
  dtDAOVarBinary = 17,
  dtDAOChar = 18,
  dtDAONumeric = 19,
  dtDAODecimal = 20,
  dtDAOFloat = 21,
  dtDAOTime = 22,
  dtDAOTimeStamp = 23,
};
using enum zSourceDataTypes;

enum class zConnectionTypes : std::int32_t {
  ctNone = 0,
  ctPrompt = 4,
  ctDSN = 1,
  ctFile = 2,
  ctText = 3,
};
using enum zConnectionTypes;

enum class zCursorDrivers : std::int32_t {
  crdNone = 0,
  crdClientSide = 1,
  crdServerSide = 2,
  crdOptimisticBatch = 3,
  crdTryServerSide = 4,
};
using enum zCursorDrivers;

enum class zCursorTypes : std::int32_t {
  crtNone = 0,
  crtStatic = 3,
  crtKeyset = 1,
  crtDynamic = 2,
};
using enum zCursorTypes;

enum class zOptionFlags : std::int32_t {
  ofNone = 0,
  ofDAODenyRead = 2,
  ofDAODenyWrite = 1,
  ofDAOSeeChanges = 512,
  ofDAOConsistent = 32,
  ofDAOInconsistent = 16,
  ofRDOAsync = 1,
  ofRDOPassthru = 2,
};
using enum zOptionFlags;

enum class zSourceTypes : std::int32_t {
  stNone = 0,
  stTable = 1,
  stQueryDef = 2,
  stSQL = 3,
  stStoredProcedure = 4,
  stView = 5,
};
using enum zSourceTypes;

enum class zSeverityFlags : std::int32_t {
  svfWarning = 1,
  svfInfo = 2,
  svfError = 4,
  svfAll = -1,
  svfNone = 0,
};
using enum zSeverityFlags;

enum class zTypeFlags : std::int32_t {
  tfUnknown = 0,
  tfSystem = 1,
  tfOLE = 2,
  tfVelmoria = 4,
  tfRDO = 8,
  tfDAO = 16,
  tfAll = 31,
};
using enum zTypeFlags;

enum class zLogModes : std::int32_t {
  lmOff = 0,
  lmAutomatic = 1,
  lmWindows = 2,
  lmWinNT = 3,
};
using enum zLogModes;

enum class zErrorControls : std::int32_t {
  cxErrorNumberFirst = 15000,
  cxErrorNumberLast = 15180,
};
using enum zErrorControls;

/// The enumerations whose values are combined bit by bit.
template <class E>
inline constexpr bool IsFlags =
    std::is_same_v<E, zPropertyFlags> || std::is_same_v<E, zStateFlags> || std::is_same_v<E, zUsageFlags> ||
    std::is_same_v<E, zEditFlags> || std::is_same_v<E, zOptionFlags> || std::is_same_v<E, zSeverityFlags> ||
    std::is_same_v<E, zTypeFlags>;

template <class E>
  requires IsFlags<E>
constexpr E operator|(E left, E right) noexcept {
  return static_cast<E>(static_cast<std::int32_t>(left) | static_cast<std::int32_t>(right));
}

template <class E>
  requires IsFlags<E>
constexpr E operator&(E left, E right) noexcept {
  return static_cast<E>(static_cast<std::int32_t>(left) & static_cast<std::int32_t>(right));
}

template <class E>
  requires IsFlags<E>
constexpr E operator~(E flags) noexcept {
  return static_cast<E>(~static_cast<std::int32_t>(flags));
}

/// Whether the two share a bit; with a single flag: whether it is set.
template <class E>
  requires IsFlags<E>
constexpr bool has(E flags, E flag) noexcept {
  return static_cast<std::int32_t>(flags & flag) != 0;
}

}  // namespace velmoria

#pragma once

#include <cstdint>

namespace velmoria {

/// The numbers of the RDO object model, which the ODBC layer below speaks, too. Combinations and values outside a list
/// occur, hence plain numbers.
using rdoNumber = std::int32_t;

// rdoEnvironment.CursorDriver
inline constexpr rdoNumber rdUseIfNeeded = 0;
inline constexpr rdoNumber rdUseODBC = 1;
inline constexpr rdoNumber rdUseServer = 2;
inline constexpr rdoNumber rdUseClientBatch = 3;
inline constexpr rdoNumber rdUseNone = 4;

// rdoEnvironment.OpenConnection, Prompt
inline constexpr rdoNumber rdDriverPrompt = 0;
inline constexpr rdoNumber rdDriverNoPrompt = 1;

// OpenResultset, Type
inline constexpr rdoNumber rdOpenForwardOnly = 0;
inline constexpr rdoNumber rdOpenKeyset = 1;
inline constexpr rdoNumber rdOpenDynamic = 2;
inline constexpr rdoNumber rdOpenStatic = 3;

// OpenResultset, LockType and Options
inline constexpr rdoNumber rdConcurReadOnly = 1;
inline constexpr rdoNumber rdAsyncEnable = 32;

// rdoParameter.Direction
inline constexpr rdoNumber rdParamInput = 0;
inline constexpr rdoNumber rdParamInputOutput = 1;
inline constexpr rdoNumber rdParamOutput = 2;
inline constexpr rdoNumber rdParamReturnValue = 3;

// rdoColumn.Attributes
inline constexpr rdoNumber rdFixedColumn = 1;
inline constexpr rdoNumber rdVariableColumn = 2;
inline constexpr rdoNumber rdAutoIncrColumn = 16;
inline constexpr rdoNumber rdUpdatableColumn = 32;

// rdoColumn.Type and rdoParameter.Type
inline constexpr rdoNumber rdTypeCHAR = 1;
inline constexpr rdoNumber rdTypeNUMERIC = 2;
inline constexpr rdoNumber rdTypeDECIMAL = 3;
inline constexpr rdoNumber rdTypeINTEGER = 4;
inline constexpr rdoNumber rdTypeSMALLINT = 5;
inline constexpr rdoNumber rdTypeFLOAT = 6;
inline constexpr rdoNumber rdTypeREAL = 7;
inline constexpr rdoNumber rdTypeDOUBLE = 8;
inline constexpr rdoNumber rdTypeDATE = 9;
inline constexpr rdoNumber rdTypeTIME = 10;
inline constexpr rdoNumber rdTypeTIMESTAMP = 11;
inline constexpr rdoNumber rdTypeVARCHAR = 12;
inline constexpr rdoNumber rdTypeLONGVARCHAR = -1;
inline constexpr rdoNumber rdTypeBINARY = -2;
inline constexpr rdoNumber rdTypeVARBINARY = -3;
inline constexpr rdoNumber rdTypeLONGVARBINARY = -4;
inline constexpr rdoNumber rdTypeBIGINT = -5;
inline constexpr rdoNumber rdTypeTINYINT = -6;
inline constexpr rdoNumber rdTypeBIT = -7;

/// Error numbers of this layer itself; a driver's failure carries the driver's own number.
inline constexpr std::int32_t rdErrNoCurrentRow = 40009;
inline constexpr std::int32_t rdErrForwardOnly = 40088;
inline constexpr std::int32_t rdErrClosed = 40071;

}  // namespace velmoria

#pragma once

#include <cstdint>
#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The definition of a Property as Properties.SetupItem and Framework.CreateProperty take it.
struct PropertyFields {
  std::string Name;                    // required
  Variant Value = Variant::Missing();  // stored as given, without a test of its type
  zDataTypes DataType = dtVariant;
  std::int32_t Size = 0;   // the longest text of a dtString in characters; 0 is no limit
  std::string Operator{};  // empty means "="
  bool OrFlag = false;
  std::string SourceName{};    // as a column of a result or as a parameter
  std::string SourceColumn{};  // where it is kept: a column of SourceTable
  std::string SourceTable{};
  zSourceDataTypes SourceDataType = dtSourceVariant;
  bool Modifiable = true;
  zPropertyFlags Flags = pfNone;  // pfNone takes the default of the DataType and style
  Variant DefaultValue = Variant::Missing();
  std::string FormatText{};  // the pattern of DisplayValue; its language stands in runtime/format.h
  std::string InputMask{};
  std::string Caption{};
  std::string Description{};
  bool Locked = false;  // guards the DefaultValue alone
  zEngines Engine = engUnknown;
};

}  // namespace velmoria

#include "velmoria/core/type_codes.h"

#include <algorithm>
#include <iterator>

namespace velmoria {

namespace {

struct SourceRow {
  zDataTypes Code;
  zSourceDataTypes Access;
  zSourceDataTypes Sybase;
  zSourceDataTypes Other;
};

constexpr SourceRow kSourceTypes[] = {
    {dtString, dtDAOText, dtRDOVARCHAR, dtRDOVARCHAR},
    {dtLongInteger, dtDAOLongInteger, dtRDOINTEGER, dtRDOINTEGER},
    {dtDate, dtDAODate, dtRDODATE, dtRDODATE},
    {dtInteger, dtDAOInteger, dtRDOSMALLINT, dtRDOSMALLINT},
    {dtBoolean, dtDAOBoolean, dtRDOBIT, dtRDOBIT},
    {dtCurrency, dtDAOCurrency, dtRDODECIMAL, dtRDODECIMAL},
    {dtSingle, dtDAOSingle, dtRDOREAL, dtRDOREAL},
    {dtDouble, dtDAODouble, dtRDODouble, dtRDODouble},
    {dtDecimal, dtDAODecimal, dtRDODouble, dtRDODECIMAL},
    {dtByte, dtDAOByte, dtRDOTINYINT, dtRDOTINYINT},
    {dtByteArray, dtDAOLongBinary, dtRDOLongVarBinary, dtRDOLongVarBinary},
};

struct VarRow {
  VarType Code;
  zDataTypes Result;
};

constexpr VarRow kVarTypes[] = {
    {VarType::Integer, dtInteger}, {VarType::Long, dtLongInteger},  {VarType::Single, dtSingle},
    {VarType::Double, dtDouble},   {VarType::Currency, dtCurrency}, {VarType::Date, dtDate},
    {VarType::String, dtString},   {VarType::Object, dtByteArray},  {VarType::Error, dtByteArray},
    {VarType::Boolean, dtBoolean}, {VarType::Variant, dtByteArray}, {VarType::Unknown, dtByteArray},
    {VarType::Decimal, dtDecimal}, {VarType::Byte, dtByte},         {VarType::Array, dtByteArray},
};

struct AccessRow {
  zSourceDataTypes Code;
  zDataTypes Result;
};

constexpr AccessRow kAccessTypes[] = {
    {dtDAOBoolean, dtBoolean},
    {dtDAOByte, dtByte},
    {dtDAOInteger, dtInteger},
    {dtDAOLongInteger, dtLongInteger},
    {dtDAOCurrency, dtCurrency},
    {dtDAOSingle, dtSingle},
    {dtDAODouble, dtDouble},
    {dtDAOFloat, dtDouble},
    {dtDAODate, dtDate},
    {dtDAOTime, dtDate},
    {dtDAOTimeStamp, dtDate},
    {dtDAOBinary, dtDecimal},  // fixed by what definition files hold
    {dtDAOBigInt, dtDecimal},
    {dtDAONumeric, dtDecimal},
    {dtDAODecimal, dtDecimal},
    {dtDAOText, dtString},
    {dtDAOMemo, dtString},
    {dtDAOChar, dtString},
    {dtDAOLongBinary, dtByteArray},
    {dtDAOGUID, dtByteArray},
    {dtDAOVarBinary, dtByteArray},
};

struct ServerRow {
  zSourceDataTypes Code;
  zDataTypes Sybase;
  zDataTypes Other;
};

// The Sybase column differs from the other in four rows, and is meant to.
constexpr ServerRow kServerTypes[] = {
    {dtRDOBIT, dtBoolean, dtBoolean},
    {dtRDOTINYINT, dtByte, dtByte},
    {dtRDOBIGINT, dtVariant, dtDecimal},
    {dtRDOLongVarBinary, dtByteArray, dtByteArray},
    {dtRDOVARBINARY, dtByteArray, dtByteArray},
    {dtRDOBINARY, dtByteArray, dtByteArray},
    {dtRDOLONGVARCHAR, dtByteArray, dtByteArray},
    {dtSourceVariant, dtDecimal, dtVariant},
    {dtRDOChar, dtString, dtString},
    {dtRDOVARCHAR, dtString, dtString},
    {dtRDONumeric, dtDecimal, dtDecimal},
    {dtRDODECIMAL, dtDecimal, dtDecimal},
    {dtRDOINTEGER, dtLongInteger, dtLongInteger},
    {dtRDOSMALLINT, dtInteger, dtInteger},
    {dtRDOFLOAT, dtDouble, dtDouble},
    {dtRDODouble, dtDouble, dtDouble},
    {dtRDOREAL, dtSingle, dtSingle},
    {dtRDODATE, dtVariant, dtDate},
    {dtRDOTIME, dtVariant, dtDate},
    {dtRDOTIMESTAMP, dtDate, dtDate},
};

template <class Row, std::size_t N, class Code>
constexpr Row Find(const Row (&table)[N], Code code) noexcept {
  const auto row =
      std::find_if(std::begin(table), std::end(table), [code](const Row& each) { return each.Code == code; });
  return row == std::end(table) ? Row{} : *row;
}

}  // namespace

zSourceDataTypes SourceDataTypeForDataType(zEngines engine, zDataTypes dataType) noexcept {
  const auto row = Find(kSourceTypes, dataType);
  if (engine == engAccess) return row.Access;
  return engine == engSybase ? row.Sybase : row.Other;
}

zSourceDataTypes SourceDataTypeForVarType(zEngines engine, VarType type) noexcept {
  const bool isUnset = type == VarType::Empty || type == VarType::Null;
  return SourceDataTypeForDataType(engine, isUnset ? dtString : DataTypeForVarType(type));
}

zDataTypes DataTypeForVarType(VarType type) noexcept { return Find(kVarTypes, type).Result; }

zDataTypes DataTypeForSourceDataType(zEngines engine, zSourceDataTypes sourceDataType) noexcept {
  if (engine == engAccess) return Find(kAccessTypes, sourceDataType).Result;
  const auto row = Find(kServerTypes, sourceDataType);
  return engine == engSybase ? row.Sybase : row.Other;
}

}  // namespace velmoria

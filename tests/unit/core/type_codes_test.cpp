#include "velmoria/core/type_codes.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace velmoria {
namespace {

constexpr zEngines kOtherEngines[] = {engUnknown,  engODBC, engSQLServer, engOracle,
                                      engInformix, engRMS,  zEngines{8},  zEngines{-1}};

template <class From, class To>
struct Cells {
  From Code;
  To Access;
  To Sybase;
  To Other;
};

template <class From, class To>
void ExpectCells(To (*convert)(zEngines, From), const std::vector<Cells<From, To>>& table) {
  for (const auto& row : table) {
    SCOPED_TRACE(static_cast<int>(row.Code));
    EXPECT_EQ(convert(engAccess, row.Code), row.Access);
    EXPECT_EQ(convert(engSybase, row.Code), row.Sybase);
    for (const auto engine : kOtherEngines) EXPECT_EQ(convert(engine, row.Code), row.Other);
  }
}

zSourceDataTypes ForDataType(zEngines engine, zDataTypes type) { return SourceDataTypeForDataType(engine, type); }
zSourceDataTypes ForVarType(zEngines engine, VarType type) { return SourceDataTypeForVarType(engine, type); }

TEST(TypeCodesTest, SourceDataTypeForDataTypeEachCell) {
  ExpectCells<zDataTypes, zSourceDataTypes>(ForDataType,
                                            {
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
                                                {dtVariant, dtSourceVariant, dtSourceVariant, dtSourceVariant},
                                                {zDataTypes{12}, dtSourceVariant, dtSourceVariant, dtSourceVariant},
                                                {zDataTypes{-1}, dtSourceVariant, dtSourceVariant, dtSourceVariant},
                                            });
}

TEST(TypeCodesTest, SourceDataTypeForVarTypeEachCell) {
  ExpectCells<VarType, zSourceDataTypes>(
      ForVarType, {
                      {VarType::Empty, dtDAOText, dtRDOVARCHAR, dtRDOVARCHAR},
                      {VarType::Null, dtDAOText, dtRDOVARCHAR, dtRDOVARCHAR},
                      {VarType::String, dtDAOText, dtRDOVARCHAR, dtRDOVARCHAR},
                      {VarType::Integer, dtDAOInteger, dtRDOSMALLINT, dtRDOSMALLINT},
                      {VarType::Long, dtDAOLongInteger, dtRDOINTEGER, dtRDOINTEGER},
                      {VarType::Single, dtDAOSingle, dtRDOREAL, dtRDOREAL},
                      {VarType::Double, dtDAODouble, dtRDODouble, dtRDODouble},
                      {VarType::Currency, dtDAOCurrency, dtRDODECIMAL, dtRDODECIMAL},
                      {VarType::Date, dtDAODate, dtRDODATE, dtRDODATE},
                      {VarType::Object, dtDAOLongBinary, dtRDOLongVarBinary, dtRDOLongVarBinary},
                      {VarType::Error, dtDAOLongBinary, dtRDOLongVarBinary, dtRDOLongVarBinary},
                      {VarType::Variant, dtDAOLongBinary, dtRDOLongVarBinary, dtRDOLongVarBinary},
                      {VarType::Unknown, dtDAOLongBinary, dtRDOLongVarBinary, dtRDOLongVarBinary},
                      {VarType::Array, dtDAOLongBinary, dtRDOLongVarBinary, dtRDOLongVarBinary},
                      {VarType::Boolean, dtDAOBoolean, dtRDOBIT, dtRDOBIT},
                      {VarType::Decimal, dtDAODecimal, dtRDODouble, dtRDODECIMAL},
                      {VarType::Byte, dtDAOByte, dtRDOTINYINT, dtRDOTINYINT},
                      {ArrayOf(VarType::Byte), dtSourceVariant, dtSourceVariant, dtSourceVariant},
                      {ArrayOf(VarType::Variant), dtSourceVariant, dtSourceVariant, dtSourceVariant},
                      {VarType{15}, dtSourceVariant, dtSourceVariant, dtSourceVariant},
                      {VarType{16}, dtSourceVariant, dtSourceVariant, dtSourceVariant},
                      {VarType{18}, dtSourceVariant, dtSourceVariant, dtSourceVariant},
                  });
}

TEST(TypeCodesTest, DataTypeForVarTypeEachCode) {
  const std::vector<std::pair<VarType, zDataTypes>> table = {
      {VarType::Empty, dtVariant},     {VarType::Null, dtVariant},    {VarType::Integer, dtInteger},
      {VarType::Long, dtLongInteger},  {VarType::Single, dtSingle},   {VarType::Double, dtDouble},
      {VarType::Currency, dtCurrency}, {VarType::Date, dtDate},       {VarType::String, dtString},
      {VarType::Object, dtByteArray},  {VarType::Error, dtByteArray}, {VarType::Variant, dtByteArray},
      {VarType::Unknown, dtByteArray}, {VarType::Array, dtByteArray}, {VarType::Boolean, dtBoolean},
      {VarType::Decimal, dtDecimal},   {VarType::Byte, dtByte},       {VarType{15}, dtVariant},
      {VarType{16}, dtVariant},        {VarType{18}, dtVariant},
  };
  for (const auto& [code, type] : table) EXPECT_EQ(DataTypeForVarType(code), type) << static_cast<int>(code);
}

TEST(TypeCodesTest, OnlyTheBareArrayMarkerIsBinary) {
  EXPECT_EQ(DataTypeForVarType(ArrayOf(VarType::Byte)), dtVariant);
  EXPECT_EQ(DataTypeForVarType(ArrayOf(VarType::Variant)), dtVariant);
}

TEST(TypeCodesTest, DataTypeForSourceDataTypeOfAccessEachRow) {
  const std::vector<std::pair<zSourceDataTypes, zDataTypes>> table = {
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
      {dtDAOBinary, dtDecimal},
      {dtDAOBigInt, dtDecimal},
      {dtDAONumeric, dtDecimal},
      {dtDAODecimal, dtDecimal},
      {dtDAOText, dtString},
      {dtDAOMemo, dtString},
      {dtDAOChar, dtString},
      {dtDAOLongBinary, dtByteArray},
      {dtDAOGUID, dtByteArray},
      {dtDAOVarBinary, dtByteArray},
      {dtSourceVariant, dtVariant},
      {zSourceDataTypes{13}, dtVariant},
      {zSourceDataTypes{14}, dtVariant},
      {zSourceDataTypes{24}, dtVariant},
      {dtRDOBIT, dtVariant},
  };
  for (const auto& [code, type] : table) {
    EXPECT_EQ(DataTypeForSourceDataType(engAccess, code), type) << static_cast<int>(code);
  }
}

TEST(TypeCodesTest, BinaryOfAccessIsDecimal) {
  EXPECT_EQ(DataTypeForSourceDataType(engAccess, dtDAOBinary), dtDecimal);
}

struct ServerCells {
  zSourceDataTypes Code;
  zDataTypes Sybase;
  zDataTypes Other;
};

TEST(TypeCodesTest, DataTypeForSourceDataTypeOfServersEachCell) {
  const std::vector<ServerCells> table = {
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
      {zSourceDataTypes{13}, dtVariant, dtVariant},
      {zSourceDataTypes{-8}, dtVariant, dtVariant},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(static_cast<int>(row.Code));
    EXPECT_EQ(DataTypeForSourceDataType(engSybase, row.Code), row.Sybase);
    for (const auto engine : kOtherEngines) EXPECT_EQ(DataTypeForSourceDataType(engine, row.Code), row.Other);
  }
}

TEST(TypeCodesTest, SybaseDiffersInFourSourceTypes) {
  EXPECT_EQ(DataTypeForSourceDataType(engSybase, dtSourceVariant), dtDecimal);
  EXPECT_EQ(DataTypeForSourceDataType(engSybase, dtRDOBIGINT), dtVariant);
  EXPECT_EQ(DataTypeForSourceDataType(engSybase, dtRDODATE), dtVariant);
  EXPECT_EQ(DataTypeForSourceDataType(engSybase, dtRDOTIME), dtVariant);
}

}  // namespace
}  // namespace velmoria

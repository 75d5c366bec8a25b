#include "velmoria/core/enumerations.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace velmoria {
namespace {

template <class E>
void ExpectValues(const std::vector<std::pair<E, std::int32_t>>& values) {
  for (const auto& [enumerator, value] : values) EXPECT_EQ(static_cast<std::int32_t>(enumerator), value);
}

TEST(EnumerationsTest, ValuesOfzAssociations) {
  ExpectValues<zAssociations>({{raOneToMany, 0}, {raOneToOne, 1}, {raManyToOne, 2}, {raManyToMany, 3}});
}

TEST(EnumerationsTest, ValuesOfzLinkTypes) {
  ExpectValues<zLinkTypes>({{ltPropertyParameter, 0}, {ltIdentifierParameter, 1}, {ltPropertyIdentifier, 2}});
}

TEST(EnumerationsTest, ValuesOfzPropertyFlags) {
  ExpectValues<zPropertyFlags>({{pfNone, 0},
                                {pfRequired, 1},
                                {pfAllowZeroLength, 2},
                                {pfInput, 4},
                                {pfOutput, 8},
                                {pfReturnValue, 16},
                                {pfcounter, 32}});
}

TEST(EnumerationsTest, ValuesOfzPropertyStyles) {
  ExpectValues<zPropertyStyles>({{psNone, 0},
                                 {psIdentifier, 1},
                                 {psParameter, 2},
                                 {psNonPersistent, 3},
                                 {psPersistent, 4},
                                 {psUser, 5},
                                 {psDefinition, 6},
                                 {psLinkProperty, 7},
                                 {psLinkParameter, 8},
                                 {psCached, 9}});
}

TEST(EnumerationsTest, ValuesOfzStateFlags) {
  ExpectValues<zStateFlags>(
      {{sfnonpersistent, 32}, {sfpersistent, 1}, {sfNew, 2}, {sfdeleted, 4}, {sfpendingdelete, 8}, {sfdirty, 16}});
}

TEST(EnumerationsTest, ValuesOfzObjectTypes) {
  ExpectValues<zObjectTypes>({{otDefault, -1}, {otBusiness, 0}, {otModel, 1}});
}

TEST(EnumerationsTest, ValuesOfzUsageFlags) {
  ExpectValues<zUsageFlags>({{ufNone, 0}, {ufObjects, 1}, {ufProperties, 2}, {ufExecute, 4}, {ufAll, -1}});
}

TEST(EnumerationsTest, ValuesOfzEditFlags) {
  ExpectValues<zEditFlags>({{efNone, 0}, {efUpdate, 1}, {efInsert, 2}, {efDelete, 4}, {efAll, -1}});
}

TEST(EnumerationsTest, ValuesOfzCollectionTypes) {
  ExpectValues<zCollectionTypes>({{cltDefault, -1}, {cltDispatcher, 1}, {cltInitialized, 2}, {cltOptimized, 0}});
}

TEST(EnumerationsTest, ValuesOfzEngines) {
  ExpectValues<zEngines>({{engUnknown, 0},
                          {engAccess, 1},
                          {engODBC, 2},
                          {engSQLServer, 3},
                          {engSybase, 4},
                          {engOracle, 5},
                          {engInformix, 6},
                          {engRMS, 7}});
}

TEST(EnumerationsTest, ValuesOfzDataTypes) {
  ExpectValues<zDataTypes>({{dtVariant, 0},
                            {dtString, 1},
                            {dtLongInteger, 2},
                            {dtDate, 3},
                            {dtInteger, 4},
                            {dtBoolean, 5},
                            {dtCurrency, 6},
                            {dtSingle, 7},
                            {dtDouble, 8},
                            {dtDecimal, 9},
                            {dtByte, 10},
                            {dtByteArray, 11}});
}

TEST(EnumerationsTest, ValuesOfzSourceDataTypes) {
  ExpectValues<zSourceDataTypes>(
      {{dtSourceVariant, 0},     {dtRDOChar, 1},         {dtRDONumeric, 2},     {dtRDODECIMAL, 3},
       {dtRDOINTEGER, 4},        {dtRDOSMALLINT, 5},     {dtRDOFLOAT, 6},       {dtRDOREAL, 7},
       {dtRDODouble, 8},         {dtRDODATE, 9},         {dtRDOTIME, 10},       {dtRDOTIMESTAMP, 11},
       {dtRDOVARCHAR, 12},       {dtRDOLONGVARCHAR, -1}, {dtRDOBINARY, -2},     {dtRDOVARBINARY, -3},
       {dtRDOLongVarBinary, -4}, {dtRDOBIGINT, -5},      {dtRDOTINYINT, -6},    {dtRDOBIT, -7},
       {dtDAOBoolean, 1},        {dtDAOByte, 2},         {dtDAOInteger, 3},     {dtDAOLongInteger, 4},
       {dtDAOCurrency, 5},       {dtDAOSingle, 6},       {dtDAODouble, 7},      {dtDAODate, 8},
       {dtDAOBinary, 9},         {dtDAOText, 10},        {dtDAOLongBinary, 11}, {dtDAOMemo, 12},
       {dtDAOGUID, 15},          {dtDAOBigInt, 16},      {dtDAOVarBinary, 17},  {dtDAOChar, 18},
       {dtDAONumeric, 19},       {dtDAODecimal, 20},     {dtDAOFloat, 21},      {dtDAOTime, 22},
       {dtDAOTimeStamp, 23}});
}

TEST(EnumerationsTest, ValuesOfzConnectionTypes) {
  ExpectValues<zConnectionTypes>({{ctNone, 0}, {ctPrompt, 4}, {ctDSN, 1}, {ctFile, 2}, {ctText, 3}});
}

TEST(EnumerationsTest, ValuesOfzCursorDrivers) {
  ExpectValues<zCursorDrivers>(
      {{crdNone, 0}, {crdClientSide, 1}, {crdServerSide, 2}, {crdOptimisticBatch, 3}, {crdTryServerSide, 4}});
}

TEST(EnumerationsTest, ValuesOfzCursorTypes) {
  ExpectValues<zCursorTypes>({{crtNone, 0}, {crtStatic, 3}, {crtKeyset, 1}, {crtDynamic, 2}});
}

TEST(EnumerationsTest, ValuesOfzOptionFlags) {
  ExpectValues<zOptionFlags>({{ofNone, 0},
                              {ofDAODenyRead, 2},
                              {ofDAODenyWrite, 1},
                              {ofDAOSeeChanges, 512},
                              {ofDAOConsistent, 32},
                              {ofDAOInconsistent, 16},
                              {ofRDOAsync, 1},
                              {ofRDOPassthru, 2}});
}

TEST(EnumerationsTest, ValuesOfzSourceTypes) {
  ExpectValues<zSourceTypes>(
      {{stNone, 0}, {stTable, 1}, {stQueryDef, 2}, {stSQL, 3}, {stStoredProcedure, 4}, {stView, 5}});
}

TEST(EnumerationsTest, ValuesOfzSeverityFlags) {
  ExpectValues<zSeverityFlags>({{svfWarning, 1}, {svfInfo, 2}, {svfError, 4}, {svfAll, -1}, {svfNone, 0}});
}

TEST(EnumerationsTest, ValuesOfzTypeFlags) {
  ExpectValues<zTypeFlags>(
      {{tfUnknown, 0}, {tfSystem, 1}, {tfOLE, 2}, {tfVelmoria, 4}, {tfRDO, 8}, {tfDAO, 16}, {tfAll, 31}});
}

TEST(EnumerationsTest, ValuesOfzLogModes) {
  ExpectValues<zLogModes>({{lmOff, 0}, {lmAutomatic, 1}, {lmWindows, 2}, {lmWinNT, 3}});
}

TEST(EnumerationsTest, ValuesOfzErrorControls) {
  ExpectValues<zErrorControls>({{cxErrorNumberFirst, 15000}, {cxErrorNumberLast, 15180}});
}

TEST(EnumerationsTest, FlagsCombineBitByBit) {
  const auto flags = efUpdate | efDelete;
  EXPECT_EQ(static_cast<std::int32_t>(flags), 5);
  EXPECT_EQ(flags & efDelete, efDelete);
  EXPECT_EQ(flags & ~efDelete, efUpdate);
  EXPECT_TRUE(has(flags, efDelete));
  EXPECT_FALSE(has(flags, efInsert));
}

TEST(EnumerationsTest, AllEditsHasEveryEdit) {
  EXPECT_TRUE(has(efAll, efUpdate));
  EXPECT_TRUE(has(efAll, efInsert));
  EXPECT_TRUE(has(efAll, efDelete));
}

TEST(EnumerationsTest, NoFlagsHaveNothing) {
  EXPECT_FALSE(has(efNone, efAll));
  EXPECT_FALSE(has(efAll, efNone));
}

TEST(EnumerationsTest, OnlyFlagsCombine) {
  static_assert(IsFlags<zPropertyFlags> && IsFlags<zStateFlags> && IsFlags<zUsageFlags> && IsFlags<zEditFlags>);
  static_assert(IsFlags<zOptionFlags> && IsFlags<zSeverityFlags> && IsFlags<zTypeFlags>);
  static_assert(!IsFlags<zPropertyStyles> && !IsFlags<zEngines> && !IsFlags<zLogModes> && !IsFlags<zDataTypes>);
}

}  // namespace
}  // namespace velmoria

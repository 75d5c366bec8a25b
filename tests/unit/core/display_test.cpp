#include "velmoria/core/display.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace velmoria {
namespace {

template <class E>
using Texts = std::vector<std::pair<E, std::string>>;

template <class E>
void ExpectTexts(std::string (*display)(E), const Texts<E>& texts) {
  for (const auto& [value, text] : texts) EXPECT_EQ(display(value), text);
}

void ExpectSourceTexts(zEngines engine, const Texts<zSourceDataTypes>& texts) {
  for (const auto& [value, text] : texts) EXPECT_EQ(SourceDataTypeName(value, engine), text);
}

TEST(DisplayTest, TextsOfEngineName) {
  ExpectTexts<zEngines>(EngineName, {{engUnknown, "(Unknown)"},
                                     {engAccess, "Microsoft Access"},
                                     {engODBC, "Generic ODBC"},
                                     {engSQLServer, "Microsoft SQL Server"},
                                     {engSybase, "Sybase SQL Server"},
                                     {engOracle, "Oracle"},
                                     {engInformix, "Informix"},
                                     {engRMS, "VAX/VMS RMS"},
                                     {zEngines{-1}, "(Unknown)"},
                                     {zEngines{8}, "(Unknown)"}});
}

TEST(DisplayTest, TextsOfDataTypeName) {
  ExpectTexts<zDataTypes>(DataTypeName, {{dtVariant, "Variant"},
                                         {dtString, "String"},
                                         {dtLongInteger, "Long Integer"},
                                         {dtDate, "Date"},
                                         {dtInteger, "Integer"},
                                         {dtBoolean, "Boolean"},
                                         {dtCurrency, "Currency"},
                                         {dtSingle, "Single"},
                                         {dtDouble, "Double"},
                                         {dtDecimal, "Decimal"},
                                         {dtByte, "Byte"},
                                         {dtByteArray, "Byte Array"},
                                         {zDataTypes{99}, ""}});
}

TEST(DisplayTest, TextsOfConnectionTypeName) {
  ExpectTexts<zConnectionTypes>(ConnectionTypeName, {{ctNone, "(None)"},
                                                     {ctPrompt, "Prompt User"},
                                                     {ctDSN, "Data Source Name"},
                                                     {ctFile, "File Name"},
                                                     {ctText, "ODBC Connect String"},
                                                     {zConnectionTypes{99}, ""}});
}

TEST(DisplayTest, TextsOfCursorDriverName) {
  ExpectTexts<zCursorDrivers>(CursorDriverName, {{crdNone, "(None)"},
                                                 {crdClientSide, "Client Side (ODBC)"},
                                                 {crdServerSide, "Server Side"},
                                                 {crdOptimisticBatch, "Optimistic Batch"},
                                                 {crdTryServerSide, "Try Server Side"},
                                                 {zCursorDrivers{99}, ""}});
}

TEST(DisplayTest, TextsOfCursorTypeName) {
  ExpectTexts<zCursorTypes>(CursorTypeName, {{crtNone, "(None)"},
                                             {crtStatic, "Static"},
                                             {crtKeyset, "Keyset"},
                                             {crtDynamic, "Dynamic"},
                                             {zCursorTypes{99}, ""}});
}

TEST(DisplayTest, TextsOfSourceTypeName) {
  ExpectTexts<zSourceTypes>(SourceTypeName, {{stNone, "(None)"},
                                             {stTable, "Table"},
                                             {stQueryDef, "QueryDef"},
                                             {stSQL, "SQL Statement"},
                                             {stStoredProcedure, "Stored Procedure"},
                                             {stView, "View"},
                                             {zSourceTypes{99}, ""}});
}

TEST(DisplayTest, TextsOfCollectionTypeName) {
  ExpectTexts<zCollectionTypes>(CollectionTypeName, {{cltDefault, ""},
                                                     {cltDispatcher, "Dispatcher"},
                                                     {cltInitialized, "Initialized"},
                                                     {cltOptimized, "Optimized"},
                                                     {zCollectionTypes{99}, ""}});
}

TEST(DisplayTest, TextsOfObjectTypeName) {
  ExpectTexts<zObjectTypes>(ObjectTypeName, {{otDefault, "(Default)"},
                                             {otBusiness, "Line Of Business"},
                                             {otModel, "Velmoria Model"},
                                             {zObjectTypes{99}, ""}});
}

TEST(DisplayTest, TextsOfAssociationName) {
  ExpectTexts<zAssociations>(AssociationName, {{raOneToMany, "One to Many"},
                                               {raOneToOne, "One to One"},
                                               {raManyToOne, "Many to One"},
                                               {raManyToMany, "Many to Many"},
                                               {zAssociations{99}, ""}});
}

TEST(DisplayTest, SourceDataTypesOfAccessAreDaoTypes) {
  ExpectSourceTexts(engAccess, {{dtSourceVariant, "Variant"},
                                {dtDAOBoolean, "Boolean"},
                                {dtDAOByte, "Byte"},
                                {dtDAOInteger, "Integer"},
                                {dtDAOLongInteger, "Long Integer"},
                                {dtDAOCurrency, "Currency"},
                                {dtDAOSingle, "Single"},
                                {dtDAODouble, "Double"},
                                {dtDAODate, "Date"},
                                {dtDAOBinary, "Binary"},
                                {dtDAOText, "Text"},
                                {dtDAOLongBinary, "Long Binary"},
                                {dtDAOMemo, "Memo"},
                                {dtDAOGUID, "GUID"},
                                {dtDAOBigInt, "Big Integer"},
                                {dtDAOVarBinary, "VarBinary"},
                                {dtDAOChar, "Char"},
                                {dtDAONumeric, "Numeric"},
                                {dtDAODecimal, "Decimal"},
                                {dtDAOFloat, "Float"},
                                {dtDAOTime, "Time"},
                                {dtDAOTimeStamp, "TimeStamp"},
                                {zSourceDataTypes{13}, "Variant"},
                                {zSourceDataTypes{-1}, "Variant"}});
}

TEST(DisplayTest, SourceDataTypesOfEveryOtherEngineAreRdoTypes) {
  for (const auto engine : {engUnknown, engODBC, engSQLServer, engSybase, engOracle, engInformix, engRMS}) {
    ExpectSourceTexts(engine, {{dtSourceVariant, "Variant"},
                               {dtRDOChar, "Char"},
                               {dtRDONumeric, "Numeric"},
                               {dtRDODECIMAL, "Decimal"},
                               {dtRDOINTEGER, "Integer"},
                               {dtRDOSMALLINT, "Small Integer"},
                               {dtRDOFLOAT, "Floating Point"},
                               {dtRDOREAL, "Real"},
                               {dtRDODouble, "Double"},
                               {dtRDODATE, "Date"},
                               {dtRDOTIME, "Time"},
                               {dtRDOTIMESTAMP, "Time Stamp"},
                               {dtRDOVARCHAR, "VarChar"},
                               {dtRDOLONGVARCHAR, "Long VarChar"},
                               {dtRDOBINARY, "Binary"},
                               {dtRDOVARBINARY, "VarBinary"},
                               {dtRDOLongVarBinary, "Long VarBinary"},
                               {dtRDOBIGINT, "Big Integer"},
                               {dtRDOTINYINT, "Tiny Integer"},
                               {dtRDOBIT, "Bit"},
                               {zSourceDataTypes{13}, "Variant"},
                               {zSourceDataTypes{-8}, "Variant"}});
  }
}

TEST(DisplayTest, TextsOfAccessMethodName) {
  ExpectTexts<std::int32_t>(AccessMethodName, {{0, "(None)"}, {1, "RDO 2.0"}, {2, "DAO 3.5"}, {3, "(None)"}});
}

TEST(DisplayTest, WordsOfFlagsDisplay) {
  ExpectTexts<zPropertyFlags>(
      FlagsDisplay, {{pfNone, "(None)"},
                     {pfRequired, "Required"},
                     {pfAllowZeroLength, "Allow Zero Length"},
                     {pfInput, "Input"},
                     {pfOutput, "Output"},
                     {pfReturnValue, "Return"},
                     {pfcounter, "Counter/Identity"},
                     {zPropertyFlags{63}, "Allow Zero Length; Counter/Identity; Input; Output; Required; Return"}});
}

TEST(DisplayTest, WordsOfUsageFlagsDisplay) {
  ExpectTexts<zUsageFlags>(UsageFlagsDisplay, {{ufNone, "(None)"},
                                               {ufObjects, "Business Objects"},
                                               {ufProperties, "Properties"},
                                               {ufExecute, "Execute"},
                                               {ufAll, "Business Objects; Properties; Execute"}});
}

TEST(DisplayTest, WordsOfEditFlagsDisplay) {
  ExpectTexts<zEditFlags>(EditFlagsDisplay, {{efNone, "(None)"},
                                             {efUpdate, "Update"},
                                             {efInsert, "Insert"},
                                             {efDelete, "Delete"},
                                             {efUpdate | efInsert, "Insert; Update"},
                                             {efAll, "Delete; Insert; Update"}});
}

TEST(DisplayTest, WordsOfSeverityFlagsDisplay) {
  ExpectTexts<zSeverityFlags>(SeverityFlagsDisplay, {{svfNone, "(None)"},
                                                     {svfWarning, "Warning"},
                                                     {svfInfo, "Information"},
                                                     {svfError, "Error"},
                                                     {svfAll, "Error; Warning; Information"}});
}

TEST(DisplayTest, WordsOfTypeFlagsDisplay) {
  ExpectTexts<zTypeFlags>(TypeFlagsDisplay, {{tfUnknown, "(Unknown)"},
                                             {tfSystem, "System"},
                                             {tfOLE, "OLE"},
                                             {tfVelmoria, "Velmoria"},
                                             {tfRDO, "RDO"},
                                             {tfDAO, "DAO"},
                                             {tfAll, "DAO; Velmoria; OLE; RDO; System"}});
}

TEST(DisplayTest, WordsOfStateFlagsDisplay) {
  ExpectTexts<zStateFlags>(StateFlagsDisplay, {{sfpersistent, "Persistent"},
                                               {sfNew, "New"},
                                               {sfdeleted, "Deleted"},
                                               {sfpendingdelete, "Pending Delete"},
                                               {sfdirty, "Dirty"},
                                               {zStateFlags{63}, "Deleted; New; Pending Delete; Persistent; Dirty"}});
}

TEST(DisplayTest, FlagsWithoutAWordAreLeftOut) {
  EXPECT_EQ(FlagsDisplay(zPropertyFlags{64}), "");
  EXPECT_EQ(UsageFlagsDisplay(ufObjects | zUsageFlags{64}), "Business Objects");
  EXPECT_EQ(TypeFlagsDisplay(zTypeFlags{32}), "");
}

TEST(DisplayTest, StateOfZeroHasNoWordForNone) { EXPECT_EQ(StateFlagsDisplay(zStateFlags{0}), ""); }

TEST(DisplayTest, NonPersistentNeverShows) {
  EXPECT_EQ(StateFlagsDisplay(sfnonpersistent), "");
  EXPECT_EQ(StateFlagsDisplay(sfnonpersistent | sfNew | sfdirty), "New; Dirty");
}

}  // namespace
}  // namespace velmoria

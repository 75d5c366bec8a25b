#include "velmoria/core/display.h"

#include <cstddef>
#include <string_view>

#include "velmoria/core/access_method_impl.h"

namespace velmoria {

namespace {

template <class E>
struct Word {
  E Value;
  std::string_view Text;
};

constexpr Word<zEngines> kEngines[] = {
    {engAccess, "Microsoft Access"},  {engODBC, "Generic ODBC"}, {engSQLServer, "Microsoft SQL Server"},
    {engSybase, "Sybase SQL Server"}, {engOracle, "Oracle"},     {engInformix, "Informix"},
    {engRMS, "VAX/VMS RMS"},
};

constexpr Word<zDataTypes> kDataTypes[] = {
    {dtVariant, "Variant"},   {dtString, "String"},   {dtLongInteger, "Long Integer"},
    {dtDate, "Date"},         {dtInteger, "Integer"}, {dtBoolean, "Boolean"},
    {dtCurrency, "Currency"}, {dtSingle, "Single"},   {dtDouble, "Double"},
    {dtDecimal, "Decimal"},   {dtByte, "Byte"},       {dtByteArray, "Byte Array"},
};

constexpr Word<zSourceDataTypes> kRdoTypes[] = {
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
};

constexpr Word<zSourceDataTypes> kDaoTypes[] = {
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
};

constexpr Word<zConnectionTypes> kConnectionTypes[] = {
    {ctNone, "(None)"},    {ctPrompt, "Prompt User"},       {ctDSN, "Data Source Name"},
    {ctFile, "File Name"}, {ctText, "ODBC Connect String"},
};

constexpr Word<zCursorDrivers> kCursorDrivers[] = {
    {crdNone, "(None)"},
    {crdClientSide, "Client Side (ODBC)"},
    {crdServerSide, "Server Side"},
    {crdOptimisticBatch, "Optimistic Batch"},
    {crdTryServerSide, "Try Server Side"},
};

constexpr Word<zCursorTypes> kCursorTypes[] = {
    {crtNone, "(None)"}, {crtStatic, "Static"}, {crtKeyset, "Keyset"}, {crtDynamic, "Dynamic"}};

constexpr Word<zSourceTypes> kSourceTypes[] = {
    {stNone, "(None)"},
    {stTable, "Table"},
    {stQueryDef, "QueryDef"},
    {stSQL, "SQL Statement"},
    {stStoredProcedure, "Stored Procedure"},
    {stView, "View"},
};

constexpr Word<zCollectionTypes> kCollectionTypes[] = {
    {cltDispatcher, "Dispatcher"}, {cltInitialized, "Initialized"}, {cltOptimized, "Optimized"}};

constexpr Word<zObjectTypes> kObjectTypes[] = {
    {otDefault, "(Default)"}, {otBusiness, "Line Of Business"}, {otModel, "Velmoria Model"}};

constexpr Word<zAssociations> kAssociations[] = {{raOneToMany, "One to Many"},
                                                 {raOneToOne, "One to One"},
                                                 {raManyToOne, "Many to One"},
                                                 {raManyToMany, "Many to Many"}};

constexpr Word<std::int32_t> kAccessMethods[] = {{kRdo, "RDO 2.0"}, {kDao, "DAO 3.5"}};

// The words of flags stand in the order of display, not of value.
constexpr Word<zPropertyFlags> kPropertyFlags[] = {
    {pfAllowZeroLength, "Allow Zero Length"},
    {pfcounter, "Counter/Identity"},
    {pfInput, "Input"},
    {pfOutput, "Output"},
    {pfRequired, "Required"},
    {pfReturnValue, "Return"},
};

constexpr Word<zUsageFlags> kUsageFlags[] = {
    {ufObjects, "Business Objects"}, {ufProperties, "Properties"}, {ufExecute, "Execute"}};

constexpr Word<zEditFlags> kEditFlags[] = {{efDelete, "Delete"}, {efInsert, "Insert"}, {efUpdate, "Update"}};

constexpr Word<zSeverityFlags> kSeverityFlags[] = {
    {svfError, "Error"}, {svfWarning, "Warning"}, {svfInfo, "Information"}};

constexpr Word<zTypeFlags> kTypeFlags[] = {
    {tfDAO, "DAO"}, {tfVelmoria, "Velmoria"}, {tfOLE, "OLE"}, {tfRDO, "RDO"}, {tfSystem, "System"}};

constexpr Word<zStateFlags> kStateFlags[] = {
    {sfdeleted, "Deleted"},       {sfNew, "New"},     {sfpendingdelete, "Pending Delete"},
    {sfpersistent, "Persistent"}, {sfdirty, "Dirty"},
};

template <class E, std::size_t Count>
std::string TextOf(const Word<E> (&table)[Count], E value, std::string_view otherwise = {}) {
  for (const auto& word : table) {
    if (word.Value == value) return std::string(word.Text);
  }
  return std::string(otherwise);
}

template <class E, std::size_t Count>
std::string Joined(const Word<E> (&table)[Count], E flags, std::string_view none) {
  if (flags == E{}) return std::string(none);
  std::string text;
  for (const auto& word : table) {
    if (!has(flags, word.Value)) continue;
    if (!text.empty()) text += "; ";
    text += word.Text;
  }
  return text;
}

}  // namespace

std::string EngineName(zEngines engine) { return TextOf(kEngines, engine, "(Unknown)"); }

std::string DataTypeName(zDataTypes dataType) { return TextOf(kDataTypes, dataType); }

std::string SourceDataTypeName(zSourceDataTypes sourceDataType, zEngines engine) {
  if (engine == engAccess) return TextOf(kDaoTypes, sourceDataType, "Variant");
  return TextOf(kRdoTypes, sourceDataType, "Variant");
}

std::string ConnectionTypeName(zConnectionTypes connectionType) { return TextOf(kConnectionTypes, connectionType); }

std::string CursorDriverName(zCursorDrivers cursorDriver) { return TextOf(kCursorDrivers, cursorDriver); }

std::string CursorTypeName(zCursorTypes cursorType) { return TextOf(kCursorTypes, cursorType); }

std::string SourceTypeName(zSourceTypes sourceType) { return TextOf(kSourceTypes, sourceType); }

std::string CollectionTypeName(zCollectionTypes collectionType) { return TextOf(kCollectionTypes, collectionType); }

std::string ObjectTypeName(zObjectTypes objectType) { return TextOf(kObjectTypes, objectType); }

std::string AssociationName(zAssociations association) { return TextOf(kAssociations, association); }

std::string AccessMethodName(std::int32_t accessMethod) { return TextOf(kAccessMethods, accessMethod, "(None)"); }

std::string FlagsDisplay(zPropertyFlags flags) { return Joined(kPropertyFlags, flags, "(None)"); }

std::string UsageFlagsDisplay(zUsageFlags flags) { return Joined(kUsageFlags, flags, "(None)"); }

std::string EditFlagsDisplay(zEditFlags flags) { return Joined(kEditFlags, flags, "(None)"); }

std::string SeverityFlagsDisplay(zSeverityFlags flags) { return Joined(kSeverityFlags, flags, "(None)"); }

std::string TypeFlagsDisplay(zTypeFlags flags) { return Joined(kTypeFlags, flags, "(Unknown)"); }

std::string StateFlagsDisplay(zStateFlags flags) { return Joined(kStateFlags, flags, ""); }

}  // namespace velmoria

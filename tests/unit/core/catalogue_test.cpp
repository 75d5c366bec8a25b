#include "velmoria/core/catalogue.h"

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace velmoria {
namespace {

struct GoldenRow {
  std::string Enumerator;
  std::string Text;
};

// The second list: number, enumerator and text of every row.
std::map<std::int32_t, GoldenRow> ReadGolden() {
  std::map<std::int32_t, GoldenRow> rows;
  std::ifstream file(VELMORIA_TESTS_DIR "/golden/catalogue.txt");
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::int32_t number = 0;
    GoldenRow row;
    words >> number >> row.Enumerator;
    words.get();
    std::getline(words, row.Text);
    rows.emplace(number, row);
  }
  return rows;
}

const std::vector<std::pair<zErrors, std::string>> kEnumerators = {
    {errVelmoria_Unknown, "errVelmoria_Unknown"},
    {errVelmoria_Locked, "errVelmoria_Locked"},
    {errAdd_Action, "errAdd_Action"},
    {errAdd_Attribute, "errAdd_Attribute"},
    {errAdd_BusinessObjects, "errAdd_BusinessObjects"},
    {errAdd_BusinessObject, "errAdd_BusinessObject"},
    {errAdd_Class, "errAdd_Class"},
    {errAdd_Connection, "errAdd_Connection"},
    {errAdd_Connections, "errAdd_Connections"},
    {errAdd_Connector, "errAdd_Connector"},
    {errAdd_Database, "errAdd_Database"},
    {errAdd_Link, "errAdd_Link"},
    {errAdd_Properties, "errAdd_Properties"},
    {errAdd_Property, "errAdd_Property"},
    {errAdd_Relationship, "errAdd_Relationship"},
    {errAdd_Server, "errAdd_Server"},
    {errAdd_Source, "errAdd_Source"},
    {errAdd_Statistic, "errAdd_Statistic"},
    {errAttribute_Value, "errAttribute_Value"},
    {errAttribute_DataType, "errAttribute_DataType"},
    {errAttribute_Modify, "errAttribute_Modify"},
    {errBLOB_Read, "errBLOB_Read"},
    {errBusinessObject_Create, "errBusinessObject_Create"},
    {errBusinessObject_Initialize, "errBusinessObject_Initialize"},
    {errBusinessObject_Get, "errBusinessObject_Get"},
    {errBusinessObjects_Load, "errBusinessObjects_Load"},
    {errBusinessObjects_Buffer, "errBusinessObjects_Buffer"},
    {errDAO_Table, "errDAO_Table"},
    {errDAO_QueryDef, "errDAO_QueryDef"},
    {errDAO_SQL, "errDAO_SQL"},
    {errDAO_Workspace, "errDAO_Workspace"},
    {errDAO_Database, "errDAO_Database"},
    {errDAO_Row, "errDAO_Row"},
    {errDAO_Field, "errDAO_Field"},
    {errDAO_Modifiable, "errDAO_Modifiable"},
    {errDAO_Index, "errDAO_Index"},
    {errDAO_Info, "errDAO_Info"},
    {errDAO_Recordset, "errDAO_Recordset"},
    {errDAO_Parameter, "errDAO_Parameter"},
    {errFile_Read, "errFile_Read"},
    {errFile_Write, "errFile_Write"},
    {errFile_ReadDatabase, "errFile_ReadDatabase"},
    {errFile_ReadServer, "errFile_ReadServer"},
    {errFile_WriteDatabase, "errFile_WriteDatabase"},
    {errFile_WriteServer, "errFile_WriteServer"},
    {errFile_Database, "errFile_Database"},
    {errFile_Server, "errFile_Server"},
    {errFile_LockDatabase, "errFile_LockDatabase"},
    {errFile_LockServer, "errFile_LockServer"},
    {errFile_VersionServer, "errFile_VersionServer"},
    {errFile_VersionDatabase, "errFile_VersionDatabase"},
    {errIdentifier_Property, "errIdentifier_Property"},
    {errInvalid_SourceType, "errInvalid_SourceType"},
    {errInvalid_Engine, "errInvalid_Engine"},
    {ErrInvalid_ConnectionType, "ErrInvalid_ConnectionType"},
    {errInvalid_Operator, "errInvalid_Operator"},
    {errLink_Navigate, "errLink_Navigate"},
    {errProperty_Value, "errProperty_Value"},
    {errProperty_DataType, "errProperty_DataType"},
    {errProperty_Modify, "errProperty_Modify"},
    {errItem_Action, "errItem_Action"},
    {errItem_Attribute, "errItem_Attribute"},
    {errItem_BusinessObjects, "errItem_BusinessObjects"},
    {errItem_BusinessObject, "errItem_BusinessObject"},
    {errItem_Class, "errItem_Class"},
    {errItem_Connections, "errItem_Connections"},
    {errItem_Connection, "errItem_Connection"},
    {errItem_Connector, "errItem_Connector"},
    {errItem_Database, "errItem_Database"},
    {errItem_Link, "errItem_Link"},
    {errItem_Properties, "errItem_Properties"},
    {errItem_Property, "errItem_Property"},
    {errItem_Relationship, "errItem_Relationship"},
    {errItem_Server, "errItem_Server"},
    {errItem_Source, "errItem_Source"},
    {errItem_Statistic, "errItem_Statistic"},
    {errMismatch_Count, "errMismatch_Count"},
    {errMismatch_Parameters, "errMismatch_Parameters"},
    {errMissing_ConnectionInfo, "errMissing_ConnectionInfo"},
    {errMissing_DatabaseInfo, "errMissing_DatabaseInfo"},
    {errMissing_ServerInfo, "errMissing_ServerInfo"},
    {errNotSupported_Add, "errNotSupported_Add"},
    {errNotSupported_Remove, "errNotSupported_Remove"},
    {errNotSupported_AutoConnect, "errNotSupported_AutoConnect"},
    {errNotSupported_Rename, "errNotSupported_Rename"},
    {errNotSupported_EngineChange, "errNotSupported_EngineChange"},
    {errNotSupported_Execute, "errNotSupported_Execute"},
    {errNotSupported_BusinessObjects, "errNotSupported_BusinessObjects"},
    {errNotSupported_Properties, "errNotSupported_Properties"},
    {errNotSupported_Insert, "errNotSupported_Insert"},
    {errNotSupported_Delete, "errNotSupported_Delete"},
    {errNotSupported_Update, "errNotSupported_Update"},
    {errNotSupported_RelatedBusinessObjects, "errNotSupported_RelatedBusinessObjects"},
    {errNotSupported_SetupBusinessObject, "errNotSupported_SetupBusinessObject"},
    {errNotSupported_Key, "errNotSupported_Key"},
    {errNotSupported_Operator, "errNotSupported_Operator"},
    {errNotSupported_Engine, "errNotSupported_Engine"},
    {errNotSupported_CollectionType, "errNotSupported_CollectionType"},
    {errNotSupported_Cursor, "errNotSupported_Cursor"},
    {errParent_Action, "errParent_Action"},
    {errParent_Class, "errParent_Class"},
    {errParent_Connector, "errParent_Connector"},
    {errParent_Database, "errParent_Database"},
    {errParent_KeyFormat, "errParent_KeyFormat"},
    {errParent_Link, "errParent_Link"},
    {errParent_Property, "errParent_Property"},
    {errParent_Relationship, "errParent_Relationship"},
    {errParent_Server, "errParent_Server"},
    {errParent_Source, "errParent_Source"},
    {errPersistence_Insert, "errPersistence_Insert"},
    {errPersistence_Update, "errPersistence_Update"},
    {errPersistence_Row, "errPersistence_Row"},
    {errPersistence_Deleted, "errPersistence_Deleted"},
    {errPersistence_Delete, "errPersistence_Delete"},
    {errPersistence_Get, "errPersistence_Get"},
    {errProperties_Update, "errProperties_Update"},
    {errProperties_Delete, "errProperties_Delete"},
    {errProperties_Load, "errProperties_Load"},
    {errProperties_Required, "errProperties_Required"},
    {errRDO_Table, "errRDO_Table"},
    {errRDO_View, "errRDO_View"},
    {errRDO_StoredProcedure, "errRDO_StoredProcedure"},
    {errRDO_SQL, "errRDO_SQL"},
    {errRDO_Environment, "errRDO_Environment"},
    {errRDO_Connection, "errRDO_Connection"},
    {errRDO_Row, "errRDO_Row"},
    {errRDO_Column, "errRDO_Column"},
    {errRDO_Modifiable, "errRDO_Modifiable"},
    {errRDO_Info, "errRDO_Info"},
    {errRDO_Resultset, "errRDO_Resultset"},
    {errRemove_Action, "errRemove_Action"},
    {errRemove_Attribute, "errRemove_Attribute"},
    {errRemove_BusinessObjects, "errRemove_BusinessObjects"},
    {errRemove_BusinessObject, "errRemove_BusinessObject"},
    {errRemove_Class, "errRemove_Class"},
    {errRemove_Connections, "errRemove_Connections"},
    {errRemove_Connector, "errRemove_Connector"},
    {errRemove_Database, "errRemove_Database"},
    {errRemove_Link, "errRemove_Link"},
    {errRemove_Properties, "errRemove_Properties"},
    {errRemove_Property, "errRemove_Property"},
    {errRemove_Relationship, "errRemove_Relationship"},
    {errRemove_Server, "errRemove_Server"},
    {errRemove_Source, "errRemove_Source"},
    {errRemove_Statistic, "errRemove_Statistic"},
    {errRename_Action, "errRename_Action"},
    {errRename_Attribute, "errRename_Attribute"},
    {errRename_Class, "errRename_Class"},
    {errRename_Connector, "errRename_Connector"},
    {errRename_Database, "errRename_Database"},
    {errRename_Link, "errRename_Link"},
    {errRename_Property, "errRename_Property"},
    {errRename_Relationship, "errRename_Relationship"},
    {errRename_Server, "errRename_Server"},
    {errRename_Source, "errRename_Source"},
    {errRequires_Class, "errRequires_Class"},
    {errRequires_Action, "errRequires_Action"},
    {errRequires_Server, "errRequires_Server"},
    {errRequires_Identifier, "errRequires_Identifier"},
    {errValue_Size, "errValue_Size"},
    {errValue_Required, "errValue_Required"},
    {errValue_ZeroLength, "errValue_ZeroLength"},
    {errValue_BLOB, "errValue_BLOB"},
    {errPropertyContext_Transient, "errPropertyContext_Transient"},
    {errBusinessCollection_Create, "errBusinessCollection_Create"},
    {errBusinessCollection_Setup, "errBusinessCollection_Setup"},
    {errProperty_DisplayValue, "errProperty_DisplayValue"},
    {errSQL, "errSQL"},
    {errStoredProcedure, "errStoredProcedure"},
    {errQueryDef, "errQueryDef"},
    {errTableView, "errTableView"},
    {errNotSupported_Servers, "errNotSupported_Servers"},
    {errNotSupported_Databases, "errNotSupported_Databases"},
    {errKeyFormat_EmptyKey, "errKeyFormat_EmptyKey"},
    {errProperties_Transient, "errProperties_Transient"},
    {errRDO_Identity_Insert, "errRDO_Identity_Insert"},
    {errRDO_PassThru_Output_Parameters, "errRDO_PassThru_Output_Parameters"},
};

TEST(CatalogueTest, EveryListedRowReadsExactly) {
  const auto golden = ReadGolden();
  ASSERT_EQ(golden.size(), 177U);
  for (const auto& [number, row] : golden) EXPECT_STREQ(CatalogueText(number), row.Text.c_str()) << number;
}

TEST(CatalogueTest, EveryTextIsListed) {
  const auto golden = ReadGolden();
  for (std::int32_t number = 14900; number <= 15300; ++number) {
    const char* text = CatalogueText(number);
    EXPECT_EQ(text != nullptr, golden.contains(number)) << number;
  }
}

TEST(CatalogueTest, EveryEnumeratorHasItsListedNumber) {
  const auto golden = ReadGolden();
  ASSERT_EQ(kEnumerators.size(), golden.size());
  for (const auto& [enumerator, name] : kEnumerators) {
    const auto row = golden.find(static_cast<std::int32_t>(enumerator));
    ASSERT_NE(row, golden.end()) << name;
    EXPECT_EQ(row->second.Enumerator, name);
  }
}

TEST(CatalogueTest, FourNumbersInTheBoundsHaveNoRow) {
  for (const std::int32_t number : {15001, 15139, 15165, 15178}) {
    EXPECT_EQ(CatalogueText(number), nullptr) << number;
    EXPECT_TRUE(IsCatalogueNumber(number)) << number;
  }
}

TEST(CatalogueTest, BoundsAre15000And15180) {
  EXPECT_FALSE(IsCatalogueNumber(14999));
  EXPECT_TRUE(IsCatalogueNumber(15000));
  EXPECT_TRUE(IsCatalogueNumber(15180));
  EXPECT_FALSE(IsCatalogueNumber(15181));
}

}  // namespace
}  // namespace velmoria

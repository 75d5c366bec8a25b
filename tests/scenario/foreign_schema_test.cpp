#include "tests/scenario/foreign_schema.h"

#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

class ForeignReadTest : public ForeignSchemaTest {};

struct KeyedRow {
  const char* Class;
  Variant Key1, Key2, Key3 = Variant::Missing(), Key4 = Variant::Missing();
  const char* Property;
  Variant Value;
  const char* Key;  // with "/" between the parts
};

TEST_F(ForeignReadTest, KeyOfTwoToFourColumnsFindsItsOneObject) {
  const KeyedRow rows[] = {
      {.Class = "Staff", .Key1 = "FR", .Key2 = 1, .Property = "Full Name", .Value = "Cyd O'Rue", .Key = "FR/1"},
      {.Class = "Order", .Key1 = "S", .Key2 = 1, .Property = "Group", .Value = "B", .Key = "S/1"},
      {.Class = "Time Sheet",
       .Key1 = "DE",
       .Key2 = 2,
       .Key3 = Date::From(2026, 1, 4),
       .Property = "Hours",
       .Value = 38.5,
       .Key = "DE/2/2026-01-04"},
      {.Class = "Order Crew",
       .Key1 = "DE",
       .Key2 = 2,
       .Key3 = "N",
       .Key4 = 1,
       .Property = "Hours",
       .Value = 7.5,
       .Key = "DE/2/N/1"},
  };
  const KeyFormatPtr format = Framework{}.CreateKeyFormat({.Separator = "/"});
  for (const auto& row : rows) {
    const auto found = Framework{}.GetBusinessObject({.ClassName = row.Class,
                                                      .KeyValue1 = row.Key1,
                                                      .KeyValue2 = row.Key2,
                                                      .KeyValue3 = row.Key3,
                                                      .KeyValue4 = row.Key4});
    EXPECT_EQ(Value(found, row.Property), row.Value) << row.Class;
    EXPECT_EQ(found->Key(format), row.Key);
  }
}

TEST_F(ForeignReadTest, PartOfAKeyThatIsNotGivenIsSoughtAsNothingOfItsType) {
  ExpectRaised(errBusinessObject_Get, [] { Framework{}.GetBusinessObject({.ClassName = "Staff", .KeyValue1 = "DE"}); });
  schema_.Works.Run("insert into STAFF (Land, badge, Nick) values ('DE', 0, 'Zed')");
  EXPECT_EQ(Value(Framework{}.GetBusinessObject({.ClassName = "Staff", .KeyValue1 = "DE"}), "Nick"), Variant("Zed"));
}

TEST_F(ForeignReadTest, MembersOfACollectionAreFoundByKeyAndByIdentity) {
  const auto crew = Framework{}.GetBusinessObjects(
      {.ClassName = "Order Crew", .KeyFormat = Framework{}.CreateKeyFormat({.Separator = "/"})});
  ASSERT_EQ(crew->Count(), 4);
  const auto found = crew->Item("DE/2/S/1");
  EXPECT_EQ(Value(found, "Part"), Variant("help"));
  EXPECT_EQ(crew->Item("de/2/s/1"), found);
  EXPECT_EQ(crew->Item(found->Identifier()), found);
  ExpectRaised(errItem_BusinessObject, [&] { crew->Item("DE/2/S/2"); }, {.Text = "'DE/2/S/2'"});
}

TEST_F(ForeignReadTest, KeysWithoutASeparatorRunTogetherAndTheFirstRowAnswers) {
  schema_.Works.Run("insert into \"Order\" (region, No, Title) values ('N1', 1, 'Late'), ('N', 11, 'Early')");
  const auto orders = All("Order");
  EXPECT_EQ(Value(orders->Item("N11"), "Title"), Value(orders->Item(4), "Title"));
  EXPECT_EQ(orders->Item(4)->Key(), orders->Item(5)->Key());
}

TEST_F(ForeignReadTest, NamesWithBlanksReservedWordsAndAnyCaseAreReadByTheirNames) {
  EXPECT_EQ(Value(Staff("DE", 1), "full NAME"), Variant("Ada Lang"));
  EXPECT_EQ(Value(Order("N", 1), "GROUP"), Variant("A"));
  EXPECT_EQ(Values(All("Region"), "capital city"), "Norville;Null;");
}

TEST_F(ForeignReadTest, NullsOfEveryColumnAreNull) {
  EXPECT_EQ(Values(All("Staff"), "Nick"), "Ada;Null;Cyd;Dot;Eve;Fay;");
  EXPECT_EQ(Values(All("Staff"), "BossBadge"), "Null;1;1;1;3;Null;");
  EXPECT_EQ(Values(All("Time Sheet"), "Hours"), "40;Null;38.5;");
  const auto odd = Framework{}.GetBusinessObject({.ClassName = "Odd", .KeyValue1 = 2});
  for (const auto& property : *odd->Properties(1)) {
    if (property->Name() == "Id") continue;
    const bool isLong = property->DataType() == dtByteArray;
    EXPECT_TRUE(isLong ? property->Value().IsEmpty() : property->Value().IsNull()) << property->Name();
  }
}

TEST_F(ForeignReadTest, ViewIsReadByAKeyThatItsTablesShare) {
  EXPECT_EQ(Values(All("Crew List"), "Who"), "Ada Lang;Ben Oh;Ben Oh;Cyd O'Rue;");
  const auto one = Framework{}.GetBusinessObject(
      {.ClassName = "Crew List", .KeyValue1 = "DE", .KeyValue2 = 2, .KeyValue3 = "S", .KeyValue4 = 1});
  EXPECT_EQ(Value(one, "Part"), Variant("help"));
}

struct OddColumn {
  const char* Name;
  zDataTypes Type;
  const char* Text;
  const char* Stored;
};

const OddColumn kOddColumns[] = {
    {"Flag", dtBoolean, "True", "1"},
    {"Tiny", dtByte, "200", "200"},
    {"Small", dtInteger, "-5", "-5"},
    {"Big", dtDecimal, "9007199254740993", "9007199254740993"},
    {"Price", dtDouble, "1234.5678", "1234.5678"},
    {"Share", dtDouble, "1.5", "1.5"},
    {"Day", dtDate, "2026-11-22", "'2026-11-22'"},
    {"Hour", dtDate, "13:14:15", "'13:14:15'"},
    {"Moment", dtDate, "2026-11-22 13:14:15", "'2026-11-22 13:14:15'"},
    {"Code", dtString, "ab", "'ab'"},
    {"Untyped", dtString, "any", "'any'"},
    {"Shape", dtString, "POINT(1 2)", "'POINT(1 2)'"},
    {"Cash", dtString, "12.5", "12.5"},
};

TEST_F(ForeignReadTest, ColumnsOfOddTypesHaveTheTypeThatTheDriverTells) {
  const auto odd = Framework{}.GetBusinessObject({.ClassName = "Odd", .KeyValue1 = 1});
  for (const auto& column : kOddColumns) {
    EXPECT_EQ(odd->FindProperty(column.Name)->DataType(), column.Type) << column.Name;
    EXPECT_EQ(Value(odd, column.Name).AsText(), column.Text) << column.Name;
  }
}

TEST_F(ForeignReadTest, ColumnsOfOddTypesKeepWhatTheyStoreWhenTheyAreEmptiedAndSetAgain) {
  const auto odd = Framework{}.GetBusinessObject({.ClassName = "Odd", .KeyValue1 = 1});
  for (const auto& column : kOddColumns) {
    const auto stored = std::string("select quote(") + column.Name + ") from \"Odd Types\" where Id = 1";
    const Variant former = Value(odd, column.Name);
    odd->FindProperty(column.Name)->SetValue(Variant::Null());
    odd->Update();
    EXPECT_EQ(Works(stored), "NULL") << column.Name;
    odd->FindProperty(column.Name)->SetValue(former);
    odd->Update();
    EXPECT_EQ(Works(stored), column.Stored) << column.Name;
  }
}

TEST_F(ForeignReadTest, LongColumnsAreReadAsTheirBytesAndAreNotTouchedByOtherWrites) {
  const auto odd = Framework{}.GetBusinessObject({.ClassName = "Odd", .KeyValue1 = 1});
  const Variant words = Value(odd, "Words");
  const Variant data = Value(odd, "Data");
  ASSERT_TRUE(words.IsByteArray() && data.IsByteArray());
  EXPECT_EQ(std::string(words.Bytes().begin(), words.Bytes().end()), "two of them");
  EXPECT_EQ(std::vector<int>(data.Bytes().begin(), data.Bytes().end()), (std::vector{0x00, 0xFF, 0x27}));
  odd->FindProperty("Code")->SetValue("cd");
  odd->Update();
  EXPECT_EQ(Works("select Code || ': ' || Words || ' ' || hex(Data) from \"Odd Types\" where Id = 1"),
            "cd: two of them 00FF27");
}

TEST_F(ForeignReadTest, OtherPropertiesOfTheRowAreLoadedByTheNameOfAnActionWithABlank) {
  const auto one = Staff("DE", 1);
  const PropertiesPtr second = one->Properties("by badge");
  EXPECT_EQ(second->Name(), "By Badge");
  EXPECT_EQ(one->PropertiesCount(), 2);
  second->Item("Nick")->SetValue("Adele");
  EXPECT_EQ(Value(one, "Nick"), Variant("Ada")) << "each collection has values of its own, and the first answers";
  one->Update();
  EXPECT_EQ(Works("select Nick from STAFF where Land = 'DE'"), "Adele|NULL");
}

TEST_F(ForeignReadTest, StatementThatGivesTwoColumnsOfOneNameIsRefused) {
  ForeignSchema::AddAction(schema_.Class("Staff"), "Joined",
                           "select * from STAFF s join \"Order Crew\" c on c.Land = s.Land", {}, stSQL);
  const auto error = Thrown([] { Framework{}.GetBusinessObjects({.ClassName = "Staff", .ActionName = "Joined"}); });
  ASSERT_TRUE(error);
  EXPECT_NE(error->Description().find("This key is already in use in this collection"), std::string::npos);
  const MessagePtr told = apartment_.Messages().Item("15123");
  ASSERT_NE(told, nullptr);
  EXPECT_EQ(told->ExtraText(), "Processing RDO Column, Land");
}

}  // namespace
}  // namespace velmoria::test

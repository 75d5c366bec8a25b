// What the columns of a real driver become as definitions, under every engine that reads by it.

#include "tests/contract/brokering_contract.h"

namespace velmoria::test {
namespace {

struct TypeOfColumn {
  int Source;
  zDataTypes Type;
  zDataTypes UnderSybase;
};

constexpr TypeOfColumn kTypes[] = {
    {-7, dtBoolean, dtBoolean},        {-6, dtByte, dtByte},
    {-5, dtDecimal, dtVariant},        {-4, dtByteArray, dtByteArray},
    {-3, dtByteArray, dtByteArray},    {-2, dtByteArray, dtByteArray},
    {-1, dtByteArray, dtByteArray},    {1, dtString, dtString},
    {2, dtDecimal, dtDecimal},         {3, dtDecimal, dtDecimal},
    {4, dtLongInteger, dtLongInteger}, {5, dtInteger, dtInteger},
    {6, dtDouble, dtDouble},           {7, dtSingle, dtSingle},
    {8, dtDouble, dtDouble},           {9, dtDate, dtVariant},
    {10, dtDate, dtVariant},           {11, dtDate, dtDate},
    {12, dtString, dtString},
};

zDataTypes Expected(int source, zEngines engine) {
  for (const auto& row : kTypes)
    if (row.Source == source) return engine == engSybase ? row.UnderSybase : row.Type;
  return dtVariant;
}

constexpr zEngines kEngines[] = {engODBC, engSQLServer, engSybase, engOracle};

class TypesContract : public BrokeringContract {
 protected:
  /// The first row of kinds, read under an engine by an Action of its own.
  IBusinessObjectPtr KindUnder(zEngines engine) {
    const auto name = "Under " + EngineName(engine);
    AddDatabase(name, engine, ConnectText());
    AddAction("Kind", {.Name = name, .Text = "{t}kinds", .DatabaseName = name});
    return Framework{}.GetBusinessObject({.ClassName = "Kind", .KeyValue1 = 1, .ActionName = name});
  }
  static std::string EngineName(zEngines engine) { return std::to_string(static_cast<int>(engine)); }
};

TEST_P(TypesContract, ColumnHasTheTypeThatItsEngineGivesIt) {
  MakeKinds();
  FillKinds();
  AddClass("Kind", "kinds");
  for (const auto engine : kEngines) {
    SCOPED_TRACE(EngineName(engine));
    std::size_t place = 0;
    const auto kind = KindUnder(engine);
    ASSERT_EQ(kind->PropertyCount(), static_cast<std::int32_t>(Driver().KindTypes.size()));
    for (const auto& property : *kind->Properties(1)) {
      const int source = Driver().KindTypes[place++];
      EXPECT_EQ(static_cast<int>(property->SourceDataType()), source) << property->Name();
      EXPECT_EQ(property->DataType(), Expected(source, engine)) << property->Name();
      EXPECT_EQ(property->Engine(), engine);
    }
  }
}

TEST_P(TypesContract, ValueIsTheSameUnderEveryEngine) {
  MakeKinds();
  FillKinds();
  AddClass("Kind", "kinds");
  const auto first = KindUnder(engODBC);
  for (const auto engine : {engSQLServer, engSybase, engOracle}) {
    const auto other = KindUnder(engine);
    for (const auto& property : *first->Properties(1))
      EXPECT_EQ(Value(other, property->Name().c_str()), property->Value()) << property->Name();
  }
}

TEST_P(TypesContract, DefinitionTellsWhereTheColumnIsKeptAndWhatItAsksFor) {
  MakeKinds();
  FillKinds();
  AddClass("Kind", "kinds");
  const auto kind = KindUnder(Profile().Engine);
  const auto name = kind->FindProperty("v");
  EXPECT_EQ(name->SourceKey(), Filled("{t}kinds") + ".v");
  EXPECT_EQ(name->SourceName(), "v");
  EXPECT_EQ(name->Size(), 12);
  EXPECT_EQ(name->Flags(), pfRequired | pfAllowZeroLength);
  EXPECT_EQ(name->Attributes()->Item("OrdinalPosition")->Value().AsInteger(), 7);
  EXPECT_EQ(name->Attributes()->Count(), 3);
  EXPECT_TRUE(kind->FindProperty("id")->Counter());
  EXPECT_FALSE(has(kind->FindProperty("id")->Flags(), pfRequired));
  EXPECT_TRUE(kind->FindProperty("l")->Attributes()->Item("ChunkRequired")->Value().AsBoolean());
}

TEST_P(TypesContract, ParameterIsTypedByItsSourceTypeThenByItsDataTypeThenByItsValue) {
  AddOrders(3);
  auto typed = Parameter("a", dtString);
  typed.SourceDataType = dtRDODECIMAL;
  AddAction("Order",
            {.Name = "Typed", .Text = "SELECT id FROM {t}orders WHERE id > ? AND id < ? AND id <> ?", .Type = stSQL},
            {typed, Parameter("b", dtLongInteger), Parameter("c", dtVariant)});
  const auto parameters = ActionOf("Order", "Typed")->CreateParameters();
  parameters->Item("a")->SetValue("1");
  parameters->Item("b")->SetValue(3);
  parameters->Item("c")->SetValue(std::int16_t{1});
  const auto orders =
      Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "Typed", .Parameters = parameters});
  EXPECT_EQ(orders->Count(), 1);
  const auto logged = Messages().Item("15129");
  ASSERT_TRUE(logged);
  for (const std::string line : {"'Param1'  Type: 3  ", "'Param2'  Type: 4  ", "'Param3'  Type: 5  "})
    EXPECT_NE(logged->ExtraText().find(line), std::string::npos) << logged->ExtraText();
}

INSTANTIATE_TEST_SUITE_P(, TypesContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test

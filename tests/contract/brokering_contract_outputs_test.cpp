// What a procedure gives back while its rows become objects, and bytes in the parameters of a request.

#include "tests/contract/brokering_contract.h"
#include "tests/support/await_opened.h"

namespace velmoria::test {
namespace {

class OutputsContract : public BrokeringContract {
 protected:
  void SetUp() override {
    if (!Driver().WhyNoProcedures.empty()) GTEST_SKIP() << Driver().WhyNoProcedures;
    BrokeringContract::SetUp();
    AddOrders(20);
  }
  /// "{own}_add" with a in, b in and out, c out.
  void AddAdd() {
    RunAll(Driver().MakeAdd);
    AddAction("Order", {.Name = "Add", .Text = "{own}_add", .Type = stStoredProcedure},
              {Parameter("a", dtLongInteger), Parameter("b", dtLongInteger, pfInput | pfOutput),
               Parameter("c", dtString, pfOutput)});
  }
  /// Makes "{own}_add", which gives its a back twice.
  std::string Twice() const {
    if (Driver().Name == "PostgreSQL")
      return "CREATE FUNCTION public.{own}_add(INOUT a bytea) AS 'SELECT a || a' LANGUAGE sql";
    if (Driver().Name == "MariaDB") return "CREATE PROCEDURE {own}_add(INOUT a varbinary(100)) SET a = CONCAT(a, a)";
    return "CREATE PROCEDURE {own}_add @a varbinary(100) OUTPUT AS SET @a = @a + @a";
  }
  static PropertiesPtr Given(const std::string& action, const Variant& a) {
    auto parameters = ActionOf("Order", action)->CreateParameters();
    parameters->Item("a")->SetValue(a);
    return parameters;
  }
  static IBusinessObjectsPtr Read(const std::string& action, const PropertiesPtr& parameters) {
    return Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = action, .Parameters = parameters});
  }
};

TEST_P(OutputsContract, OutputsOfAProcedureThatGivesNoRowsArriveWhenItIsRead) {
  AddAdd();
  const auto parameters = Given("Add", 2);
  parameters->Item("b")->SetValue(40);
  AgentOf("Order", "Add", parameters)->GetRecordset(0, nullptr, false);
  EXPECT_EQ(parameters->Item("b")->Value(), Variant(42));
  EXPECT_EQ(parameters->Item("c")->Value(), Variant("sum 42"));
}

TEST_P(OutputsContract, NullOutputsAreNull) {
  AddAdd();
  const auto parameters = Given("Add", 2);
  parameters->Item("b")->SetValue(Variant::Null());
  Framework{}.CreateBusinessContext()->Execute({.ClassName = "Order", .ActionName = "Add", .Parameters = parameters});
  EXPECT_TRUE(parameters->Item("b")->Value().IsNull());
  EXPECT_TRUE(parameters->Item("c")->Value().IsNull());
}

TEST_P(OutputsContract, BytesArriveInTheParametersOfTheRequest) {
  Run(Twice());
  AddAction("Order", {.Name = "Twice", .Text = "{own}_add", .Type = stStoredProcedure},
            {Parameter("a", dtByteArray, pfInput | pfOutput)});
  const auto parameters = Given("Twice", std::vector<Byte>{0, 39, 255});
  Framework{}.CreateBusinessContext()->Execute({.ClassName = "Order", .ActionName = "Twice", .Parameters = parameters});
  EXPECT_EQ(parameters->Item("a")->Value(), Variant(std::vector<Byte>{0, 39, 255, 0, 39, 255}));
}

INSTANTIATE_TEST_SUITE_P(, OutputsContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

/// The same behind the rows of the procedure.
class OutputsBehindRowsContract : public OutputsContract {
 protected:
  void SetUp() override {
    if (!Profile().WhyNoRowsAndOutput.empty()) GTEST_SKIP() << Profile().WhyNoRowsAndOutput;
    OutputsContract::SetUp();
  }
  /// "{own}_both" with its rows and its output b.
  void AddBoth(std::int32_t objectBuffer = 0) {
    RunAll(Profile().MakeRowsAndOutput);
    AddAction("Order", {.Name = "Both", .Text = "{own}_both", .Type = stStoredProcedure, .ObjectBuffer = objectBuffer},
              {Parameter("a", dtLongInteger), Parameter("b", dtLongInteger, pfOutput)});
  }
};

TEST_P(OutputsBehindRowsContract, OutputsArriveWhenTheObjectsHaveBeenRead) {
  AddBoth();
  for (const int a : {15, 3}) {
    const auto parameters = Given("Both", a);
    EXPECT_EQ(Read("Both", parameters)->Count(), a);
    EXPECT_EQ(parameters->Item("b")->Value(), Variant(10 * a));
  }
}

TEST_P(OutputsBehindRowsContract, OutputsArriveWhateverTheCursorType) {
  RunAll(Profile().MakeRowsAndOutput);
  int a = 10;
  for (const auto type : {crtKeyset, crtDynamic, crtStatic}) {
    const auto name = "Shop" + std::to_string(static_cast<std::int32_t>(type));
    AddDatabase(name, Profile().Engine, ConnectText(), type);
    AddAction("Order", {.Name = name, .Text = "{own}_both", .Type = stStoredProcedure, .DatabaseName = name},
              {Parameter("a", dtLongInteger), Parameter("b", dtLongInteger, pfOutput)});
    const auto parameters = Given(name, ++a);
    EXPECT_EQ(Read(name, parameters)->Count(), a);
    EXPECT_EQ(parameters->Item("b")->Value(), Variant(10 * a));
  }
}

TEST_P(OutputsBehindRowsContract, OutputsArriveWithTheLastPage) {
  AddBoth(6);
  const auto parameters = Given("Both", 15);
  const auto agent = AgentOf("Order", "Both", parameters);
  auto page = agent->GetRecordset(0, nullptr, true);
  while (!page->NextBookmark().IsEmpty()) page = agent->GetRecordset(0, page, true);
  EXPECT_EQ(Ids(page), "13 14 15");
  EXPECT_EQ(parameters->Item("b")->Value(), Variant(150));
}

TEST_P(OutputsBehindRowsContract, OutputsArriveBehindRowsThatAFilterPasses) {
  AddBoth();
  const auto parameters = Given("Both", 15);
  parameters->SetupItem({.Name = "id", .Value = 12, .DataType = dtLongInteger, .Operator = ">", .Flags = pfInput});
  EXPECT_EQ(Read("Both", parameters)->Count(), 3);
  EXPECT_EQ(parameters->Item("b")->Value(), Variant(150));
}

TEST_P(OutputsBehindRowsContract, OutputsArriveWhenTheResultWasOpenedInTheBackground) {
  AddBoth();
  const auto parameters = Given("Both", 15);
  const auto agent = AgentOf("Order", "Both", parameters);
  agent->LoadPersistentProperties();
  AwaitOpened(agent);
  EXPECT_EQ(agent->Recordset()->Count(), 15);
  EXPECT_EQ(parameters->Item("b")->Value(), Variant(150));
}

INSTANTIATE_TEST_SUITE_P(, OutputsBehindRowsContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test

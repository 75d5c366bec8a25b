// Procedures and statements with parameters, run and read through the broker.

#include "tests/contract/brokering_contract.h"

namespace velmoria::test {
namespace {

class CallsContract : public BrokeringContract {
 protected:
  /// "Add" over "{own}_add", its parameters declared in this order.
  void AddAdd(const std::vector<PropertyFields>& parameters) {
    RunAll(Driver().MakeAdd);
    AddOrders(20);
    AddAction("Order", {.Name = "Add", .Text = "{own}_add", .Type = stStoredProcedure}, parameters);
  }
  void AddAdd() { AddAdd({A(), B(), C()}); }
  static PropertyFields A() { return Parameter("a", dtLongInteger); }
  static PropertyFields B() { return Parameter("b", dtLongInteger, pfInput | pfOutput); }
  static PropertyFields C() { return Parameter("c", dtString, pfOutput); }
  /// The statement that was logged last.
  std::string Logged() { return Messages().Item("15129")->ExtraText(); }
  static PropertiesPtr Given(const std::string& action, const std::vector<std::pair<const char*, Variant>>& values) {
    auto parameters = ActionOf("Order", action)->CreateParameters();
    for (const auto& [name, value] : values) parameters->Item(name)->SetValue(value);
    return parameters;
  }
  static void Execute(const std::string& action, const PropertiesPtr& parameters) {
    Framework{}.CreateBusinessContext()->Execute(
        {.ClassName = "Order", .ActionName = action, .Parameters = parameters});
  }
  static IBusinessObjectsPtr Read(const std::string& action, const PropertiesPtr& parameters) {
    return Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = action, .Parameters = parameters});
  }
  void EnforceOrder() {
    Framework{}.Profile()->SetupItem({.Name = "EnforceActionParameterOrder", .Value = true, .DataType = dtBoolean});
  }
};

TEST_P(CallsContract, OutputsOfAProcedureArriveInTheParametersOfTheRequest) {
  if (!Driver().WhyNoProcedures.empty()) GTEST_SKIP() << Driver().WhyNoProcedures;
  AddAdd();
  for (const int given : {3, 30}) {
    const auto parameters = Given("Add", {{"a", 2}, {"b", given}});
    Execute("Add", parameters);
    EXPECT_EQ(parameters->Item("a")->Value(), Variant(2));
    EXPECT_EQ(parameters->Item("b")->Value(), Variant(2 + given));
    EXPECT_EQ(parameters->Item("c")->Value(), Variant("sum " + std::to_string(2 + given)));
  }
  EXPECT_TRUE(Logged().starts_with(Filled("{ Call {own}_add (?, ?, ?) }"))) << Logged();
}

TEST_P(CallsContract, ParametersOfAProcedureGoByTheirNamesInWhateverOrderTheyAreDeclared) {
  if (!Driver().WhyNoProcedures.empty()) GTEST_SKIP() << Driver().WhyNoProcedures;
  AddAdd({C(), B(), A()});
  const auto parameters = Given("Add", {{"a", 2}, {"b", 40}});
  Execute("Add", parameters);
  EXPECT_EQ(parameters->Item("b")->Value(), Variant(42));
  EXPECT_EQ(parameters->Item("c")->Value(), Variant("sum 42"));
}

TEST_P(CallsContract, OrderOfTheParametersIsCheckedWhereTheMachineIsSetSo) {
  if (!Driver().WhyNoProcedures.empty()) GTEST_SKIP() << Driver().WhyNoProcedures;
  AddAdd();
  AddAction("Order", {.Name = "Mixed", .Text = "{own}_add", .Type = stStoredProcedure}, {A(), C(), B()});
  EnforceOrder();
  const auto parameters = Given("Add", {{"a", 2}, {"b", 40}});
  Execute("Add", parameters);
  EXPECT_EQ(parameters->Item("b")->Value(), Variant(42));
  const auto mixed = Given("Mixed", {{"a", 2}, {"b", 40}});
  ExpectRaised(errMismatch_Parameters, [&] { Execute("Mixed", mixed); },
               {.Text = "Number: 2  ParameterName: 'c'  ParameterSourceName: 'c'  RDOParameter: 'b'"});
}

TEST_P(CallsContract, ReturnValueArrivesUnderItsName) {
  if (!Driver().WhyNoReturnValues.empty()) GTEST_SKIP() << Driver().WhyNoReturnValues;
  RunAll(Driver().MakeReturning);
  AddOrders(1);
  AddAction("Order", {.Name = "Double", .Text = "{own}_double", .Type = stStoredProcedure},
            {Parameter("RETURN_VALUE", dtLongInteger, pfReturnValue), A()});
  const auto parameters = Given("Double", {{"a", 21}});
  Execute("Double", parameters);
  EXPECT_EQ(parameters->Item("RETURN_VALUE")->Value(), Variant(42));
  EXPECT_TRUE(Logged().starts_with(Filled("{? = Call {own}_double (?) }"))) << Logged();
}

TEST_P(CallsContract, RowsOfAProcedureAreObjects) {
  if (!Driver().WhyNoProcedures.empty()) GTEST_SKIP() << Driver().WhyNoProcedures;
  RunAll(Driver().MakeRows);
  AddOrders(20);
  AddClass("Number", "orders", {"n"});
  AddAction("Number", {.Name = "Rows", .Text = "{own}_rows", .Type = stStoredProcedure}, {A()});
  const auto parameters = ActionOf("Number", "Rows")->CreateParameters();
  parameters->Item("a")->SetValue(12);
  const auto numbers =
      Framework{}.GetBusinessObjects({.ClassName = "Number", .ActionName = "Rows", .Parameters = parameters});
  ASSERT_EQ(numbers->Count(), 12);
  EXPECT_EQ(Value(numbers->Item(12), "n").AsLong(), 12);
  EXPECT_EQ(Value(numbers->Item("7"), "n").AsLong(), 7);
}

TEST_P(CallsContract, ProcedureWithRowsIsReadInPagesAndByAFilterItDoesNotKnow) {
  if (!Driver().WhyNoProcedures.empty()) GTEST_SKIP() << Driver().WhyNoProcedures;
  RunAll(Driver().MakeRows);
  AddOrders(20);
  AddClass("Number", "orders", {"n"});
  AddAction("Number", {.Name = "Rows", .Text = "{own}_rows", .Type = stStoredProcedure, .ObjectBuffer = 4}, {A()});
  const auto parameters = ActionOf("Number", "Rows")->CreateParameters();
  parameters->Item("a")->SetValue(18);
  parameters->SetupItem({.Name = "n", .Value = 6, .DataType = dtLongInteger, .Operator = ">", .Flags = pfInput});
  const auto page = AgentOf("Number", "Rows", parameters)->GetRecordset(0, nullptr, false);
  EXPECT_EQ(page->Count(), 4);
  EXPECT_EQ(page->GetPersistentProperties(0, "")->Item("n")->Value().AsLong(), 7);
  EXPECT_EQ(page->Statistics()->Item(1)->Name(), "Read 'Shop' Rows with Filter");
}

TEST_P(CallsContract, OutputsAreReadBehindTheRowsOfAProcedure) {
  if (!Profile().WhyNoRowsAndOutput.empty()) GTEST_SKIP() << Profile().WhyNoRowsAndOutput;
  AddOrders(20);
  RunAll(Profile().MakeRowsAndOutput);
  AddAction("Order", {.Name = "Both", .Text = "{own}_both", .Type = stStoredProcedure},
            {A(), Parameter("b", dtLongInteger, pfOutput)});
  const auto parameters = Given("Both", {{"a", 15}});
  Execute("Both", parameters);
  EXPECT_EQ(parameters->Item("b")->Value(), Variant(150));
  EXPECT_EQ(Read("Both", Given("Both", {{"a", 15}}))->Count(), 15);
}

TEST_P(CallsContract, PassedThroughCallHoldsItsValuesAndNoMarkers) {
  if (!Driver().WhyNoProcedures.empty()) GTEST_SKIP() << Driver().WhyNoProcedures;
  RunAll(Driver().MakeRows);
  AddOrders(20);
  AddClass("Number", "orders", {"n"});
  AddAction("Number", {.Name = "Rows", .Text = "{own}_rows", .Type = stStoredProcedure, .Options = ofRDOPassthru},
            {A()});
  const auto parameters = ActionOf("Number", "Rows")->CreateParameters();
  parameters->Item("a")->SetValue(5);
  EXPECT_EQ(
      Framework{}.GetBusinessObjects({.ClassName = "Number", .ActionName = "Rows", .Parameters = parameters})->Count(),
      5);
  EXPECT_EQ(Logged(), Filled("{ Call {own}_rows (5) }"));
}

TEST_P(CallsContract, PassedThroughCallWithAnOutputIsRefusedBeforeItIsSent) {
  AddOrders(1);
  AddAction("Order", {.Name = "Add", .Text = "{own}_add", .Type = stStoredProcedure, .Options = ofRDOPassthru},
            {A(), C()});
  const auto parameters = Given("Add", {{"a", 1}});
  ExpectRaised(errRDO_PassThru_Output_Parameters, [&] { Execute("Add", parameters); }, {.Text = "Property: 'c'"});
  for (const auto& text : Odbc().Texts()) EXPECT_EQ(text.find("_add"), std::string::npos) << text;
}

TEST_P(CallsContract, ProcedureThatIsNotThereIsRefusedAndTheNextRequestWorks) {
  if (!Driver().WhyNoProcedures.empty()) GTEST_SKIP() << Driver().WhyNoProcedures;
  AddAdd();
  AddAction("Order", {.Name = "None", .Text = "{own}_none", .Type = stStoredProcedure}, {A()});
  const auto none = Given("None", {{"a", 1}});
  EndsRightOrNumbered([&] {
    Execute("None", none);
    ADD_FAILURE() << "nothing was raised";
  });
  ExpectRaised(errRDO_StoredProcedure, [&] { Read("None", none); });
  const auto parameters = Given("Add", {{"a", 2}, {"b", 3}});
  Execute("Add", parameters);
  EXPECT_EQ(parameters->Item("b")->Value(), Variant(5));
}

TEST_P(CallsContract, ParametersOfAStatementGoByTheirOrder) {
  AddOrders(20);
  AddAction("Order",
            {.Name = "Between", .Text = "SELECT * FROM {t}orders WHERE id > ? AND id < ? ORDER BY id", .Type = stSQL},
            {Parameter("low", dtLongInteger), Parameter("high", dtLongInteger)});
  const auto orders = Read("Between", Given("Between", {{"low", 4}, {"high", 7}}));
  ASSERT_EQ(orders->Count(), 2);
  EXPECT_EQ(IdOf(orders->Item(1)), 5);
}

TEST_P(CallsContract, PassedThroughStatementHoldsItsValuesAndAMarkInAValueIsTakenForTheNext) {
  AddOrders(20);
  Run("UPDATE {t}orders SET name = 'wh7t' WHERE id = 7");
  AddAction("Order",
            {.Name = "Named",
             .Text = "SELECT * FROM {t}orders WHERE name = ? AND id = ?",
             .Type = stSQL,
             .Options = ofRDOPassthru},
            {Parameter("name", dtString), Parameter("id", dtLongInteger)});
  EXPECT_EQ(Read("Named", Given("Named", {{"name", "name 3"}, {"id", 3}}))->Count(), 1);
  EXPECT_EQ(Read("Named", Given("Named", {{"name", "wh?t"}, {"id", 7}}))->Count(), 0);
  EXPECT_TRUE(Logged().starts_with(Filled("SELECT * FROM {t}orders WHERE name = 'wh7t' AND id = ?"))) << Logged();
}

TEST_P(CallsContract, StatementThatChangesRowsIsExecutedWithItsParameters) {
  AddOrders(5);
  AddAction("Order", {.Name = "Rename", .Text = "UPDATE {t}orders SET name = ? WHERE id = ?", .Type = stSQL},
            {Parameter("name", dtString), Parameter("id", dtLongInteger)});
  Execute("Rename", Given("Rename", {{"name", "it's"}, {"id", 4}}));
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 4"), "it's");
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders WHERE name = 'it''s'"), "1");
}

TEST_P(CallsContract, ParameterThatNeedsAValueIsNamedAndNothingIsSent) {
  AddOrders(5);
  AddAction(
      "Order", {.Name = "Between", .Text = "SELECT * FROM {t}orders WHERE id > ? AND id < ?", .Type = stSQL},
      {Parameter("low", dtLongInteger, pfInput | pfRequired), Parameter("high", dtLongInteger, pfInput | pfRequired)});
  const auto nothing = Given("Between", {});
  ExpectRaised(errProperties_Required, [&] { Read("Between", nothing); }, {.Text = "Properties: 'low, high'"});
  const auto half = Given("Between", {{"high", 3}});
  ExpectRaised(errProperties_Required, [&] { Read("Between", half); }, {.Text = "Properties: 'low'"});
  EXPECT_TRUE(Odbc().Texts().empty());
  EXPECT_EQ(Read("Between", Given("Between", {{"low", 1}, {"high", 3}}))->Count(), 1);
}

INSTANTIATE_TEST_SUITE_P(, CallsContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test

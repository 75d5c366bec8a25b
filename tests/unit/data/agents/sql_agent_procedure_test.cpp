#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/data/agents/read_over_fake.h"

namespace velmoria::test {

namespace {

constexpr const char* kReturn = "5";
constexpr const char* kIn = "1";
constexpr const char* kInOut = "2";
constexpr const char* kOut = "4";

/// A row of the catalogue: name, kind and type of a parameter of the procedure "raise".
FakeOdbc::Row Listed(const char* name, const char* kind, const char* type) {
  return {{}, {}, "raise", name, kind, type, {}, "10", {}, "0"};
}

class SQLAgentProcedureTest : public ReadOverFake {
 protected:
  SQLAgentProcedureTest() {
    driver_->Catalogue = {Listed("@RETURN_VALUE", kReturn, "4"), Listed("@Id", kIn, "4"), Listed("@Total", kInOut, "4"),
                          Listed("@Changed", kOut, "4")};
    Design({.SourceType = stStoredProcedure, .SourceText = "raise"});
  }

  void Declare(const char* name, zPropertyFlags flags) {
    design_->Source->Parameters()->SetupItem({.Name = name, .DataType = dtLongInteger, .Flags = flags});
  }
  void DeclareAll() {
    Declare("RETURN_VALUE", pfReturnValue);
    Declare("Id", pfInput | pfRequired);
    Declare("Total", pfInput | pfOutput);
    Declare("Changed", pfOutput);
    parameters_ = design_->Action->CreateParameters();
    parameters_->Item("Id")->SetValue(7);
    parameters_->Item("Total")->SetValue(100);
  }
  void Execute() { design_->Agent(parameters_)->Execute(); }
  void EnforceOrder() {
    Apartment().Profile->SetupItem({.Name = "EnforceActionParameterOrder", .Value = true, .DataType = dtBoolean});
  }

  PropertiesPtr parameters_;
};

TEST_F(SQLAgentProcedureTest, OutputsAndTheReturnValueArriveInTheParameters) {
  DeclareAll();
  driver_->Outputs = {"3", "110", "1"};
  Execute();
  EXPECT_EQ(driver_->Texts.back(), "{? = Call raise (?, ?, ?) }");
  EXPECT_EQ(parameters_->Item("RETURN_VALUE")->Value().AsLong(), 3);
  EXPECT_EQ(parameters_->Item("Id")->Value().AsLong(), 7);
  EXPECT_EQ(parameters_->Item("Total")->Value().AsLong(), 110);
  EXPECT_EQ(parameters_->Item("Changed")->Value().AsLong(), 1);
}

TEST_F(SQLAgentProcedureTest, ParametersGoByTheirNamesWhateverTheirOrder) {
  Declare("Changed", pfOutput);
  Declare("Total", pfInput | pfOutput);
  Declare("Id", pfInput);
  driver_->Catalogue.erase(driver_->Catalogue.begin());
  parameters_ = design_->Action->CreateParameters();
  parameters_->Item("Id")->SetValue(7);
  parameters_->Item("Total")->SetValue(100);
  driver_->Outputs = {"110", "1"};
  Execute();
  EXPECT_EQ(parameters_->Item("Total")->Value().AsLong(), 110);
  EXPECT_EQ(parameters_->Item("Changed")->Value().AsLong(), 1);
}

TEST_F(SQLAgentProcedureTest, WhereTheCatalogueListsNothingTheyGoByTheirOrder) {
  DeclareAll();
  driver_->Catalogue.clear();
  driver_->Outputs = {"3", "110", "1"};
  Execute();
  EXPECT_EQ(parameters_->Item("RETURN_VALUE")->Value().AsLong(), 3);
  EXPECT_EQ(parameters_->Item("Total")->Value().AsLong(), 110);
}

TEST_F(SQLAgentProcedureTest, AProcedureGivesRows) {
  Declare("Id", pfInput);
  driver_->Catalogue = {Listed("@Id", kIn, "4")};
  parameters_ = design_->Action->CreateParameters();
  parameters_->Item("Id")->SetValue(7);
  const auto page = design_->Read(parameters_);
  EXPECT_EQ(page->Count(), 25);
  EXPECT_EQ(driver_->Texts.back(), "{ Call raise (?) }");
}

TEST_F(SQLAgentProcedureTest, AParameterUnknownToItFiltersItsRows) {
  const auto page = design_->Read(Parameter({.Name = "Name", .Value = "n4", .DataType = dtString}));
  EXPECT_EQ(page->Count(), 1);
  EXPECT_EQ(IdAt(page, 0), 4);
  EXPECT_EQ(driver_->Texts.back(), "{ Call raise }");
}

TEST_F(SQLAgentProcedureTest, ARequiredParameterWithoutValueIsNamed) {
  Declare("Id", pfInput | pfRequired);
  ExpectRaised(errProperties_Required, [&] { design_->Read(design_->Action->CreateParameters()); },
               {.Text = "Properties: 'Id'"});
}

TEST_F(SQLAgentProcedureTest, AFailedOpenIsThatOfAProcedure) {
  driver_->FailName = "Execute";
  ExpectRaised(errRDO_StoredProcedure, [&] { design_->Read(); }, {.Text = "SQL/Name: raise"});
}

TEST_F(SQLAgentProcedureTest, ItIsToldWithItsParameters) {
  DeclareAll();
  driver_->Outputs = {"3", "110", "1"};
  Execute();
  EXPECT_EQ(Logged(),
            "{? = Call raise (?, ?, ?) }\r\nParameters:"
            "\r\n    Name: 'RETURN_VALUE'  Type: 4  Direction: 3  Value: Null"
            "\r\n    Name: 'Id'  Type: 4  Direction: 0  Value: 7"
            "\r\n    Name: 'Total'  Type: 4  Direction: 1  Value: 100"
            "\r\n    Name: 'Changed'  Type: 4  Direction: 2  Value: Null");
}

TEST_F(SQLAgentProcedureTest, AnOutputThatWasNotPassedIsNotFound) {
  Declare("Id", pfInput);
  Declare("Total", pfInput);
  Declare("Changed", pfInput);
  driver_->Catalogue = {Listed("@Id", kIn, "4"), Listed("@Total", kIn, "4"), Listed("@Other", kOut, "4")};
  parameters_ = design_->Action->CreateParameters();
  driver_->Outputs = {"1"};
  ExpectRaised(errItem_Property, [&] { Execute(); }, {.Text = "'Other'"});
}

TEST_F(SQLAgentProcedureTest, AnotherOrderIsRefusedWhereTheMachineAsksForIt) {
  Declare("Total", pfInput);
  Declare("Id", pfInput);
  driver_->Catalogue = {Listed("@Id", kIn, "4"), Listed("@Total", kIn, "4")};
  parameters_ = design_->Action->CreateParameters();
  EnforceOrder();
  ExpectRaised(errMismatch_Parameters, [&] { Execute(); },
               {.Text = "Number: 1  ParameterName: 'Total'  ParameterSourceName: ''  RDOParameter: 'Id'"});
}

TEST_F(SQLAgentProcedureTest, ElsewhereTheOrderIsFree) {
  Declare("Total", pfInput);
  Declare("Id", pfInput);
  driver_->Catalogue = {Listed("@Id", kIn, "4"), Listed("@Total", kIn, "4")};
  parameters_ = design_->Action->CreateParameters();
  Execute();
  EXPECT_EQ(driver_->Texts.back(), "{ Call raise (?, ?) }");
}

TEST_F(SQLAgentProcedureTest, TheRightOrderPassesWhateverItsCase) {
  EnforceOrder();
  Declare("ID", pfInput);
  driver_->Catalogue = {Listed("[@Id]", kIn, "4")};
  parameters_ = design_->Action->CreateParameters();
  Execute();
  EXPECT_EQ(driver_->Texts.back(), "{ Call raise (?) }");
}

TEST_F(SQLAgentProcedureTest, PassThroughWritesItsValuesIntoTheText) {
  design_->Source->SetOptionFlags(ofRDOPassthru);
  Declare("Id", pfInput);
  parameters_ = design_->Action->CreateParameters();
  parameters_->Item("Id")->SetValue(7);
  Execute();
  EXPECT_EQ(driver_->Texts.back(), "{ Call raise (7) }");
}

}  // namespace

}  // namespace velmoria::test

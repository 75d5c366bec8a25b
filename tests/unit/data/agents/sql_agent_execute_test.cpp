#include <algorithm>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/fake_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/agents/sql_agent_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/database.h"
#include "velmoria/design/server.h"
#include "velmoria/design/source.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"

namespace velmoria::test {
namespace {

constexpr const char* kText = "update orders set Total = ? where Id = ?";

class SQLAgentExecuteTest : public testing::Test {
 protected:
  SQLAgentExecuteTest() { scope_.State().Platform.Odbc = driver_; }
  void Design(const OneActionFields& fields = {.SourceType = stSQL, .SourceText = kText}) {
    design_ = std::make_unique<OneAction>(fields);
    Declare("Total", dtDouble);
    Declare("Id", dtLongInteger);
    parameters_ = design_->Action->CreateParameters();
  }
  void Declare(const char* name, zDataTypes type) {
    design_->Source->Parameters()->SetupItem({.Name = name, .DataType = type, .Flags = pfInput});
  }
  void Execute() {
    SQLAgent agent;
    agent.Initialize(design_->Class, design_->Action, parameters_, -1);
    agent.Execute();
  }

  ScopedApartment scope_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
  std::unique_ptr<OneAction> design_;
  PropertiesPtr parameters_;
};

TEST_F(SQLAgentExecuteTest, ParametersGoByTheOrderOfTheMarkersAndAnEmptyOneIsNull) {
  Design();
  parameters_->Item("Id")->SetValue(7);
  Execute();
  ASSERT_EQ(driver_->Parameters.size(), 2U);
  EXPECT_TRUE(driver_->Parameters[0].IsNull);
  EXPECT_FALSE(driver_->Parameters[1].IsNull);
}

TEST_F(SQLAgentExecuteTest, StatementIsToldAsInformationWithItsParameters) {
  Design();
  parameters_->Item("Id")->SetValue(7);
  Execute();
  const MessagePtr told = scope_.Messages().Item("15129");
  ASSERT_TRUE(told);
  EXPECT_EQ(told->SeverityFlags(), svfInfo);
  EXPECT_NE(told->ExtraText().find(kText), std::string::npos);
  EXPECT_NE(told->ExtraText().find("Value: 7"), std::string::npos);
}

TEST_F(SQLAgentExecuteTest, NoResultIsOpenedOrKept) {
  Design();
  Execute();
  const auto handles = driver_->OpenHandles();
  Execute();
  EXPECT_EQ(driver_->OpenHandles(), handles);
  EXPECT_EQ(driver_->CallsOf["FetchScroll"], 0);
}

TEST_F(SQLAgentExecuteTest, MissingValueOfARequiredParameterIsReportedBeforeTheDatabaseIsAsked) {
  Design();
  design_->Source->Parameters()->Item("Id")->SetFlags(pfInput | pfRequired);
  parameters_ = design_->Action->CreateParameters();
  ExpectRaised(errProperties_Required, [&] { Execute(); }, {.Text = "Properties: 'Id'"});
  EXPECT_EQ(std::count(driver_->Texts.begin(), driver_->Texts.end(), kText), 0);
}

TEST_F(SQLAgentExecuteTest, PassThroughExecutesDirectlyAndTakesNoOutputParameter) {
  Design({.SourceType = stSQL, .SourceText = "delete from orders", .OptionFlags = ofRDOPassthru});
  Execute();
  EXPECT_EQ(driver_->CallsOf["Prepare"], 0);
  design_->Source->Parameters()->Item("Id")->SetFlags(pfOutput);
  parameters_ = design_->Action->CreateParameters();
  ExpectRaised(errRDO_PassThru_Output_Parameters, [&] { Execute(); }, {.Text = "'Id'"});
}

TEST_F(SQLAgentExecuteTest, WhatTheDatabaseRefusesIsReportedInItsOwnWords) {
  Design();
  driver_->FailName = "Execute";
  const auto error = Thrown([&] { Execute(); });
  ASSERT_TRUE(error);
  EXPECT_NE(error->Description().find("fake failure"), std::string::npos) << error->Description();
}

}  // namespace
}  // namespace velmoria::test

#include "velmoria/platform/odbc/diagnostics.h"

#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

using DiagnosticsTest = RdoTest;

TEST_F(DiagnosticsTest, FailureHasTheFirstRecordAndTheEngineHasThemAll) {
  odbc->FailName = "DriverConnect";
  odbc->Diagnostics = {{"08S01", 20009, "no server"}, {"08001", 2, "could not\nconnect"}};
  ExpectRdoFailure(20009, "08S01: no server", [&] { Open(); });
  ASSERT_EQ(engine->rdoErrors().size(), 2U);
  EXPECT_EQ(engine->rdoErrors()[1].Number, 2);
  EXPECT_EQ(engine->rdoErrors()[1].SQLState, "08001");
  EXPECT_EQ(engine->rdoErrors()[1].Description, "could not\nconnect");
}

TEST_F(DiagnosticsTest, DescriptionIsOneLine) {
  odbc->FailName = "DriverConnect";
  odbc->Diagnostics = {{"08001", 2, "could not\nconnect\n"}};
  ExpectRdoFailure(2, "08001: could not connect", [&] { Open(); });
}

TEST_F(DiagnosticsTest, NativeNumberZeroStaysZero) {
  odbc->FailName = "DriverConnect";
  odbc->Diagnostics = {{"IM002", 0, "Data source name not found"}};
  ExpectRdoFailure(0, "IM002: Data source", [&] { Open(); });
  EXPECT_EQ(engine->rdoErrors().front().SQLState, "IM002");
}

TEST_F(DiagnosticsTest, FailureWithoutARecordStillHasNumberAndText) {
  odbc->FailName = "DriverConnect";
  odbc->Diagnostics.clear();
  ExpectRdoFailure(40002, "HY000: ", [&] { Open(); });
  EXPECT_EQ(engine->rdoErrors().size(), 1U);
}

TEST_F(DiagnosticsTest, PasswordThatTheDriverRepeatsIsNotShown) {
  odbc->FailName = "DriverConnect";
  odbc->Diagnostics = {{"08001", 1, "cannot open 'UID=u;PWD=secret'"}};
  ExpectRdoFailure(1, "PWD=***", [&] { Open("UID=u;PWD=secret"); });
  EXPECT_EQ(engine->rdoErrors().front().Description.find("secret"), std::string::npos);
}

TEST_F(DiagnosticsTest, LongRecordIsReadWhole) {
  odbc->FailName = "DriverConnect";
  odbc->Diagnostics = {{"08001", 1, std::string(3000, 'x')}};
  ExpectRdoFailure(1, std::string(3000, 'x'), [&] { Open(); });
}

TEST_F(DiagnosticsTest, EveryCallThatTalksToTheDriverEmptiesTheList) {
  odbc->FailName = "DriverConnect";
  ExpectRdoFailure(7, "fake failure", [&] { Open(); });
  odbc->FailName.clear();
  Open();
  EXPECT_TRUE(engine->rdoErrors().empty());
}

}  // namespace
}  // namespace velmoria::test

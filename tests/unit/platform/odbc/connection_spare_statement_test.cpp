#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

/// Over the driver whose statements serve again, a connection keeps one that has ended for the next.
class SpareStatementTest : public RdoTest {
 protected:
  SpareStatementTest() {
    odbc->DriverName = "libsqlite3odbc-0.9998.so";
    odbc->Columns = {{"Id", 4}, {"Name", 12, 5}};
    odbc->Rows = {{"1", "Ada"}, {"2", "Ben"}};
    connection = Open();
  }

  void Read(rdoNumber type = rdOpenForwardOnly) {
    const auto result = connection->CreateQuery("", "SELECT")->OpenResultset({.Type = type});
    EXPECT_EQ(result->GetRows(1000).Rows(), odbc->Rows.size());
  }
  int Made() { return odbc->CallsOf["AllocHandle"]; }

  rdoConnectionPtr connection;
};

TEST_F(SpareStatementTest, ItIsUsedAgain) {
  Read();
  const int made = Made();
  for (int again = 0; again < 5; ++again) Read();
  EXPECT_EQ(Made(), made);
}

TEST_F(SpareStatementTest, ItIsAsWideAsTheNextResultNeeds) {
  Read();
  odbc->Columns = {{"Name", 12, 5}};
  odbc->Rows.assign(100, {"x"});
  Read();
  odbc->Columns = {{"Id", 4}};
  odbc->Rows = {{"7"}};
  const auto result = connection->CreateQuery("", "SELECT")->OpenResultset({.Type = rdOpenForwardOnly});
  EXPECT_EQ(result->GetRows(1).Value(0, 0), Variant(7));
}

TEST_F(SpareStatementTest, TwoAtOnceAreTwo) {
  const auto query = connection->CreateQuery("", "SELECT");
  odbc->Rows.assign(100, {"1", "x"});
  const int made = Made();
  const auto one = query->OpenResultset({.Type = rdOpenForwardOnly});
  const auto other = query->OpenResultset({.Type = rdOpenForwardOnly});
  EXPECT_EQ(Made(), made + 2);
  EXPECT_EQ(one->GetRows(100).Rows(), 100U);
  EXPECT_EQ(other->GetRows(100).Rows(), 100U);
}

TEST_F(SpareStatementTest, OneThatFailedIsNotKept) {
  const int open = static_cast<int>(odbc->OpenHandles());
  odbc->FailName = "Execute";
  EXPECT_THROW(Read(), Error);
  odbc->FailName.clear();
  EXPECT_EQ(static_cast<int>(odbc->OpenHandles()), open);
  Read();
}

TEST_F(SpareStatementTest, OneWithRowsLeftIsNotKeptForItsDriverHoldsThem) {
  const int open = static_cast<int>(odbc->OpenHandles());
  odbc->Rows.assign(100, {"1", "x"});
  connection->CreateQuery("", "SELECT")->OpenResultset({.Type = rdOpenForwardOnly})->Close();
  EXPECT_EQ(static_cast<int>(odbc->OpenHandles()), open);
  odbc->Rows.assign(8, {"1", "x"});  // a block that is full does not tell that it is the last
  connection->CreateQuery("", "SELECT")->OpenResultset({.Type = rdOpenForwardOnly})->Close();
  EXPECT_EQ(static_cast<int>(odbc->OpenHandles()), open + 1);
}

TEST_F(SpareStatementTest, OneThatWasReadToItsEndIsNotAskedAgain) {
  Read();
  EXPECT_EQ(odbc->CallsOf["Fetch"], 3);  // row by row, since a text may be longer than its slot
  odbc->Columns = {{"Id", 4}};
  odbc->Rows.assign(3, {"1"});
  Read();
  odbc->Rows.assign(8, {"1"});  // the end is met with the block behind
  Read();
  EXPECT_EQ(odbc->CallsOf["Fetch"], 3);
}

TEST_F(SpareStatementTest, ShortBlockThatIsNoPlainSuccessIsNotTakenForTheEnd) {
  odbc->Rows = {{"1", "Ada"}, {"2", std::string(500, 'x')}};
  const auto result =
      connection->CreateQuery("", "SELECT")->OpenResultset({.Type = rdOpenForwardOnly, .Repeatable = true});
  EXPECT_EQ(result->GetRows(9).Rows(), 2U);
  const int rowByRow = 3;  // the second time, with the one behind the last
  EXPECT_EQ(odbc->CallsOf["Fetch"], 1 + rowByRow);
}

TEST_F(SpareStatementTest, ResultsAreFetchedBeforeATransactionBegins) {
  odbc->Rows.assign(100, {"1", "x"});
  const auto result = connection->CreateQuery("", "SELECT")->OpenResultset({.Type = rdOpenForwardOnly});
  connection->BeginTrans();
  const int fetched = odbc->CallsOf["FetchScroll"];
  EXPECT_EQ(result->GetRows(1000).Rows(), 100U);
  EXPECT_EQ(odbc->CallsOf["FetchScroll"], fetched);
}

TEST_F(SpareStatementTest, OneThatScrollsIsNotKept) {
  const int open = static_cast<int>(odbc->OpenHandles());
  Read(rdOpenStatic);
  EXPECT_EQ(static_cast<int>(odbc->OpenHandles()), open);
}

TEST_F(SpareStatementTest, WhatTheDriverDoesNotTakeBackIsNotKept) {
  const int open = static_cast<int>(odbc->OpenHandles());
  odbc->Columns = {{"Id", 4}};
  odbc->Rows = {{"1"}};
  odbc->FailName = "SetStmtAttr";
  odbc->FailNameFrom = 4;  // three are set before the rows are fetched
  Read();
  EXPECT_EQ(static_cast<int>(odbc->OpenHandles()), open);
}

TEST_F(SpareStatementTest, ItEndsWithItsConnection) {
  Read();
  environment->Close();
  EXPECT_EQ(odbc->OpenHandles(), 0U);
  EXPECT_EQ(odbc->Misuses, 0);
}

TEST_F(SpareStatementTest, NoOtherDriverHasOne) {
  odbc->DriverName = "psqlodbcw.so";
  connection = Open();
  Read();
  const int made = Made();
  Read();
  EXPECT_EQ(Made(), made + 1);
}

}  // namespace
}  // namespace velmoria::test

#include <string>

#include "tests/support/expect_raised.h"
#include "tests/unit/core/messages_fixture.h"
#include "velmoria/core/engine_errors_impl.h"
#include "velmoria/core/reporting.h"
#include "velmoria/platform/rdo/rdo_engine.h"

namespace velmoria::test {
namespace {

class EngineErrorsTest : public MessagesTest {
 protected:
  EngineErrorsTest() { apartment_.State().rdoEngine = Make<rdoEngine>(); }
  std::vector<EngineError>& Errors() { return apartment_.State().rdoEngine->rdoErrors(); }
  std::vector<EngineError>& DaoErrors() { return apartment_.State().DaoErrors; }
};

TEST_F(EngineErrorsTest, EngineErrorsFollowAnyMessageAsWarnings) {
  Errors() = {{208, "no such table", "help", 4, "S0002"}, {8180, "not prepared", "", 0, "37000"}};
  Record(15129, svfInfo);
  EXPECT_EQ(Numbers(), (Values{15129, 208, 8180}));
  const auto warning = messages_.Item("208");
  EXPECT_EQ(warning->Description(), "no such table");
  EXPECT_EQ(warning->SeverityFlags(), svfWarning);
  EXPECT_EQ(warning->TypeFlags(), tfRDO);
  EXPECT_EQ(warning->HelpFile(), "help");
  EXPECT_EQ(warning->HelpContextID(), 4);
}

TEST_F(EngineErrorsTest, RecordingEmptiesTheEnginesList) {
  Errors() = {{208, "no such table"}};
  Record(13, svfError);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(EngineErrorsTest, SuspendedRecordingLeavesTheEnginesListForTheNextMessage) {
  Errors() = {{208, "no such table"}};
  messages_.SetSuspendRoutine("A");
  Record(13, svfError);
  EXPECT_EQ(Errors().size(), 1U);
  messages_.SetSuspendRoutine("A");
  Record(9, svfError);
  EXPECT_EQ(Numbers(), (Values{9, 208}));
}

TEST_F(EngineErrorsTest, OfSeveralZerosOneIsKept) {
  Errors() = {{0, "first"}, {0, "second"}};
  Record(13, svfError);
  EXPECT_EQ(Numbers(), (Values{13, 36571}));
  EXPECT_EQ(messages_.Item("36571")->Description(), "first");
}

TEST_F(EngineErrorsTest, EngineErrorOfAHeldNumberIsDropped) {
  Errors() = {{208, "no such table"}};
  Record(208, svfError, "caught");
  EXPECT_EQ(messages_.Count(), 1);
  EXPECT_EQ(messages_.Item(1)->Description(), "caught");
}

TEST_F(EngineErrorsTest, EngineErrorsJoinADeclinedMessage) {
  Record(13, svfError);
  Errors() = {{208, "no such table"}};
  Record(13, svfError);
  EXPECT_EQ(Numbers(), (Values{13, 208}));
}

TEST_F(EngineErrorsTest, WithoutAnEngineTheMessageStandsAlone) {
  apartment_.State().rdoEngine = nullptr;
  Record(13, svfError);
  EXPECT_EQ(Numbers(), Values{13});
}

TEST_F(EngineErrorsTest, EngineErrorsStayWarningsBesideTheErrorOfTheLibrary) {
  Errors() = {{208, "no such table"}};
  Record(15120, svfError);
  EXPECT_EQ(messages_.Number(), 15120);
}

TEST_F(EngineErrorsTest, DaoErrorsFollowTheNumberOfTheirLastEntryAsWarnings) {
  DaoErrors() = {{3146, "ODBC call failed", "jet.hlp", 5}, {3024, "no such file", "", 0}};
  Record(3024, svfError, "caught");
  EXPECT_EQ(Numbers(), (Values{3024, 3146}));
  const auto warning = messages_.Item("3146");
  EXPECT_EQ(warning->Description(), "ODBC call failed");
  EXPECT_EQ(warning->SeverityFlags(), svfWarning);
  EXPECT_EQ(warning->TypeFlags(), tfDAO);
  EXPECT_EQ(warning->HelpFile(), "jet.hlp");
  EXPECT_EQ(warning->HelpContextID(), 5);
}

TEST_F(EngineErrorsTest, DaoErrorsHaveNoReporterAndNoExtraText) {
  DaoErrors() = {{3146, "first"}, {3024, "last"}};
  messages_.SetupItem({.Number = zErrors{3024}, .TypeName = "T", .StateDetails = "S", .ErrLine = 3, .ExtraText = "x"});
  const auto warning = messages_.Item("3146");
  EXPECT_EQ(warning->TypeName() + warning->RoutineName() + warning->StateDetails() + warning->ExtraText(), "");
  EXPECT_EQ(warning->ErrLine(), 0);
}

TEST_F(EngineErrorsTest, OnlyTheLastDaoErrorDecidesWhetherTheListFollows) {
  DaoErrors() = {{3024, "first"}, {3146, "last"}};
  Record(3024, svfError);
  EXPECT_EQ(Numbers(), Values{3024});
}

TEST_F(EngineErrorsTest, DaoErrorsDoNotFollowTheNumberOfARoutineThatOwnsOne) {
  DaoErrors() = {{3146, "first"}, {3024, "last"}};
  Record(15032, svfError);
  EXPECT_EQ(Numbers(), Values{15032});
}

TEST_F(EngineErrorsTest, RecordingLeavesTheDaoListAsItIs) {
  DaoErrors() = {{3146, "first"}, {3024, "last"}};
  Record(3024, svfError);
  EXPECT_EQ(DaoErrors().size(), 2U);
  messages_.Clear();
  Record(3024, svfError);
  EXPECT_EQ(Numbers(), (Values{3024, 3146}));
}

TEST_F(EngineErrorsTest, DaoErrorsStandBeforeRdoErrors) {
  DaoErrors() = {{3146, "dao"}, {13, "last"}};
  Errors() = {{208, "rdo"}};
  Record(13, svfError);
  EXPECT_EQ(Numbers(), (Values{13, 3146, 208}));
}

TEST_F(EngineErrorsTest, SuspendedRecordingAttachesNoDaoErrors) {
  DaoErrors() = {{3146, "first"}, {3024, "last"}};
  messages_.SetSuspendRoutine("A");
  Record(3024, svfError);
  EXPECT_EQ(messages_.Count(), 0);
}

// A routine that owns a number, over a database call that fails.
class Opener : public Reporting {
 public:
  std::string_view ReportedType() const noexcept override { return "Opener"; }
  void Open() const try { throw Error(3024, "no such file"); } catch (...) {
    Failed("Open", errDAO_Database, {"", "Shop", "Microsoft Access", "Admin"});
  }
};

TEST_F(EngineErrorsTest, OwnerOfANumberKeepsTheEnginesListsBesideIt) {
  DaoErrors() = {{3146, "ODBC call failed"}, {3024, "no such file"}};
  Errors() = {{208, "no such table"}};
  const auto error = Thrown([] { Opener().Open(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15032);
  EXPECT_EQ(Numbers(), (Values{3024, 3146, 208, 15032}));
}

}  // namespace
}  // namespace velmoria::test

#include <string>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/design_text.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/key_format.h"

namespace velmoria::test {
namespace {

// A Server of some size with something of every kind below it, and a Database with a Connector for every engine.
class LargeDesignTest : public testing::Test {
 protected:
  ServerPtr MakeServer(int classes, int actions) {
    auto server = MakeDesign<ServerKind>({.Name = "Sales", .ActiveXComponent = "SalesLib"});
    server->UserProperties()->SetupItem({.Name = "Team", .Value = "North"});
    for (int n = 1; n <= classes; ++n)
      FillClass(*server->Classes()->SetupItem({.Name = Numbered("Class", n)}), actions);
    return server;
  }

  static std::string Numbered(const std::string& name, int n) { return name + std::to_string(n); }
  static void FillClass(Class& object, int actions) {
    object.Properties()->SetupItem({.Name = "Id", .DataType = dtLongInteger, .Flags = pfInput});
    for (int n = 1; n <= actions; ++n) {
      FillAction(*object.Actions()->SetupItem({.Name = Numbered("Action", n), .DatabaseName = "Shop"}), n);
    }
    const auto link = object.Relationships()->SetupItem({.Name = "Lines"})->Links()->SetupItem({.Name = "Id"});
    link->Property()->Data()->SetName("Id");
    link->Parameter()->Data()->SetName("OrderId");
  }
  static void FillAction(Action& action, int n) {
    action.KeyFormat()->SetSeparator("|");
    const auto source =
        action.Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = Numbered("t", n)});
    source->Parameters()->SetupItem({.Name = "Id", .Value = n, .DataType = dtLongInteger});
  }

  ScopedApartment apartment_;
};

TEST_F(LargeDesignTest, ACopyOfAThousandClassesWithTenActionsEachIsEqual) {
  const auto server = MakeServer(1000, 10);
  const auto copy = server->Copy();
  EXPECT_EQ(copy->Classes()->Count(), 1000);
  EXPECT_EQ(copy->Classes()->Item("Class1000")->Actions()->Item("Action10")->ServerName(), "Sales");
  // Not EXPECT_EQ, which would compare the difference of two texts of megabytes line by line.
  EXPECT_TRUE(DesignText(*copy->Data()) == DesignText(*server->Data()));
}

TEST_F(LargeDesignTest, TheTextTellsWhateverDiffersAnywhereBelow) {
  const auto server = MakeServer(2, 2);
  const auto text = DesignText(*server->Data());
  const auto action = [](const ServerPtr& of) { return of->Classes()->Item(2)->Actions()->Item(2); };
  void (*const changes[])(Action&) = {
      [](Action& changed) { changed.SetObjectBuffer(1); },
      [](Action& changed) { changed.KeyFormat()->SetSeparator("-"); },
      [](Action& changed) { changed.Sources()->Item(engODBC)->SetSourceText("x"); },
      [](Action& changed) { changed.Sources()->Item(engODBC)->Parameters()->Item(1)->SetValue(9); },
      [](Action& changed) { changed.UserProperties()->SetupItem({.Name = "Note"}); },
  };
  for (const auto change : changes) {
    const auto copy = server->Copy();
    change(*action(copy));
    EXPECT_NE(DesignText(*copy->Data()), text);
  }
  EXPECT_EQ(DesignText(*server->Data()), text);
}

TEST_F(LargeDesignTest, ACopyOfADatabaseWithEveryEngineIsEqual) {
  const auto database = MakeDesign<DatabaseKind>({.Name = "Shop", .Engine = engOracle, .AutoConnect = true});
  for (const auto engine : {engAccess, engODBC, engSQLServer, engSybase, engOracle}) {
    const auto connector = database->Connectors()->SetupItem(
        {.Engine = engine, .ConnectionType = ctFile, .ConnectionString = "x", .UserName = "anna", .Password = "p"});
    connector->UserProperties()->SetupItem({.Name = "Note", .Value = "kept"});
  }
  EXPECT_EQ(DesignText(*database->Copy()->Data()), DesignText(*database->Data()));
}

}  // namespace
}  // namespace velmoria::test

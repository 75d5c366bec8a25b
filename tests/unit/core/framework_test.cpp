#include "velmoria/core/framework.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/fake_odbc.h"
#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class FrameworkTest : public testing::Test {
 protected:
  std::string SelectedServer() { return apartment_.State().BusinessContext->ServerName(); }

  ScopedApartment apartment_;
  Framework framework_;
};

TEST_F(FrameworkTest, SelfIsTheObjectItself) { EXPECT_EQ(&framework_.Self(), &framework_); }

TEST_F(FrameworkTest, VersionIsTheProductsOwn) { EXPECT_EQ(framework_.Version(), "v1.0-0h"); }

TEST_F(FrameworkTest, SecondFrameworkChangesNothing) {
  const auto messages = framework_.Messages();
  const auto servers = framework_.Servers();
  const Framework second;
  EXPECT_EQ(second.Messages(), messages);
  EXPECT_EQ(second.Servers(), servers);
  EXPECT_EQ(second.Profile(), framework_.Profile());
  EXPECT_EQ(second.Databases(), framework_.Databases());
  EXPECT_EQ(second.ConnectionContext(), framework_.ConnectionContext());
  EXPECT_EQ(apartment_.Log().Starts, 1);
}

TEST_F(FrameworkTest, AccessorsGiveTheObjectsOfTheApartment) {
  const auto& state = apartment_.State();
  EXPECT_EQ(framework_.Messages(), state.Messages);
  EXPECT_EQ(framework_.Profile(), state.Profile);
  EXPECT_EQ(framework_.Databases(), state.Databases);
  EXPECT_EQ(framework_.Servers(), state.Servers);
  EXPECT_EQ(framework_.ConnectionContext(), state.ConnectionContext);
}

// An operation, and the global that it cannot do without.
struct Need {
  const char* Routine;
  void (*Lose)(ApartmentState&);
  void (*Ask)(const Framework&);
};

constexpr Need kNeeds[] = {
    {"Profile (Get)", [](ApartmentState& a) { a.Profile = nullptr; }, [](const Framework& f) { f.Profile(); }},
    {"SupportedEngines (Get)", [](ApartmentState& a) { a.Profile = nullptr; },
     [](const Framework& f) { f.SupportedEngines(); }},
    {"Databases (Get)", [](ApartmentState& a) { a.Databases = nullptr; }, [](const Framework& f) { f.Databases(); }},
    {"Servers (Get)", [](ApartmentState& a) { a.Servers = nullptr; }, [](const Framework& f) { f.Servers(); }},
    {"CreateIdentifier", [](ApartmentState& a) { a.Servers = nullptr; },
     [](const Framework& f) { f.CreateIdentifier("Order"); }},
    {"CreateIdentifier", [](ApartmentState& a) { a.Servers = nullptr; },
     [](const Framework& f) { f.CreateIdentifier("Order", "Sales"); }},
    {"CreateBusinessObjects", [](ApartmentState& a) { a.Servers = nullptr; },
     [](const Framework& f) { f.CreateBusinessObjects({.ClassName = "Order"}); }},
    {"ConnectionContext (Get)", [](ApartmentState& a) { a.ConnectionContext = nullptr; },
     [](const Framework& f) { f.ConnectionContext(); }},
    {"SetupConnection", [](ApartmentState& a) { a.ConnectionContext = nullptr; },
     [](const Framework& f) { f.SetupConnection({.DatabaseName = "Shop"}); }},
    {"GetBusinessObject", [](ApartmentState& a) { a.BusinessContext = nullptr; },
     [](const Framework& f) { f.GetBusinessObject({.ClassName = "Order"}); }},
    {"GetBusinessObjects", [](ApartmentState& a) { a.BusinessContext = nullptr; },
     [](const Framework& f) { f.GetBusinessObjects({.ClassName = "Order"}); }},
    {"CreateBusinessObject", [](ApartmentState& a) { a.BusinessContext = nullptr; },
     [](const Framework& f) { f.CreateBusinessObject({.ClassName = "Order"}); }},
};

TEST_F(FrameworkTest, OperationWhoseGlobalIsMissingReportsItselfWithoutAState) {
  for (const auto& [routine, lose, ask] : kNeeds) {
    SCOPED_TRACE(routine);
    const ScopedApartment apartment;
    lose(apartment.State());
    const auto error = Thrown([&] { ask(framework_); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->CatalogueNumber(), 15000);
    const auto message = apartment.Messages().Item("91");
    ASSERT_TRUE(message);
    EXPECT_EQ(message->TypeName() + "." + message->RoutineName(), std::string("Framework.") + routine);
    EXPECT_EQ(message->StateDetails(), "");
    EXPECT_EQ(apartment.Messages().SuspendRoutine(), "");
  }
}

TEST_F(FrameworkTest, WithoutMessagesAskingForThemFailsByItself) {
  const auto messages = std::exchange(apartment_.State().Messages, nullptr);
  const auto error = Thrown([&] { framework_.Messages(); });
  apartment_.State().Messages = messages;
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Number(), 91);
}

TEST_F(FrameworkTest, ServerNameOfACallStaysForTheNextAndAnEmptyOneClearsIt) {
  const SampleDesign design;
  EXPECT_TRUE(Thrown([&] { framework_.GetBusinessObject({.ClassName = "Nothing", .ServerName = "Sales"}); }));
  EXPECT_EQ(SelectedServer(), "Sales");
  framework_.Messages()->Clear();
  EXPECT_TRUE(Thrown([&] { framework_.GetBusinessObject({.ClassName = "Nothing"}); }));
  EXPECT_EQ(SelectedServer(), "");
}

TEST_F(FrameworkTest, ServerNameOfACollectionCallStaysToo) {
  const SampleDesign design;
  EXPECT_TRUE(Thrown([&] { framework_.GetBusinessObjects({.ClassName = "Nothing", .ServerName = "Stock"}); }));
  EXPECT_EQ(SelectedServer(), "Stock");
}

TEST_F(FrameworkTest, ServerNameOfANewObjectStaysToo) {
  const SampleDesign design;
  EXPECT_TRUE(Thrown([&] { framework_.CreateBusinessObject({.ClassName = "Nothing", .ServerName = "Stock"}); }));
  EXPECT_EQ(SelectedServer(), "Stock");
}

TEST_F(FrameworkTest, NewObjectResetsTheObjectTypeOfTheDefaultContextEvenWhenItIsRefused) {
  const SampleDesign design;
  design.Order->Actions()->Item("Get")->SetEditFlags(efNone);
  apartment_.State().BusinessContext->SetObjectType(otBusiness);
  ExpectRaised(errNotSupported_Insert,
               [&] { framework_.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get"}); },
               {.Text = "Action: 'Get'  EditFlags: '(None)'"});
  EXPECT_EQ(apartment_.State().BusinessContext->ObjectType(), otDefault);
}

TEST_F(FrameworkTest, RequestsGoToTheDefaultContextWithTheirSelectionAndKeys) {
  const SampleDesign design;
  EXPECT_TRUE(Thrown([&] {
    framework_.GetBusinessObject(
        {.ClassName = "Line", .KeyValue1 = 7, .KeyValue2 = 8, .ActionName = "Get", .ServerName = "Sales"});
  }));
  const auto& context = *apartment_.State().BusinessContext;
  EXPECT_EQ(context.ServerName() + context.ClassName() + context.ActionName(), "SalesLineGet");
  EXPECT_EQ(context.KeyValue1(), Variant(7));
  EXPECT_EQ(context.KeyValue2(), Variant(8));
  EXPECT_TRUE(context.KeyValue3().IsEmpty());
}

TEST_F(FrameworkTest, ContextOfOnesOwnIsNotTouchedByTheFront) {
  const SampleDesign design;
  const auto context = framework_.CreateBusinessContext({.ServerName = "Sales", .ClassName = "Order"});
  EXPECT_TRUE(Thrown([&] { framework_.GetBusinessObjects({.ClassName = "Nothing", .ServerName = "Stock"}); }));
  EXPECT_EQ(context->ServerName() + context->ClassName(), "SalesOrder");
}

TEST_F(FrameworkTest, UnknownServerOfARequestIsRaisedThroughTheFront) {
  ExpectRaised(errItem_Server, [&] { framework_.GetBusinessObject({.ClassName = "Order", .ServerName = "Nowhere"}); },
               {.Text = "Problem finding Server.  Index: 'Nowhere'", .Count = 1});
}

TEST_F(FrameworkTest, UnknownClassIsRaisedThroughTheFront) {
  ExpectRaised(errItem_Class, [&] { framework_.GetBusinessObject({.ClassName = "Nothing"}); },
               {.Text = "Index: 'Nothing'"});
}

TEST_F(FrameworkTest, SetupConnectionGivesTheConnectionOfTheContext) {
  const auto connection = framework_.SetupConnection(
      {.DatabaseName = "Shop", .Engine = engODBC, .ConnectionType = ctText, .ConnectionString = "Driver=None"});
  EXPECT_EQ(framework_.ConnectionContext()->GetConnection("Shop"), connection);
}

TEST_F(FrameworkTest, RefusedConnectionIsRaisedThroughTheFront) {
  ExpectRaised(errInvalid_Engine, [&] { framework_.SetupConnection({.DatabaseName = "Shop", .Engine = engRMS}); },
               {.Text = "Engine: 7"});
}

// A driver that repeats the connect string in its complaint, and a log that takes everything.
class PasswordsTest : public FrameworkTest {
 protected:
  PasswordsTest() {
    apartment_.State().Platform.Odbc = driver_;
    framework_.Messages()->SetupLogging();
    driver_->FailName = "DriverConnect";
  }
  std::string Shown(const std::optional<Error>& error) {
    std::string shown = error ? error->Description() : std::string();
    shown += framework_.Messages()->Details();
    for (const auto& message : *framework_.Messages()) {
      shown += message->Details() + message->StateDetails() + message->ExtraText();
    }
    for (const auto& line : apartment_.Log().Lines) shown += line.Text;
    return shown;
  }
  static void ExpectHidden(const std::string& shown, const char* password) {
    EXPECT_NE(shown.find("cannot open"), std::string::npos) << shown;
    EXPECT_EQ(shown.find(password), std::string::npos) << shown;
  }

  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
};

TEST_F(PasswordsTest, PasswordThatADriverRepeatsIsShownNowhere) {
  driver_->Diagnostics = {{"08001", 1, "cannot open 'DSN=Shop;UID=u;PWD=hidden'"},
                          {"01000", 2, "cannot open it with password = hidden"}};
  const auto connection = framework_.SetupConnection({.DatabaseName = "Shop",
                                                      .Engine = engODBC,
                                                      .ConnectionType = ctDSN,
                                                      .ConnectionString = "Shop",
                                                      .Password = "hidden",
                                                      .UserName = "u"});
  const auto error = Thrown([&] { connection->Connect(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(driver_->CallsOf["DriverConnect"], 1);
  ExpectHidden(Shown(error), "hidden");
}

TEST_F(PasswordsTest, PasswordInsideAConnectStringIsShownNowhere) {
  driver_->Diagnostics = {{"08001", 1, "cannot open 'Driver=X;PWD={hid;den};UID=u'"}};
  const SampleDesign design("Driver=X;PWD={hid;den};UID=u");
  const auto error = Thrown([&] { framework_.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1}); });
  ASSERT_TRUE(error);
  ExpectHidden(Shown(error), "hid;den");
}

TEST_F(PasswordsTest, RefusedSetupOfAConnectionShowsNoPassword) {
  const auto error = Thrown([&] {
    framework_.SetupConnection({.DatabaseName = "Shop",
                                .Engine = engSQLServer,
                                .ConnectionType = ctFile,
                                .ConnectionString = "Driver=X;PWD=hidden",
                                .Password = "hidden"});
  });
  ASSERT_TRUE(error);
  EXPECT_EQ(Shown(error).find("hidden"), std::string::npos);
}

}  // namespace
}  // namespace velmoria::test

#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/business_context_fixture.h"

namespace velmoria::test {
namespace {

TEST_F(BusinessContextTest, FreshContextSelectsNothing) {
  const auto context = NewContext();
  EXPECT_EQ(context->ServerName() + context->ClassName() + context->ActionName(), "");
  EXPECT_EQ(context->CollectionType(), cltDefault);
  EXPECT_EQ(context->ObjectType(), otDefault);
  EXPECT_TRUE(context->SupportsAdd() && context->SupportsRemove() && context->SupportsLoad());
}

TEST_F(BusinessContextTest, SetupAppliesNamesBeforeTheLocksThatPinThem) {
  const auto context =
      NewContext({.ServerName = "Sales", .ServerLocked = true, .ClassName = "Order", .ClassLocked = true});
  EXPECT_EQ(context->ClassName(), "Order");
  EXPECT_TRUE(context->ServerLocked() && context->ClassLocked());
}

TEST_F(BusinessContextTest, SetupOfALockedContextIsRefused) {
  const auto context = NewContext({.Locked = true});
  ExpectRaised(errVelmoria_Locked, [&] { context->Setup({}); });
}

TEST_F(BusinessContextTest, PresentServerNameLeavesTheClassInPlace) {
  const auto context = NewContext({.ServerName = "Sales", .ClassName = "Order"});
  context->SetServerName("Sales");
  EXPECT_EQ(context->ClassName(), "Order");
}

TEST_F(BusinessContextTest, AnotherServerNameClearsTheClass) {
  const auto context = NewContext({.ServerName = "Sales", .ClassName = "Order"});
  context->SetServerName("Stock");
  EXPECT_EQ(context->ClassName(), "");
}

TEST_F(BusinessContextTest, ClassNameWithoutServerFindsTheServerThatHasIt) {
  const auto context = NewContext();
  context->SetClassName("Item");
  EXPECT_EQ(context->ServerName(), "Stock");
  EXPECT_EQ(context->ClassName(), "Item");
}

TEST_F(BusinessContextTest, UnknownClassWithoutServerIsReportedWithTheRegisteredServers) {
  const auto context = NewContext();
  ExpectRaised(errItem_Class, [&] { context->SetClassName("Invoice"); },
               {.Text = "Index: 'Invoice'\r\nCan't find Class in registered Servers.", .Count = 1});
}

TEST_F(BusinessContextTest, UnknownClassLeavesTheContextWithoutClassAndAction) {
  const auto context = NewContext({.ServerName = "Sales", .ClassName = "Order", .ActionName = "All"});
  ExpectRaised(errItem_Class, [&] { context->SetClassName("Invoice"); });
  EXPECT_EQ(context->ClassName() + context->ActionName(), "");
}

TEST_F(BusinessContextTest, UnknownServerIsReportedWhenTheClassIsSought) {
  const auto context = NewContext({.ServerName = "Nowhere"});
  ExpectRaised(errItem_Server, [&] { context->SetClassName("Order"); }, {.Text = "Index: 'Nowhere'"});
}

TEST_F(BusinessContextTest, ActionWithoutClassIsReported) {
  const auto context = NewContext();
  ExpectRaised(errRequires_Class, [&] { context->SetActionName("All"); },
               {.Text = "Operation: 'Changing Action in BusinessContext'"});
}

TEST_F(BusinessContextTest, EmptyActionNameIsLookedUpLikeAnyName) {
  const auto context = NewContext({.ClassName = "Order"});
  ExpectRaised(errItem_Action, [&] { context->SetActionName(""); }, {.Text = "Index: ''"});
}

TEST_F(BusinessContextTest, LockedActionSurvivesAnotherClass) {
  const auto context = NewContext({.ClassName = "Order", .ActionName = "All", .ActionLocked = true});
  context->SetClassName("Line");
  EXPECT_EQ(context->ClassName(), "Line");
  EXPECT_EQ(context->ActionName(), "All");
}

TEST_F(BusinessContextTest, LockedServerRefusesEvenItsOwnName) {
  const auto context = NewContext({.ServerName = "Sales", .ServerLocked = true});
  ExpectRaised(errVelmoria_Locked, [&] { context->SetServerName("Sales"); },
               {.Text = "This BusinessContext is set up to only use the 'Sales' Server"});
}

TEST_F(BusinessContextTest, LockedClassRefusesAndTheNewServerNameStays) {
  const auto context = NewContext({.ServerName = "Sales", .ClassName = "Order", .ClassLocked = true});
  ExpectRaised(errVelmoria_Locked, [&] { context->SetServerName("Stock"); },
               {.Text = "This BusinessContext is set up to only use the 'Order' Class"});
  EXPECT_EQ(context->ServerName(), "Stock");
}

TEST_F(BusinessContextTest, LockedActionRefusesAnother) {
  const auto context = NewContext({.ClassName = "Order", .ActionName = "All", .ActionLocked = true});
  ExpectRaised(errVelmoria_Locked, [&] { context->SetActionName("Get"); },
               {.Text = "This BusinessContext is set up to only use the 'All' Action"});
}

TEST_F(BusinessContextTest, LockedSelectionWithoutNameHasNoExtraText) {
  const auto context = NewContext({.ServerLocked = true});
  const auto error = Thrown([&] { context->SetServerName("Sales"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Description().find("set up to only use"), std::string::npos);
}

TEST_F(BusinessContextTest, LockedContextRefusesEverySetting) {
  const auto context = NewContext({.Locked = true});
  const std::pair<const char*, void (*)(BusinessContext&)> setters[] = {
      {"ServerLocked (Let)", [](BusinessContext& c) { c.SetServerLocked(true); }},
      {"ClassLocked (Let)", [](BusinessContext& c) { c.SetClassLocked(true); }},
      {"ActionLocked (Let)", [](BusinessContext& c) { c.SetActionLocked(true); }},
      {"RelationshipLocked (Let)", [](BusinessContext& c) { c.SetRelationshipLocked(true); }},
      {"CollectionType (Let)", [](BusinessContext& c) { c.SetCollectionType(cltOptimized); }},
      {"ObjectType (Let)", [](BusinessContext& c) { c.SetObjectType(otModel); }},
      {"SupportsAdd (Let)", [](BusinessContext& c) { c.SetSupportsAdd(false); }},
      {"SupportsRemove (Let)", [](BusinessContext& c) { c.SetSupportsRemove(false); }},
      {"SupportsLoad (Let)", [](BusinessContext& c) { c.SetSupportsLoad(false); }},
  };
  for (const auto& [routine, set] : setters) {
    SCOPED_TRACE(routine);
    EXPECT_TRUE(Thrown([&] { set(*context); }));
    EXPECT_EQ(apartment_.Messages().Item("15002")->RoutineName(), routine);
    apartment_.Messages().Clear();
  }
  context->SetLocked(false);
  context->SetObjectType(otModel);
  EXPECT_EQ(context->ObjectType(), otModel);
}

TEST_F(BusinessContextTest, RefusalOfASelectionNamesTheRoutineThatMetItsLock) {
  const BusinessContextFields pinned{.ServerName = "Sales",
                                     .ServerLocked = true,
                                     .ClassName = "Order",
                                     .ClassLocked = true,
                                     .ActionName = "All",
                                     .ActionLocked = true};
  const std::tuple<const char*, const char*, void (*)(BusinessContext&)> setters[] = {
      {"15002", "ServerName (Let)", [](BusinessContext& c) { c.SetServerName("Stock"); }},
      {"15002", "ChangeClass", [](BusinessContext& c) { c.SetClassName("Line"); }},
      {"15002", "ActionName (Let)", [](BusinessContext& c) { c.SetActionName("Get"); }},
      {"15065", "ClassName (Let)", [](BusinessContext& c) { c.Setup({.ClassName = "Invoice"}); }},
      {"15157", "ChangeActionName", [](BusinessContext& c) { c.Setup({.ActionName = "Get"}); }},
      {"15157", "PrepareParameters", [](BusinessContext& c) { c.Parameters(); }},
      {"15063", "Item", [](BusinessContext& c) { c.Item(1); }},
      {"15093", "RelationshipName (Let)", [](BusinessContext& c) { c.SetRelationshipName("Lines"); }},
      {"15005", "Add", [](BusinessContext& c) { c.Add(Collection("A"), {.Before = 1, .After = 1}); }},
      {"15082", "Add",
       [](BusinessContext& c) {
         c.SetSupportsAdd(false);
         c.Add(Collection("A"));
       }},
      {"15083", "Remove",
       [](BusinessContext& c) {
         c.SetSupportsRemove(false);
         c.Remove(1);
       }},
  };
  for (const auto& [number, routine, call] : setters) {
    SCOPED_TRACE(routine);
    const auto context = NewContext(std::string(number) == "15002" ? pinned : BusinessContextFields{});
    EXPECT_TRUE(Thrown([&, use = call] { use(*context); }));
    const MessagePtr message = apartment_.Messages().Item(number);
    EXPECT_EQ(message->TypeName() + "." + message->RoutineName(), std::string("BusinessContext.") + routine);
    EXPECT_NE(message->StateDetails().find("Server: '"), std::string::npos);
    apartment_.Messages().Clear();
  }
}

TEST_F(BusinessContextTest, FailuresCarryTheWordsOfWhatWasAsked) {
  struct Failure {
    const char* Number;
    void (*Call)(BusinessContext&);
    const char* Replace1;
    const char* ExtraText;
  };
  const Failure failures[] = {
      {"15065", [](BusinessContext& c) { c.SetClassName("Invoice"); }, "'Invoice'",
       "Can't find Class in registered Servers."},
      {"15157", [](BusinessContext& c) { c.SetActionName("Get"); }, "Changing Action in BusinessContext", ""},
      {"15157", [](BusinessContext& c) { c.Parameters(); }, "Processing BusinessObjects or Properties",
       "Can't find ClassName: '' in registered Servers."},
      {"15093", [](BusinessContext& c) { c.SetRelationshipName("Lines"); }, "", ""},
      {"15063", [](BusinessContext& c) { c.Item("Lines"); }, "'Lines'", ""},
      {"15005", [](BusinessContext& c) { c.Add(Collection("Lines"), {.Before = "A", .After = 2}); }, "Lines",
       "Passing both Before and After arguments is not allowed."},
  };
  for (const Failure& failure : failures) {
    SCOPED_TRACE(failure.Number);
    const auto context = NewContext();
    EXPECT_TRUE(Thrown([&] { failure.Call(*context); }));
    const MessagePtr message = apartment_.Messages().Item(failure.Number);
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->Replace1(), failure.Replace1);
    EXPECT_EQ(message->ExtraText(), failure.ExtraText);
    EXPECT_EQ(message->TypeFlags(), tfVelmoria);
    EXPECT_EQ(message->SeverityFlags(), svfError);
    EXPECT_EQ(message->StateDetails(), context->Details());
    apartment_.Messages().Clear();
  }
}

TEST_F(BusinessContextTest, ParametersAndIdentifierAreEachOthersReset) {
  const auto context = NewContext({.ClassName = "Order"});
  context->SetIdentifier(design_.Order->CreateIdentifier());
  const PropertiesPtr built = context->Parameters();
  EXPECT_EQ(built->Count(), 1);
  context->SetParameters(SomeParameters());
  EXPECT_EQ(context->Identifier(), nullptr);
  context->SetIdentifier(design_.Order->CreateIdentifier());
  EXPECT_NE(context->Parameters(), built);
}

TEST_F(BusinessContextTest, IdentifierSelectsServerClassAndSingleAction) {
  const auto context = NewContext();
  context->SetIdentifier(design_.Item->CreateIdentifier());
  EXPECT_EQ(context->ServerName(), "Stock");
  EXPECT_EQ(context->ClassName(), "Item");
  EXPECT_EQ(context->ActionName(), "Get");
}

TEST_F(BusinessContextTest, KeyValuesFillTheIdentifierInOrder) {
  const auto context = NewContext({.ClassName = "Line", .ActionName = "Get"});
  context->SetKeyValue1(7);
  context->SetKeyValue2(2);
  EXPECT_EQ(context->Parameters()->Item("OrderId")->Value(), Variant(7));
  EXPECT_EQ(context->Parameters()->Item("LineNo")->Value(), Variant(2));
}

TEST_F(BusinessContextTest, SurplusKeyValueIsIgnored) {
  const auto context = NewContext({.ClassName = "Line", .ActionName = "Get"});
  context->SetKeyValue1(7);
  context->SetKeyValue2(2);
  context->SetKeyValue3(9);
  EXPECT_EQ(context->Parameters()->Count(), 2);
}

TEST_F(BusinessContextTest, ParametersWithoutActionTakeTheDefaultActionWhichClearsTheKeyValues) {
  const auto context = NewContext({.ClassName = "Line"});
  context->SetKeyValue1(7);
  EXPECT_EQ(context->Parameters()->Count(), 0);
  EXPECT_EQ(context->ActionName(), "Get");
  EXPECT_TRUE(context->KeyValue1().IsEmpty());
}

TEST_F(BusinessContextTest, ChangedKeyValueEmptiesIdentifierAndParameters) {
  const auto context = NewContext({.ClassName = "Order", .ActionName = "Get"});
  context->SetKeyValue1(7);
  const PropertiesPtr first = context->Parameters();
  context->SetKeyValue1(7);
  EXPECT_EQ(context->Parameters(), first);
  context->SetKeyValue1(8);
  EXPECT_EQ(context->Identifier(), nullptr);
  EXPECT_NE(context->Parameters(), first);
}

TEST_F(BusinessContextTest, AnotherActionClearsIdentityParametersAndKeyValues) {
  const auto context = NewContext({.ClassName = "Order", .ActionName = "Get"});
  context->SetKeyValue1(7);
  context->Parameters();
  context->SetActionName("All");
  EXPECT_EQ(context->Identifier(), nullptr);
  EXPECT_TRUE(context->KeyValue1().IsEmpty());
}

TEST_F(BusinessContextTest, ParametersWithoutClassAreReported) {
  const auto context = NewContext();
  ExpectRaised(errRequires_Class, [&] { context->Parameters(); },
               {.Text = "Can't find ClassName: '' in registered Servers."});
}

TEST_F(BusinessContextTest, ParametersOfADatabaseWithoutAutoConnectAreReported) {
  Framework{}.Databases()->Item("Shop")->SetAutoConnect(false);
  const auto context = NewContext({.ClassName = "Order"});
  ExpectRaised(errNotSupported_AutoConnect, [&] { context->Parameters(); }, {.Text = "Database: Shop"});
}

TEST_F(BusinessContextTest, IdentifierOfNoneIsAnObjectNotSet) {
  const auto context = NewContext({.ClassName = "Order"});
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context->SetIdentifier({}); });
  EXPECT_EQ(context->ClassName(), "Order");
}

TEST_F(BusinessContextTest, ClassFoundByTheWalkPinsItsServerForTheNextName) {
  const auto context = NewContext({.ClassName = "Order"});
  ExpectRaised(errItem_Class, [&] { context->SetClassName("Item"); }, {.Text = "Index: 'Item'"});
}

TEST_F(BusinessContextTest, ParametersOfALockedActionAreUsedAgainForAnotherClass) {
  const auto context = NewContext({.ClassName = "Line", .ActionName = "Get", .ActionLocked = true});
  context->SetKeyValue1(7);
  context->SetKeyValue2(2);
  const PropertiesPtr parameters = context->Parameters();
  context->SetClassName("Order");
  EXPECT_EQ(context->Parameters(), parameters);
  EXPECT_EQ(context->KeyValue2(), Variant(2));
}

TEST_F(BusinessContextTest, DetailsTellTheSelectionAndItsLocks) {
  const auto context = NewContext(
      {.ServerName = "Sales", .ServerLocked = true, .ClassName = "Line", .ActionName = "Get", .ObjectType = otModel});
  context->SetKeyValue1(7);
  context->SetKeyValue2(2);
  EXPECT_EQ(context->Details(),
            "  Server: 'Sales' (Locked)  Class: 'Line'  Action: 'Get'  ObjectTypes: 'Velmoria Model'  CollectionType: "
            "''\r\nKeyValue1: '7'  KeyValue2: '2'");
}

TEST_F(BusinessContextTest, DetailsTellParametersThenIdentifierThenKeyValuesThenHeldCollections) {
  const auto context = NewContext({.ServerName = "Sales",
                                   .ServerLocked = true,
                                   .ClassName = "Order",
                                   .ClassLocked = true,
                                   .ActionName = "Get",
                                   .ActionLocked = true,
                                   .CollectionType = cltOptimized});
  context->SetKeyValue1(7);
  const std::string parameters = context->Parameters()->Details();
  const std::string identifier = context->Identifier()->Details();
  context->Add(Collection("Lines"));
  context->Add(Collection("Notes"));
  EXPECT_TRUE(identifier.starts_with("Identifier for Server: 'Sales'  Class: 'Order'\r\n"));
  EXPECT_NE(parameters.find("Properties Count 1"), std::string::npos) << parameters;
  EXPECT_EQ(context->Details(),
            "  Server: 'Sales' (Locked)  Class: 'Order' (Locked)  Action: 'Get' (Locked)  ObjectTypes: '(Default)'"
            "  CollectionType: 'Optimized'\r\n" +
                parameters + "\r\n" + identifier +
                "\r\nKeyValue1: '7'"
                "    Business Object Count 0 for Business Objects 'Lines'"
                "    Business Object Count 0 for Business Objects 'Notes'");
}

}  // namespace
}  // namespace velmoria::test

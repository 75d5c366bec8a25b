#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class BusinessContextTest : public testing::Test {
 protected:
  static BusinessContextPtr NewContext(const BusinessContextFields& fields = {}) {
    auto context = Make<BusinessContext>();
    context->Setup(fields);
    return context;
  }
  static IBusinessObjectsPtr Collection(const std::string& name) {
    return Framework{}.CreateBusinessObjects({.Name = name});
  }
  static PropertiesPtr SomeParameters() {
    PropertiesPtr parameters = Framework{}.CreateProperties();
    parameters->SetupItem({.Name = "Id", .Value = 5, .DataType = dtLongInteger});
    return parameters;
  }

  ScopedApartment apartment_;
  SampleDesign design_;
};

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

TEST_F(BusinessContextTest, IdentifierBuildsTheParametersBeforeTheUsageOfTheActionIsAsked) {
  Framework{}.Databases()->Item("Shop")->SetAutoConnect(false);
  design_.Order->Actions()->Item("Get")->SetUsageFlags(ufProperties);
  const auto context = NewContext();
  ExpectRaised(errNotSupported_BusinessObjects,
               [&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1}); });
  ExpectRaised(errNotSupported_AutoConnect,
               [&] { context->GetBusinessObject({.Identifier = design_.Order->CreateIdentifier()}); });
}

TEST_F(BusinessContextTest, KeyValuesCountOnlyBehindTheOneBefore) {
  const auto context = NewContext({.ClassName = "Line"});
  Thrown([&] { context->GetBusinessObject({.ClassName = "Line", .KeyValue1 = 7, .KeyValue3 = 9}); });
  EXPECT_EQ(context->KeyValue1(), Variant(7));
  EXPECT_TRUE(context->KeyValue2().IsEmpty());
  EXPECT_TRUE(context->KeyValue3().IsEmpty());
}

TEST_F(BusinessContextTest, LockedSelectionIsKeptSilentlyByARequest) {
  const auto context = NewContext({.ServerName = "Sales",
                                   .ServerLocked = true,
                                   .ClassName = "Order",
                                   .ClassLocked = true,
                                   .ActionName = "All",
                                   .ActionLocked = true});
  Thrown([&] { context->GetBusinessObjects({.ClassName = "Item", .ActionName = "Get", .ServerName = "Stock"}); });
  EXPECT_EQ(context->ServerName() + context->ClassName() + context->ActionName(), "SalesOrderAll");
}

TEST_F(BusinessContextTest, HeldCollectionIsFoundByNameAndPosition) {
  const auto context = NewContext();
  const auto lines = Collection("Lines");
  context->Add(lines);
  EXPECT_EQ(context->Item("lines"), lines);
  EXPECT_EQ(context->Item(1), lines);
  EXPECT_EQ(context->Count(), 1);
}

TEST_F(BusinessContextTest, AddPlacesByPosition) {
  const auto context = NewContext();
  context->Add(Collection("A"));
  context->Add(Collection("C"));
  context->Add(Collection("B"), {.Before = "C"});
  context->Add(Collection("D"), {.After = 3});
  std::string names;
  for (const auto& held : *context) names += held->Name();
  EXPECT_EQ(names, "ABCD");
}

TEST_F(BusinessContextTest, AddWithBothPositionsIsRefused) {
  const auto context = NewContext();
  ExpectRaised(errAdd_BusinessObjects, [&] { context->Add(Collection("A"), {.Before = 1, .After = 2}); },
               {.Text = "Name: 'A'  Before: 1  After: 2\r\nPassing both Before and After arguments is not allowed."});
}

TEST_F(BusinessContextTest, AddOfANameInUseFails) {
  const auto context = NewContext();
  context->Add(Collection("A"));
  ExpectReported(RuntimeFailure::KeyInUse, [&] { context->Add(Collection("a")); });
}

TEST_F(BusinessContextTest, AddIsRefusedBeforeAnyEventWhenNotSupported) {
  const auto context = NewContext({.SupportsAdd = false});
  bool asked = false;
  context->BeforeAdd += [&](IBusinessObjects&, bool&) { asked = true; };
  EXPECT_FALSE(context->SupportsAdd());
  ExpectRaised(errNotSupported_Add, [&] { context->Add(Collection("A")); });
  EXPECT_FALSE(asked);
}

TEST_F(BusinessContextTest, CancelledAddAddsNothingSilently) {
  const auto context = NewContext();
  bool after = false;
  context->BeforeAdd += [](IBusinessObjects&, bool& Cancel) { Cancel = true; };
  context->AfterAdd += [&](IBusinessObjects&) { after = true; };
  context->Add(Collection("A"));
  EXPECT_EQ(context->Count(), 0);
  EXPECT_FALSE(after);
}

TEST_F(BusinessContextTest, RemoveTakesACollectionOut) {
  const auto context = NewContext();
  context->Add(Collection("A"));
  context->Remove("a");
  EXPECT_EQ(context->Count(), 0);
}

TEST_F(BusinessContextTest, RemoveIsRefusedWhenNotSupported) {
  const auto context = NewContext({.SupportsRemove = false});
  ExpectRaised(errNotSupported_Remove, [&] { context->Remove(1); });
}

TEST_F(BusinessContextTest, ListenerOfItemNotFoundPreventsTheError) {
  const auto context = NewContext();
  const auto supplied = Collection("Lines");
  context->ItemNotFound += [&](const Variant&, IBusinessObjectsPtr& Item) { Item = supplied; };
  EXPECT_EQ(context->Item("Lines"), supplied);
}

TEST_F(BusinessContextTest, UnknownIndexIsShownByItsType) {
  const auto context = NewContext();
  const std::pair<Variant, const char*> cases[] = {{5, "Index: 5"},
                                                   {std::int16_t{5}, "Index: 5"},
                                                   {5.5F, "Index: 5.5"},
                                                   {Decimal::Parse("5"), "Index: 5"},
                                                   {Byte{5}, "Index: 5"},
                                                   {"x", "Index: 'x'"},
                                                   {5.5, "Index: (Double)"},
                                                   {true, "Index: (Boolean)"},
                                                   {Variant::Missing(), "Index: (Error)"},
                                                   {IdentifierPtr{}, "Index: (Nothing)"}};
  for (const auto& [index, text] : cases) {
    SCOPED_TRACE(text);
    ExpectRaised(errItem_BusinessObjects, [&] { context->Item(index); }, {.Text = text});
  }
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

TEST_F(BusinessContextTest, ActionThatBuildsNoObjectsRefusesBeforeAnyDatabaseWork) {
  design_.Order->Actions()->Item("Get")->SetUsageFlags(ufProperties);
  const auto context = NewContext();
  ExpectRaised(errNotSupported_BusinessObjects,
               [&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1}); },
               {.Text = "Action: 'Get'  UsageFlags: 'Properties'"});
  ExpectRaised(errNotSupported_BusinessObjects, [&] { context->GetBusinessObjects({.ClassName = "Order"}); });
  EXPECT_EQ(Framework{}.ConnectionContext()->Item("")->Count(), 0);
}

TEST_F(BusinessContextTest, RequestWithoutAnySelectionFailsAsObjectNotSet) {
  const auto context = NewContext();
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context->GetBusinessObject(); });
}

TEST_F(BusinessContextTest, KeyValueOnAClassWithoutSingleActionFailsInTheLookup) {
  design_.Order->SetSingleActionName("");
  const auto context = NewContext();
  ExpectRaised(errItem_Action, [&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1}); },
               {.Text = "Index: ''"});
}

TEST_F(BusinessContextTest, LoadingIsRefusedEvenForAHeldCollection) {
  const auto context = NewContext({.SupportsLoad = false});
  context->Add(Collection("Orders"));
  ExpectRaised(errBusinessObjects_Load, [&] { context->LoadBusinessObjects({.Name = "Orders"}); });
}

TEST_F(BusinessContextTest, LoadReturnsAHeldCollectionWithoutLookingAtTheArguments) {
  const auto context = NewContext();
  const auto held = Collection("Orders");
  context->Add(held);
  EXPECT_EQ(context->LoadBusinessObjects({.ClassName = "Nothing", .Name = "Orders"}), held);
  EXPECT_EQ(context->LoadBusinessObjects({.ActionName = "orders"}), held);
}

TEST_F(BusinessContextTest, FailedOpenIsReportedAsTheConnection) {
  const auto context = NewContext();
  ExpectRaised(errRDO_Connection, [&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1}); });
}

}  // namespace
}  // namespace velmoria::test

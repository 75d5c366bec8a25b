#include "velmoria/properties/property_context.h"

#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

PropertiesPtr Values(const std::string& name, const std::vector<PropertyFields>& members = {}) {
  const PropertiesPtr values = Framework{}.CreateProperties({.Name = name});
  for (const auto& member : members) values->SetupItem(member);
  return values;
}

PropertyFields Number(const std::string& name, std::int32_t value) {
  return {.Name = name, .Value = value, .DataType = dtLongInteger};
}

class PropertyContextTest : public testing::Test {
 protected:
  static std::string Names(const PropertyContext& context) {
    std::string names;
    for (const auto& properties : context) names += properties->Name();
    return names;
  }

  ScopedApartment apartment_;
  PropertyContextPtr context_ = Framework{}.CreatePropertyContext();
};

TEST_F(PropertyContextTest, TransientContextRefusesToLoadBeforeItSaysThatItIsTransient) {
  EXPECT_FALSE(context_->SupportsLoad());
  ExpectRaised(errProperties_Load, [&] { context_->LoadProperties("Detail"); }, {.Count = 1});
  context_->SetSupportsLoad(true);
  ExpectRaised(errPropertyContext_Transient, [&] { context_->LoadProperties("Detail"); }, {.Count = 1});
}

TEST_F(PropertyContextTest, TransientContextHasNoBroker) {
  const std::pair<const char*, void (*)(PropertyContext&)> routines[] = {
      {"GetProperties", [](PropertyContext& c) { c.GetProperties("Detail"); }},
      {"ActionName", [](PropertyContext& c) { c.ActionName(); }},
      {"SetActionName", [](PropertyContext& c) { c.SetActionName("Detail"); }},
      {"Parameters", [](PropertyContext& c) { c.Parameters(); }},
      {"SetParameters", [](PropertyContext& c) { c.SetParameters(Values("p")); }},
  };
  for (const auto& [name, routine] : routines) {
    SCOPED_TRACE(name);
    ExpectRaised(errPropertyContext_Transient, [&] { routine(*context_); }, {.Count = 1});
  }
  EXPECT_EQ(context_->Identifier(), nullptr);
}

TEST_F(PropertyContextTest, CollectionsAreFoundByNameAndPosition) {
  const auto a = Values("A");
  context_->Add(a);
  context_->SetupItem(Values("B"));
  EXPECT_EQ(context_->Item("a"), a);
  EXPECT_EQ(context_->Item(1), a);
  EXPECT_EQ(context_->Count(), 2);
  EXPECT_EQ(Names(*context_), "AB");
}

TEST_F(PropertyContextTest, UnknownCollectionIsShownByTheTypeOfTheIndex) {
  const std::pair<Variant, const char*> cases[] = {
      {5, "Index: 5"},     {5.5, "Index: 5.5"},         {5.5F, "Index: 5.5"},
      {"x", "Index: 'x'"}, {true, "Index: (Boolean)"},  {Variant(), "Index: (Empty)"},
      {0, "Index: 0"},     {Variant::Null(), "(Null)"}, {IdentifierPtr{}, "Index: (Nothing)"}};
  for (const auto& [index, text] : cases) {
    SCOPED_TRACE(text);
    ExpectRaised(errItem_Properties, [&] { context_->Item(index); }, {.Text = text, .Count = 1});
  }
}

TEST_F(PropertyContextTest, ListenerOfItemNotFoundSuppliesTheCollection) {
  const auto supplied = Values("A");
  context_->ItemNotFound += [&](const Variant& index, PropertiesPtr& Item) {
    if (index.AsText() == "A") Item = supplied;
  };
  EXPECT_EQ(context_->Item("A"), supplied);
  EXPECT_EQ(context_->Count(), 0);
  ExpectRaised(errItem_Properties, [&] { context_->Item("B"); });
}

TEST_F(PropertyContextTest, AddPlacesByPosition) {
  context_->Add(Values("A"));
  context_->Add(Values("C"));
  context_->Add(Values("B"), {.Before = "C"});
  context_->Add(Values("D"), {.After = 3});
  EXPECT_EQ(Names(*context_), "ABCD");
}

TEST_F(PropertyContextTest, AddWithBothPositionsIsRefused) {
  ExpectRaised(errAdd_Properties, [&] { context_->Add(Values("A"), {.Before = 1, .After = 2}); },
               {.Text = "Passing both Before and After arguments is not allowed.", .Count = 1});
  EXPECT_EQ(context_->Count(), 0);
}

TEST_F(PropertyContextTest, AddOfANameInUseFails) {
  context_->Add(Values("A"));
  ExpectReported(RuntimeFailure::KeyInUse, [&] { context_->Add(Values("a")); });
}

TEST_F(PropertyContextTest, AddOfNoneIsAnObjectNotSet) {
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->Add({}); });
}

TEST_F(PropertyContextTest, AddIsRefusedBeforeAnyEventWhenNotSupported) {
  bool asked = false;
  context_->BeforeAdd += [&](Properties&, bool&) { asked = true; };
  context_->SetSupportsAdd(false);
  ExpectRaised(errNotSupported_Add, [&] { context_->Add(Values("A")); });
  EXPECT_FALSE(asked);
}

TEST_F(PropertyContextTest, CancelledAddAndRemoveChangeNothingAndEndSilently) {
  std::string heard;
  context_->Add(Values("A"));
  context_->BeforeAdd += [](Properties&, bool& Cancel) { Cancel = true; };
  context_->BeforeRemove += [](Properties&, bool& Cancel) { Cancel = true; };
  context_->AfterAdd += [&](Properties&) { heard += "added"; };
  context_->AfterRemove += [&](Properties&) { heard += "removed"; };
  context_->Add(Values("B"));
  context_->Remove("A");
  EXPECT_EQ(Names(*context_), "A");
  EXPECT_EQ(heard, "");
}

TEST_F(PropertyContextTest, AddAndRemoveAreHeard) {
  std::string heard;
  context_->AfterAdd += [&](Properties& item) { heard += "+" + item.Name(); };
  context_->AfterRemove += [&](Properties& item) { heard += "-" + item.Name(); };
  context_->Add(Values("A"));
  context_->Remove(1);
  EXPECT_EQ(heard, "+A-A");
  EXPECT_EQ(context_->Count(), 0);
}

TEST_F(PropertyContextTest, RemoveIsRefusedWhenNotSupported) {
  context_->Add(Values("A"));
  context_->SetSupportsRemove(false);
  ExpectRaised(errNotSupported_Remove, [&] { context_->Remove("A"); });
}

TEST_F(PropertyContextTest, RemoveOfAnUnknownCollectionRaisesTheMissAndHoldsItsOwnNumberBesideIt) {
  EXPECT_EQ(Thrown([&] { context_->Remove("x"); })->CatalogueNumber(), 15071);
  const MessagePtr own = apartment_.Messages().Item("15141");
  ASSERT_NE(own, nullptr);
  EXPECT_EQ(own->Description(), "Problem removing Properties from PropertyContext. Index: 'x'");
  EXPECT_EQ(apartment_.Messages().Count(), 2);
}

TEST_F(PropertyContextTest, FailureWhileRemovingIsRaisedAsTheRemovalsOwnNumber) {
  context_->Add(Values("A"));
  context_->BeforeRemove += [](Properties&, bool&) { Fail(RuntimeFailure::DeviceError); };
  ExpectRaised(errRemove_Properties, [&] { context_->Remove(1); }, {.Text = "Index: 1", .Count = 2});
}

TEST_F(PropertyContextTest, LockedContextRefusesItsSettings) {
  const auto locked =
      Framework{}.CreatePropertyContext({.Locked = true, .SupportsAdd = false, .SupportsRemove = false});
  EXPECT_FALSE(locked->SupportsAdd() || locked->SupportsRemove() || locked->SupportsLoad());
  ExpectRaised(errVelmoria_Locked, [&] { locked->SetSupportsAdd(true); });
  ExpectRaised(errVelmoria_Locked, [&] { locked->SetSupportsRemove(true); });
  ExpectRaised(errVelmoria_Locked, [&] { locked->SetSupportsLoad(true); });
  ExpectRaised(errVelmoria_Locked, [&] { locked->Setup(false, true, true); },
               {.Text = "This property is locked and cannot be changed."});
  locked->SetLocked(false);
  locked->SetSupportsAdd(true);
  EXPECT_TRUE(locked->SupportsAdd());
}

TEST_F(PropertyContextTest, DetailsOfATransientContextTellItsCollections) {
  context_->Add(Values("A", {Number("Id", 1)}));
  context_->Add(Values("B"));
  EXPECT_EQ(context_->Details(),
            "Properties Count 2\r\n    Properties Count 1 for Properties 'A'"
            "\r\n    Properties Count 0 for Properties 'B'");
}

TEST_F(PropertyContextTest, ModifiableAsksAllOrAny) {
  EXPECT_TRUE(context_->Modifiable(true));
  EXPECT_FALSE(context_->Modifiable(false));
  const auto fixed = Values("A", {Number("Id", 1)});
  fixed->Item("Id")->SetModifiable(false);
  context_->Add(fixed);
  context_->Add(Values("B", {Number("Id", 1)}));
  EXPECT_FALSE(context_->Modifiable(true));
  EXPECT_TRUE(context_->Modifiable(false));
}

class FindPropertyTest : public PropertyContextTest {
 protected:
  FindPropertyTest() {
    context_->Add(first_);
    context_->Add(second_);
  }
  PropertiesPtr first_ = Values("First", {Number("Id", 1), Number("Total", 2)});
  PropertiesPtr second_ = Values("Second", {Number("Total", 3), Number("Note", 4)});
};

TEST_F(FindPropertyTest, NumberCountsOverAllCollectionsAsOneList) {
  EXPECT_EQ(context_->PropertyCount(), 4);
  EXPECT_EQ(context_->FindProperty(2), first_->Item(2));
  EXPECT_EQ(context_->FindProperty(3), second_->Item(1));
  EXPECT_EQ(context_->FindProperty(4.0), second_->Item(2));
}

TEST_F(FindPropertyTest, NameInBothCollectionsIsThatOfTheFirst) {
  EXPECT_EQ(context_->FindProperty("total"), first_->Item("Total"));
  EXPECT_EQ(context_->FindProperty("Note"), second_->Item("Note"));
}

TEST_F(FindPropertyTest, ParameterIsSoughtByItsIdentityInEveryCollection) {
  const PropertyPtr parameter = Framework{}.CreateProperty({.Name = "Note", .DataType = dtLongInteger});
  EXPECT_EQ(context_->FindProperty({.Parameter = parameter}), second_->Item("Note"));
}

TEST_F(FindPropertyTest, SourceNameFindsWhatTheIndexDoesNot) {
  context_->Add(Values("Third", {{.Name = "Placed", .DataType = dtDate, .SourceName = "order_date"}}));
  EXPECT_EQ(context_->FindProperty({.Index = "none", .SourceName = "order_date"})->Name(), "Placed");
}

TEST_F(FindPropertyTest, MissIsReportedWithAllThatWasAskedFor) {
  const std::pair<PropertyKey, const char*> cases[] = {
      {{.Index = "x"}, "Index: 'x'  SourceName: ''  SourceKey: ''  Parameter: (Nothing)"},
      {{.Index = "x", .SourceName = "s", .SourceKey = "t.s"}, "Index: 'x'  SourceName: 's'  SourceKey: 't.s'"},
      {{.Index = 5}, "Index: 5 "},
      {{.Index = 0}, "Index: 0 "},
      {{.Index = -1}, "Index: -1 "},
      {{.Index = 1e12}, "Index: 1000000000000 "},
      {{.Index = Variant()}, "Index: 'Empty'"},
      {{.Index = Variant::Null()}, "Index: 'Null'"},
      {{.Index = IdentifierPtr{}}, "Index: 'Nothing'"},
  };
  for (const auto& [key, text] : cases) {
    SCOPED_TRACE(text);
    ExpectRaised(errItem_Property, [&] { context_->FindProperty(key); }, {.Text = text, .Count = 1});
  }
}

TEST_F(FindPropertyTest, ListenerOfPropertyNotFoundSuppliesTheMember) {
  const PropertyPtr supplied = Framework{}.CreateProperty(Number("Extra", 9));
  context_->PropertyNotFound += [&](const PropertyKey& key, PropertyPtr& Property) {
    if (key.Index.AsText() == "Extra") Property = supplied;
  };
  EXPECT_EQ(context_->FindProperty("Extra"), supplied);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
  ExpectRaised(errItem_Property, [&] { context_->FindProperty("Other"); });
}

TEST_F(FindPropertyTest, EachCollectionIsAskedBeforeTheContextsOwnEvent) {
  std::string heard;
  first_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { heard += "1"; };
  second_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { heard += "2"; };
  context_->PropertyNotFound += [&](const PropertyKey&, PropertyPtr&) { heard += "context"; };
  ExpectRaised(errItem_Property, [&] { context_->FindProperty("x"); });
  EXPECT_EQ(heard, "12context");
}

class BoundPropertyContextTest : public PropertyContextTest {
 protected:
  static PropertyContextPtr ContextOf(const PropertiesPtr& properties) {
    auto context = Make<PropertyContext>();
    context->SetupWith(properties);
    return context;
  }
  PropertiesPtr Row(std::int32_t row, const std::string& name = {}) const {
    return rows_->GetPersistentProperties(row, name);
  }
  static KeyFormatPtr Format(const KeyFormatFields& fields, std::initializer_list<const char*> members = {}) {
    const KeyFormatPtr format = Framework{}.CreateKeyFormat(fields);
    for (const char* name : members) format->Properties()->SetupItem({.Name = name, .DataType = dtString});
    return format;
  }

  BoundOrders orders_{{.Ids = {1042, 7}}};
  RecordsetPtr rows_ = orders_.Read();
  PropertyContextPtr bound_ = ContextOf(Row(0));
};

TEST_F(BoundPropertyContextTest, FirstCollectionIsNamedLikeItsActionAndGivesTheIdentifier) {
  EXPECT_EQ(bound_->Item(1)->Name(), "Get");
  EXPECT_EQ(bound_->Identifier(), bound_->Item("Get")->Identifier());
  EXPECT_EQ(bound_->Identifier()->ClassName(), "Order");
  EXPECT_TRUE(bound_->SupportsAdd() && bound_->SupportsRemove() && bound_->SupportsLoad());
}

TEST_F(BoundPropertyContextTest, IdentifierStaysWhenOthersAreAdded) {
  const IdentifierPtr identifier = bound_->Identifier();
  bound_->Add(Row(1, "Other"), {.Before = 1});
  EXPECT_EQ(bound_->Identifier(), identifier);
}

TEST_F(BoundPropertyContextTest, DetailsTellTheIdentifier) {
  EXPECT_EQ(bound_->Details(),
            "Properties Count 1 for Identifier: 1042\r\n    Properties Count 2 for Properties 'Get'");
}

TEST_F(BoundPropertyContextTest, BrokerStartsFromTheServerAndClassOfTheIdentifier) {
  EXPECT_EQ(bound_->ActionName(), "");
  bound_->SetActionName("All");
  EXPECT_EQ(bound_->ActionName(), "All");
  ExpectRaised(errItem_Action, [&] { bound_->SetActionName("Nothing"); }, {.Text = "Index: 'Nothing'"});
  const auto parameters = Values("p");
  bound_->SetParameters(parameters);
  EXPECT_EQ(bound_->Parameters(), parameters);
}

TEST_F(BoundPropertyContextTest, LoadReturnsAHeldCollectionByNameThenByAction) {
  const auto detail = Row(1, "Detail");
  bound_->Add(detail);
  EXPECT_EQ(bound_->LoadProperties("Detail"), detail);
  EXPECT_EQ(bound_->LoadProperties("Nothing", {}, "Detail"), detail);
  EXPECT_EQ(orders_.Database->Reads, 1);
}

TEST_F(BoundPropertyContextTest, LoadIsRefusedThoughTheCollectionIsHeld) {
  bound_->SetSupportsLoad(false);
  ExpectRaised(errProperties_Load, [&] { bound_->LoadProperties("Get"); }, {.Count = 1});
}

TEST_F(BoundPropertyContextTest, ActionWithoutPropertiesUsageIsRefused) {
  orders_.Design.Order->Actions()->Item("All")->SetUsageFlags(ufObjects);
  ExpectRaised(errNotSupported_Properties, [&] { bound_->GetProperties("All"); },
               {.Text = "Action: 'All'  UsageFlags: 'Business Objects'"});
}

TEST_F(BoundPropertyContextTest, KeyIsThatOfTheIdentifier) {
  EXPECT_EQ(bound_->Key(), "1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .IncludeNames = true})), "Id|1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .Mixed = true})), "Sales|Order|1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .Mixed = true, .IncludeNames = true})), "Sales|Order|Id|1042");
}

TEST_F(BoundPropertyContextTest, PropertiesKeyJoinsTheNamedValues) {
  EXPECT_EQ(bound_->Key(Format({.Separator = "|"}, {"Name"})), "Order 1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|"}, {"Name", "Id"})), "Order 1042|1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .Mixed = true}, {"Id"})), "Sales|Order|1042");
  EXPECT_EQ(bound_->Key(Format({}, {"Id", "Name"})), "1042Order 1042");
}

TEST_F(BoundPropertyContextTest, PropertiesKeyPutsASeparatorBeforeTheFirstNameAndTwoBehindEachName) {
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .IncludeNames = true}, {"Id"})), "|Id||1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .IncludeNames = true}, {"Id", "Name"})),
            "|Id||1042|Name||Order 1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .Mixed = true, .IncludeNames = true}, {"Id"})),
            "Sales|Order|Id||1042");
}

TEST_F(BoundPropertyContextTest, FormatWithoutStringKeysIsRefusedWithTheKeyItWouldHave) {
  ExpectRaised(errNotSupported_Key, [&] { bound_->Key(Format({.EmptyKey = true})); }, {.Text = "Key: '1042'"});
  ExpectRaised(errNotSupported_Key, [&] { bound_->Key(Format({.EmptyKey = true}, {"Name"})); },
               {.Text = "Key: 'Order 1042'"});
  EXPECT_EQ(bound_->Identifier()->Key(Format({.EmptyKey = true})), "1042");
}

TEST_F(BoundPropertyContextTest, NullFailsInAPropertiesKeyAndAddsNothingInAnIdentifierKey) {
  bound_->FindProperty("Id")->SetValue(Variant::Null());
  EXPECT_EQ(bound_->Key(Format({.Separator = "|"})), "");
  ExpectReported(RuntimeFailure::InvalidUseOfNull, [&] { bound_->Key(Format({.Separator = "|"}, {"Id"})); });
}

TEST_F(BoundPropertyContextTest, PropertiesKeyOfAPropertyThatIsNotThereIsReportedAsTheMiss) {
  ExpectRaised(errItem_Property, [&] { bound_->Key(Format({}, {"Colour"})); });
}

TEST_F(BoundPropertyContextTest, KeyWithoutIdentifierIsAnObjectNotSet) {
  context_->Add(Values("A", {Number("Id", 1)}));
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->Key(); });
  EXPECT_EQ(context_->Key(Format({}, {"Id"})), "1");
}

TEST_F(BoundPropertyContextTest, FlagsAreThoseOfAllCollectionsTogether) {
  bound_->Add(Row(1, "Other"));
  bound_->Item("Other")->Item("Name")->SetValue("new");
  EXPECT_EQ(bound_->StateFlags(), sfpersistent | sfdirty);
  EXPECT_EQ(bound_->StateFlagsDisplay(), velmoria::StateFlagsDisplay(sfpersistent | sfdirty));
  orders_.Action->SetEditFlags(efUpdate);
  EXPECT_EQ(bound_->EditFlags(), efUpdate);
  EXPECT_EQ(bound_->EditFlagsDisplay(), velmoria::EditFlagsDisplay(efUpdate));
  EXPECT_TRUE(bound_->Dirty());
  EXPECT_TRUE(bound_->DirtyValues());
}

class PropertyContextWalkTest : public BoundPropertyContextTest {
 protected:
  PropertyContextWalkTest() {
    bound_->Add(Row(1, "Other"));
    bound_->BeforeUpdate += [this](bool&) { heard_ += "<"; };
    bound_->BeforeItemUpdate += [this](Properties& item, bool&) { heard_ += item.Name(); };
    bound_->AfterItemUpdate += [this](Properties&) { heard_ += "."; };
    bound_->AfterUpdate += [this] { heard_ += ">"; };
    bound_->BeforePendingDelete += [this](bool&) { heard_ += "["; };
    bound_->BeforeItemPendingDelete += [this](Properties& item, bool&) { heard_ += item.Name(); };
    bound_->AfterItemPendingDelete += [this](Properties&) { heard_ += ","; };
    bound_->AfterPendingDelete += [this] { heard_ += "]"; };
  }
  void Change(const char* collection) { bound_->Item(collection)->Item("Name")->SetValue("new"); }
  std::string heard_;
};

TEST_F(PropertyContextWalkTest, UntouchedCollectionsAreNotVisited) {
  bound_->Update();
  EXPECT_EQ(heard_, "<>");
}

TEST_F(PropertyContextWalkTest, ChangedCollectionsAreWritten) {
  Change("Other");
  bound_->Update();
  EXPECT_EQ(heard_, "<Other.>");
  EXPECT_EQ(orders_.Database->WrittenRows, std::vector<std::int32_t>{1});
}

TEST_F(PropertyContextWalkTest, CancelledCollectionIsSkippedAndTheOthersAreWritten) {
  Change("Get");
  Change("Other");
  bound_->BeforeItemUpdate += [](Properties& item, bool& Cancel) { Cancel = item.Name() == "Get"; };
  bound_->Update();
  EXPECT_EQ(heard_, "<GetOther.>");
  EXPECT_EQ(orders_.Database->WrittenRows, std::vector<std::int32_t>{1});
}

TEST_F(PropertyContextWalkTest, CancelledUpdateWritesNothingAndEndsSilently) {
  Change("Get");
  bound_->BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  bound_->Update();
  EXPECT_EQ(heard_, "<");
  EXPECT_EQ(orders_.Database->Writes(), 0);
}

TEST_F(PropertyContextWalkTest, FailureEndsTheWalk) {
  Change("Get");
  Change("Other");
  orders_.Database->Refuses = true;
  EXPECT_TRUE(Thrown([&] { bound_->Update(); }));
  EXPECT_EQ(heard_, "<Get");
}

TEST_F(PropertyContextWalkTest, DeleteFlagsEachCollectionAndUpdateDeletes) {
  bound_->Delete();
  EXPECT_EQ(heard_, "[Get,Other,]");
  EXPECT_EQ(orders_.Database->Writes(), 0);
  bound_->Update();
  EXPECT_EQ(orders_.Database->Deletes, 2);
}

TEST_F(PropertyContextWalkTest, SecondDeleteFindsNothingLeftToFlag) {
  bound_->Delete();
  heard_.clear();
  bound_->Delete();
  EXPECT_EQ(heard_, "[]");
}

TEST_F(PropertyContextWalkTest, WithoutEfDeleteNothingIsFlaggedAndNoErrorTells) {
  orders_.Action->SetEditFlags(efUpdate);
  bound_->Delete();
  EXPECT_EQ(heard_, "[]");
  EXPECT_EQ(bound_->StateFlags(), sfpersistent);
}

TEST_F(PropertyContextWalkTest, UndoHasNoEvents) {
  bound_->Delete();
  heard_.clear();
  bound_->Undo();
  EXPECT_EQ(heard_, "");
  EXPECT_EQ(bound_->StateFlags(), sfpersistent);
}

}  // namespace
}  // namespace velmoria::test

#include "velmoria/brokering/model.h"

#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class ModelTest : public testing::Test {
 protected:
  static IBusinessObjectsPtr Collection(const std::string& name) {
    return Framework{}.CreateBusinessObjects({.Name = name});
  }
  static PropertiesPtr Values(const std::string& name) { return Framework{}.CreateProperties({.Name = name}); }
  ModelPtr NewModel(const BusinessObjectsBinding& binding = {.ObjectType = otModel}) const {
    return orders_.Collection(binding)->Item(1)->GetModel();
  }

  ScopedApartment apartment_;
  BoundOrders orders_{{.Ids = {1042}}};
  ModelPtr model_ = NewModel();
};

TEST_F(ModelTest, ObjectTypeIsAlwaysModel) {
  const IBusinessObjectPtr object = model_;
  EXPECT_EQ(object->ObjectType(), otModel);
}

TEST_F(ModelTest, TellsItsIdentityAndItsParents) {
  const IdentifierPtr parent = orders_.Design.Item->CreateIdentifier();
  EXPECT_EQ(model_->Identifier()->Key(), "1042");
  EXPECT_EQ(model_->Key(), "1042");
  EXPECT_EQ(model_->ParentIdentifier(), nullptr);
  EXPECT_EQ(NewModel({.ParentIdentifier = parent, .ObjectType = otModel})->ParentIdentifier(), parent);
}

TEST_F(ModelTest, KeyUnderAFormatWithoutStringKeysIsRefused) {
  ExpectRaised(errNotSupported_Key, [&] { model_->Key(Framework{}.CreateKeyFormat({.EmptyKey = true})); },
               {.Text = "Key: '1042'"});
}

TEST_F(ModelTest, DetailsTellIdentityAndCounts) {
  EXPECT_EQ(model_->Details(),
            "Model for Server: 'Sales'  Class: 'Order'\r\n    Identifier Key: '1042'\r\n    Property Count 2\r\n"
            "    Business Objects Count 0");
}

TEST_F(ModelTest, AnswersAreThoseOfItsPropertyContext) {
  const PropertyContextPtr context = model_->PropertyContext();
  model_->FindProperty("Name")->SetValue("new");
  EXPECT_TRUE(model_->Dirty());
  EXPECT_TRUE(model_->Modifiable());
  EXPECT_EQ(model_->StateFlags(), sfpersistent | sfdirty);
  EXPECT_EQ(model_->StateFlagsDisplay(), context->StateFlagsDisplay());
  EXPECT_EQ(model_->EditFlags(), context->EditFlags());
  EXPECT_EQ(model_->EditFlagsDisplay(), context->EditFlagsDisplay());
  EXPECT_EQ(model_->PropertyCount(), 2);
  EXPECT_EQ(model_->PropertiesCount(), 1);
}

TEST_F(ModelTest, WithoutDataItIsAnObjectNotSet) {
  const auto bare = Make<Model>();
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { bare->Update(); });
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { bare->FindProperty("Id"); });
}

TEST_F(ModelTest, PropertiesAreFoundByNameAndPosition) { EXPECT_EQ(model_->Properties("get"), model_->Properties(1)); }

TEST_F(ModelTest, NameThatIsNoActionIsReportedAsTheMissingCollectionAlone) {
  ExpectRaised(errItem_Properties, [&] { model_->Properties("Nothing"); }, {.Text = "Index: 'Nothing'", .Count = 1});
}

TEST_F(ModelTest, UnknownPropertiesAreShownByTheTypeOfTheIndex) {
  ExpectRaised(errItem_Properties, [&] { model_->Properties(7); }, {.Text = "Index: 7", .Count = 1});
  ExpectRaised(errItem_Properties, [&] { model_->Properties(true); }, {.Text = "Index: (Boolean)", .Count = 1});
}

TEST_F(ModelTest, ListenerOfPropertiesNotFoundSuppliesTheCollection) {
  const auto supplied = Values("Extra");
  model_->PropertiesNotFound += [&](const Variant&, PropertiesPtr& Properties) { Properties = supplied; };
  EXPECT_EQ(model_->Properties("Extra"), supplied);
  EXPECT_EQ(model_->Properties(9), supplied);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(ModelTest, PropertyIsFoundByNamePositionAndParameter) {
  const PropertyPtr parameter = Framework{}.CreateProperty({.Name = "Id", .DataType = dtLongInteger});
  EXPECT_EQ(model_->FindProperty("Id")->Value(), Variant(1042));
  EXPECT_EQ(model_->FindProperty(1), model_->FindProperty("id"));
  EXPECT_EQ(model_->FindProperty(Variant::Missing(), parameter), model_->FindProperty("Id"));
}

TEST_F(ModelTest, UnknownPropertyIsReportedWithEmptySourceTexts) {
  ExpectRaised(errItem_Property, [&] { model_->FindProperty("Colour"); },
               {.Text = "Index: 'Colour'  SourceName: ''  SourceKey: ''  Parameter: (Nothing)", .Count = 1});
  ExpectRaised(errItem_Property, [&] { model_->FindProperty(3); }, {.Text = "Index: 3 ", .Count = 1});
}

TEST_F(ModelTest, ListenerOfPropertyNotFoundSuppliesTheMemberAndNoMessageStays) {
  const PropertyPtr supplied = Framework{}.CreateProperty({.Name = "Colour"});
  model_->PropertyNotFound += [&](const Variant&, const PropertyPtr&, PropertyPtr& Property) { Property = supplied; };
  EXPECT_EQ(model_->FindProperty("Colour"), supplied);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(ModelTest, TheContextIsAskedBeforeTheModel) {
  std::string heard;
  model_->PropertyContext()->PropertyNotFound += [&](const PropertyKey&, PropertyPtr&) { heard += "context "; };
  model_->PropertyNotFound += [&](const Variant&, const PropertyPtr&, PropertyPtr&) { heard += "model "; };
  model_->BusinessContext()->ItemNotFound += [&](const Variant&, IBusinessObjectsPtr&) { heard += "broker "; };
  model_->BusinessObjectsNotFound += [&](const Variant&, IBusinessObjectsPtr&) { heard += "model"; };
  ExpectRaised(errItem_Property, [&] { model_->FindProperty("Colour"); });
  ExpectRaised(errItem_BusinessObjects, [&] { model_->BusinessObjects(1); });
  EXPECT_EQ(heard, "context model broker model");
}

TEST_F(ModelTest, ListenersOfTheContextThatFailCountAsAMissAndTheModelGoesOnToItsOwn) {
  const PropertyPtr member = Framework{}.CreateProperty({.Name = "Colour"});
  const auto values = Values("Extra");
  const auto context = model_->PropertyContext();
  context->PropertyNotFound += [&](const PropertyKey&, PropertyPtr&) { context->Item(99); };
  context->ItemNotFound += [](const Variant&, PropertiesPtr&) { Fail(RuntimeFailure::DeviceError); };
  model_->PropertyNotFound += [&](const Variant&, const PropertyPtr&, PropertyPtr& Property) { Property = member; };
  model_->PropertiesNotFound += [&](const Variant&, PropertiesPtr& Properties) { Properties = values; };
  EXPECT_EQ(model_->FindProperty("Colour"), member);
  EXPECT_EQ(model_->Properties(9), values);
  EXPECT_EQ(model_->Properties("Extra"), values);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(ModelTest, ListenersOfTheContextAreAskedForANameOnceMoreWhenItIsLoaded) {
  std::string heard;
  model_->PropertyContext()->ItemNotFound += [&](const Variant&, PropertiesPtr&) { heard += "context "; };
  model_->PropertiesNotFound += [&](const Variant&, PropertiesPtr&) { heard += "model "; };
  ExpectRaised(errItem_Properties, [&] { model_->Properties("Nothing"); });
  ExpectRaised(errItem_Properties, [&] { model_->Properties(9); });
  EXPECT_EQ(heard, "context context model context model ");
}

TEST_F(ModelTest, FailureOfItsOwnListenerIsPassedOn) {
  model_->PropertyNotFound +=
      [](const Variant&, const PropertyPtr&, PropertyPtr&) { Fail(RuntimeFailure::DeviceError); };
  model_->PropertiesNotFound += [](const Variant&, PropertiesPtr&) { Fail(RuntimeFailure::DeviceError); };
  ExpectReported(RuntimeFailure::DeviceError, [&] { model_->FindProperty("Colour"); });
  ExpectReported(RuntimeFailure::DeviceError, [&] { model_->Properties(9); });
}

TEST_F(ModelTest, ContextThatLoadsNothingLeavesTheNameAMiss) {
  model_->PropertyContext()->SetSupportsLoad(false);
  ExpectRaised(errItem_Properties, [&] { model_->Properties("All"); }, {.Text = "Index: 'All'", .Count = 1});
}

TEST_F(ModelTest, OverATransientContextItHasNoIdentityAndLoadsNothing) {
  const auto context = Framework{}.CreatePropertyContext();
  context->Add(Values("Mine"));
  const auto free = Make<Model>();
  free->Setup(context, {});
  EXPECT_EQ(free->Identifier(), nullptr);
  EXPECT_EQ(free->Properties("Mine"), context->Item(1));
  EXPECT_EQ(free->Details(),
            "Model for Server: ''  Class: ''\r\n    Identifier Key: ''\r\n    Property Count 0\r\n"
            "    Business Objects Count 0");
  ExpectRaised(errItem_Properties, [&] { free->Properties("All"); }, {.Text = "Index: 'All'", .Count = 1});
}

TEST_F(ModelTest, ModifiableTellsWhetherEveryMemberIs) {
  EXPECT_TRUE(model_->Modifiable());
  model_->FindProperty("Name")->SetModifiable(false);
  EXPECT_FALSE(model_->Modifiable());
}

TEST_F(ModelTest, RelatedCollectionIsFoundInItsBusinessContext) {
  const auto lines = Collection("Lines");
  EXPECT_EQ(model_->BusinessObjectsCount(), 0);
  model_->BusinessContext()->Add(lines);
  EXPECT_EQ(model_->BusinessObjects("lines"), lines);
  EXPECT_EQ(model_->BusinessObjects(1), lines);
  EXPECT_EQ(model_->BusinessObjectsCount(), 1);
}

TEST_F(ModelTest, BusinessContextOfAModelLeavesTheTypesToTheAction) {
  EXPECT_EQ(model_->BusinessContext(), model_->BusinessContext());
  EXPECT_EQ(model_->BusinessContext()->ObjectType(), otDefault);
  EXPECT_EQ(model_->BusinessContext()->CollectionType(), cltDefault);
}

TEST_F(ModelTest, UnknownRelatedCollectionIsShownByTheTypeOfTheIndex) {
  ExpectRaised(errItem_BusinessObjects, [&] { model_->BusinessObjects("Lines"); },
               {.Text = "Index: 'Lines'", .Count = 1});
  ExpectRaised(errItem_BusinessObjects, [&] { model_->BusinessObjects(2); }, {.Text = "Index: 2", .Count = 1});
  ExpectRaised(errItem_BusinessObjects, [&] { model_->BusinessObjects(Variant()); }, {.Text = "Index: (Empty)"});
}

TEST_F(ModelTest, ListenerOfBusinessObjectsNotFoundProvidesACollectionAndNoErrorFollows) {
  const auto supplied = Collection("Lines");
  model_->BusinessObjectsNotFound += [&](const Variant&, IBusinessObjectsPtr& Found) { Found = supplied; };
  EXPECT_EQ(model_->BusinessObjects("Lines"), supplied);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

class ModelPersistenceTest : public ModelTest {
 protected:
  ModelPersistenceTest() {
    model_->BeforeUpdate += [this](bool&) { heard_ += "<"; };
    model_->AfterUpdate += [this] { heard_ += ">"; };
    model_->BeforePendingDelete += [this](bool&) { heard_ += "["; };
    model_->AfterPendingDelete += [this] { heard_ += "]"; };
    related_ = NewModel();
    const auto held = Collection("Related");
    held->Add(related_);
    model_->BusinessContext()->Add(held);
  }
  static void Change(const ModelPtr& model) { model->FindProperty("Name")->SetValue("new"); }

  ModelPtr related_;
  std::string heard_;
};

TEST_F(ModelPersistenceTest, UpdateWritesTheChange) {
  Change(model_);
  model_->Update();
  EXPECT_EQ(heard_, "<>");
  EXPECT_EQ(orders_.Database->Updates, 1);
  EXPECT_FALSE(model_->Dirty());
}

TEST_F(ModelPersistenceTest, UpdateOfACleanObjectRaisesBothEventsAndWritesNothing) {
  model_->Update();
  EXPECT_EQ(heard_, "<>");
  EXPECT_EQ(orders_.Database->Writes(), 0);
}

TEST_F(ModelPersistenceTest, InterfaceActsOnTheObjectAlone) {
  const IBusinessObjectPtr object = model_;
  Change(related_);
  object->Update();
  object->Delete();
  EXPECT_EQ(heard_, "<>[]");
  EXPECT_EQ(related_->StateFlags(), sfpersistent | sfdirty);
}

TEST_F(ModelPersistenceTest, FailureAmongTheRelatedLeavesTheObjectWrittenAndRaisesNoAfterUpdate) {
  Change(model_);
  Change(related_);
  model_->PropertyContext()->AfterUpdate += [this] { orders_.Database->Refuses = true; };
  EXPECT_TRUE(Thrown([&] { model_->Update(true); }));
  EXPECT_EQ(orders_.Database->Updates, 1);
  EXPECT_FALSE(model_->Dirty());
  EXPECT_TRUE(related_->Dirty());
  EXPECT_EQ(heard_, "<");
}

TEST_F(ModelPersistenceTest, FailedDeleteRaisesNoAfterPendingDelete) {
  model_->Properties(1)->BeforePendingDelete += [](bool&) { Fail(RuntimeFailure::DeviceError); };
  ExpectReported(RuntimeFailure::DeviceError, [&] { model_->Delete(true); });
  EXPECT_EQ(heard_, "[");
  EXPECT_EQ(related_->StateFlags(), sfpersistent);
}

TEST_F(ModelPersistenceTest, UndoLeavesRelatedObjectsAlone) {
  model_->Delete(true);
  model_->Undo();
  EXPECT_EQ(model_->StateFlags(), sfpersistent);
  EXPECT_EQ(related_->StateFlags(), sfpersistent | sfpendingdelete);
}

TEST_F(ModelPersistenceTest, DeletedObjectTellsItsStateButNoDetails) {
  model_->Delete();
  model_->Update();
  EXPECT_EQ(model_->StateFlagsDisplay(), "Deleted");
  EXPECT_FALSE(model_->Dirty());
  EXPECT_TRUE(Thrown([&] { model_->Details(); }));
  apartment_.Messages().Clear();
  ExpectRaised(errPersistence_Deleted, [&] { model_->Undo(); }, {.Text = "Identifier: '0'"});
}

TEST_F(ModelPersistenceTest, CancelledBeforeUpdateWritesNothingAndRaisesNoAfterUpdate) {
  Change(model_);
  model_->BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  model_->Update();
  EXPECT_EQ(heard_, "<");
  EXPECT_EQ(orders_.Database->Writes(), 0);
  EXPECT_TRUE(model_->Dirty());
}

TEST_F(ModelPersistenceTest, FailedUpdateRaisesNoAfterUpdate) {
  Change(model_);
  orders_.Database->Refuses = true;
  EXPECT_TRUE(Thrown([&] { model_->Update(); }));
  EXPECT_EQ(heard_, "<");
}

TEST_F(ModelPersistenceTest, UpdateReachesRelatedObjectsOnlyWhenRecursive) {
  Change(related_);
  model_->Update();
  EXPECT_EQ(orders_.Database->Updates, 0);
  model_->Update(true);
  EXPECT_EQ(orders_.Database->Updates, 1);
}

TEST_F(ModelPersistenceTest, DeleteWithoutRecursiveLeavesRelatedObjectsUnflagged) {
  model_->Delete();
  EXPECT_EQ(heard_, "[]");
  EXPECT_EQ(model_->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(related_->StateFlags(), sfpersistent);
}

TEST_F(ModelPersistenceTest, RecursiveDeleteFlagsRelatedObjects) {
  model_->Delete(true);
  EXPECT_EQ(related_->StateFlags(), sfpersistent | sfpendingdelete);
}

TEST_F(ModelPersistenceTest, CancelledDeleteFlagsNothing) {
  model_->BeforePendingDelete += [](bool& Cancel) { Cancel = true; };
  model_->Delete(true);
  EXPECT_EQ(heard_, "[");
  EXPECT_EQ(model_->StateFlags(), sfpersistent);
  EXPECT_EQ(related_->StateFlags(), sfpersistent);
}

TEST_F(ModelPersistenceTest, DeleteFlagsAndTheNextUpdateDeletes) {
  const IBusinessObjectPtr object = model_;
  object->Delete();
  EXPECT_EQ(orders_.Database->Writes(), 0);
  object->Update();
  EXPECT_EQ(orders_.Database->Deletes, 1);
  EXPECT_EQ(object->StateFlags(), sfdeleted);
  EXPECT_EQ(heard_, "[]<>");
}

TEST_F(ModelPersistenceTest, UndoTakesTheDeletionBackWithoutEvents) {
  model_->Delete();
  heard_.clear();
  model_->Undo();
  EXPECT_EQ(model_->StateFlags(), sfpersistent);
  EXPECT_EQ(heard_, "");
}

}  // namespace
}  // namespace velmoria::test

#include "tests/unit/properties/state_model/state_stage.h"

#include <utility>

#include "tests/unit/properties/state_model/state_comparison.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

/// A subject, its model, and what was left behind when a sequence went on with a copy.
class Stage {
 public:
  Stage(StateWorld& world, Mistake wrong) : world_(world) { scene_.Wrong = wrong; }
  virtual ~Stage() = default;
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  /// The first difference, or "".
  std::string Begin();
  std::string Step(const Operation& operation);

 protected:
  virtual void Build() = 0;
  virtual void Expect(const Operation& operation) = 0;
  virtual void Do(const Operation& operation) = 0;
  virtual void Listen() = 0;
  virtual void Compare(StateComparison& comparison) = 0;

  Messages& Sink() const { return world_.Apartment.Messages(); }
  void ListenTo(Property& property);
  void Compare(const PropertyModel& model, const Property& property, StateComparison& comparison) const;

  StateWorld& world_;
  Scene scene_;
  std::string heard_;

 private:
  void Pass();
  std::string Written() const;
};

// A second goes by, so that stamps of two steps differ.
void Stage::Pass() {
  world_.Apartment.Clock().Advance(1);
  world_.Driver->Texts.clear();
  Sink().Clear();
  scene_.Now = world_.Apartment.Clock().Time;
  scene_.Told.clear();
  scene_.Written.clear();
  heard_.clear();
}

std::string Stage::Written() const {
  constexpr std::size_t kVerb = 6;
  std::string verbs;
  for (const auto& text : world_.Driver->Texts) verbs += text.substr(0, kVerb);
  return verbs;
}

std::string Stage::Begin() {
  Pass();
  Build();
  Listen();
  StateComparison comparison;
  Compare(comparison);
  return comparison.First();
}

std::string Stage::Step(const Operation& operation) {
  Pass();
  StateComparison comparison;
  const auto expected = ExpectedReading([&] { return Expect(operation), Variant(); });
  std::int32_t raised = 0;
  try {
    Do(operation);
  } catch (const Error& error) { raised = error.CatalogueNumber(); }
  if (raised != 0) world_.Raised.insert(raised);
  if (!scene_.Written.empty()) world_.Written.insert(scene_.Written);
  comparison.Expect({}, "the error", expected.Number, raised);
  comparison.Expect({}, "what was told", scene_.Told, heard_);
  comparison.Expect({}, "what was written", scene_.Written, Written());
  if (raised == 0 && scene_.Written.empty()) comparison.Expect({}, "Messages.Count", 0, int{Sink().Count()});
  Sink().Clear();
  Listen();
  Compare(comparison);
  return comparison.First();
}

void Stage::ListenTo(Property& property) {
  if (property.BeforeValueChange.HasListeners()) return;
  property.BeforeValueChange += [this, &property](const Variant& value, bool& Cancel) {
    heard_ += property.Name() + " will be " + Shown(value) + "; ";
    if (scene_.OnValue == Listener::FailsBefore) Fail(RuntimeFailure::DeviceError);
    Cancel = scene_.OnValue == Listener::Cancels;
  };
  property.AfterValueChange += [this, &property] {
    heard_ += property.Name() + " is changed; ";
    if (scene_.OnValue == Listener::FailsAfter) Fail(RuntimeFailure::DeviceError);
  };
}

void Stage::Compare(const PropertyModel& model, const Property& property, StateComparison& comparison) const {
  const auto& name = model.Name;
  const auto read = [&](const char* what, auto expected, auto found) {
    comparison.Expect(name, what, ExpectedReading(expected), FoundReading(Sink(), found));
  };
  comparison.Expect({}, "a Name", name, property.Name());
  read("Value", [&] { return model.Value(); }, [&] { return property.Value(); });
  read("DefaultValue", [&] { return model.DefaultValue(); }, [&] { return property.DefaultValue(); });
  comparison.Expect(name, "OldValue", model.Old, property.OldValue());
  comparison.Expect(name, "stored value", model.Current, property.Data()->Value());
  comparison.Expect(name, "EmptyValue", model.EmptyValue(), property.EmptyValue());
  comparison.Expect(name, "RequiresValue", model.RequiresValue(), property.RequiresValue());
  comparison.Expect(name, "DirtyValue", model.DirtyValue(), property.DirtyValue());
  comparison.Expect(name, "Dirty", model.Dirty(), property.Dirty());
  comparison.Expect(name, "stamp", model.Stamp, property.Data()->ModifiedStamp());
  comparison.Expect(name, "StateFlags", model.StateFlags(), property.StateFlags());
  comparison.Expect(name, "Flags", model.Flags, property.Flags());
  comparison.Expect(name, "DataType", model.DataType, property.DataType());
  comparison.Expect(name, "Size", model.Size, property.Size());
  comparison.Expect(name, "Modifiable", model.Modifiable, property.Modifiable());
  comparison.Expect(name, "Locked", model.Locked, property.Locked());
  comparison.Expect(name, "Style", model.Style, property.Data()->Style());
}

class PropertyStage final : public Stage {
 public:
  PropertyStage(StateWorld& world, const StateSequence& sequence, Mistake wrong)
      : Stage(world, wrong), sequence_(sequence) {}

 private:
  void Build() override;
  void Expect(const Operation& operation) override;
  void Do(const Operation& operation) override;
  void Listen() override { ListenTo(*property_); }
  void Compare(StateComparison& comparison) override;

  const StateSequence& sequence_;
  PropertyModel model_;
  PropertyModel formerModel_;
  PropertyPtr property_;
  PropertyPtr former_;
};

void PropertyStage::Build() {
  const auto& fields = sequence_.Members.front();
  const auto style = sequence_.Subject.Style;
  model_ = PropertyModel::Made(style, fields, scene_.Now);
  if (style == psNonPersistent) {
    property_ = Framework().CreateProperty(fields);
    return;
  }
  auto definition = Make<PropertyData>();
  definition->Setup(style, fields);
  property_ = Make<Property>();
  property_->Bind(std::move(definition), Parents{});
}

void PropertyStage::Expect(const Operation& operation) {
  auto before = model_;
  operation.OnProperty->Expect(operation, model_, scene_);
  if (operation.OnProperty->Copies) formerModel_ = std::move(before);
}

void PropertyStage::Do(const Operation& operation) {
  auto property = property_;
  operation.OnProperty->Do(operation, property);
  if (property == property_) return;
  former_ = std::exchange(property_, std::move(property));
}

void PropertyStage::Compare(StateComparison& comparison) {
  Stage::Compare(model_, *property_, comparison);
  if (former_) Stage::Compare(formerModel_, *former_, comparison);
}

class CollectionStage final : public Stage {
 public:
  CollectionStage(StateWorld& world, const StateSequence& sequence, Mistake wrong)
      : Stage(world, wrong), sequence_(sequence) {}

 private:
  void Build() override;
  void Expect(const Operation& operation) override;
  void Do(const Operation& operation) override;
  void Listen() override;
  void Compare(StateComparison& comparison) override;
  void BuildModel();
  void CompareAll(const CollectionModel& model, Properties& properties, StateComparison& comparison) const;
  void CompareMembers(const CollectionModel& model, Properties& properties, StateComparison& comparison) const;
  static void CompareDefinitions(const CollectionModel& model, const PropertiesData& data, StateComparison& comparison);

  const StateSequence& sequence_;
  CollectionModel model_;
  CollectionModel formerModel_;
  PropertiesPtr properties_;
  PropertiesPtr former_;
};

void CollectionStage::BuildModel() {
  const auto& subject = sequence_.Subject;
  model_.Style = subject.Style;
  model_.Defined = subject.Defined;
  model_.Routed = subject.Routed;
  model_.EditFlags = sequence_.EditFlags;
  for (const auto& fields : sequence_.Members) {
    model_.Members.push_back(std::make_shared<PropertyModel>(PropertyModel::Made(subject.Style, fields, scene_.Now)));
  }
  if (subject.Defined) model_.Definitions = model_.Members;
}

void CollectionStage::Build() {
  BuildModel();
  const auto& subject = sequence_.Subject;
  PropertiesDataPtr definitions;
  if (subject.Defined) {
    definitions = Make<PropertiesData>();
    for (const auto& fields : sequence_.Members) definitions->SetupItem(subject.Style, fields);
  }
  properties_ = Make<Properties>();
  properties_->Bind({.Style = subject.Style, .PropertiesData = definitions});
  if (!subject.Defined) {
    for (const auto& fields : sequence_.Members) properties_->SetupItem(fields);
  }
  if (!subject.Routed) return;
  world_.Design.Action->SetEditFlags(sequence_.EditFlags);
  properties_->SetIdentifier(world_.Design.Class->CreateIdentifier());
  properties_->SetActionName(world_.Design.Action->Name());
}

void CollectionStage::Expect(const Operation& operation) {
  if (operation.OnCollection != nullptr) {
    auto before = operation.OnCollection->Copies ? model_.Clone() : CollectionModel{};
    operation.OnCollection->Expect(operation, model_, scene_);
    if (operation.OnCollection->Copies) formerModel_ = std::move(before);
  } else if (!model_.Members.empty()) {
    operation.OnProperty->Expect(operation, *model_.Members[operation.Member % model_.Members.size()], scene_);
  }
}

void CollectionStage::Do(const Operation& operation) {
  if (operation.OnCollection != nullptr) {
    auto properties = properties_;
    operation.OnCollection->Do(operation, properties);
    if (properties != properties_) former_ = std::exchange(properties_, std::move(properties));
  } else if (const auto count = properties_->Count(); count > 0) {
    auto member = properties_->Item(static_cast<std::int32_t>(operation.Member % static_cast<std::size_t>(count)) + 1);
    operation.OnProperty->Do(operation, member);
  }
}

void CollectionStage::Listen() {
  for (const auto& member : *properties_) ListenTo(*member);
  if (properties_->BeforeAdd.HasListeners()) return;
  const auto before = [this](const char* text, bool& Cancel) {
    heard_ += text;
    Cancel = scene_.Veto;
  };
  properties_->BeforeAdd += [before](Property&, bool& Cancel) { before("before add; ", Cancel); };
  properties_->AfterAdd += [this](Property&) { heard_ += "after add; "; };
  properties_->BeforeRemove += [before](Property&, bool& Cancel) { before("before remove; ", Cancel); };
  properties_->AfterRemove += [this](Property&) { heard_ += "after remove; "; };
  properties_->ItemNotFound += [this](const PropertyKey&, PropertyPtr&) { heard_ += "not found; "; };
  properties_->BeforeUpdate += [before](bool& Cancel) { before("before update; ", Cancel); };
  properties_->AfterUpdate += [this] { heard_ += "after update; "; };
  properties_->BeforePendingDelete += [before](bool& Cancel) { before("before pending delete; ", Cancel); };
  properties_->AfterPendingDelete += [this] { heard_ += "after pending delete; "; };
}

void CollectionStage::Compare(StateComparison& comparison) {
  CompareAll(model_, *properties_, comparison);
  if (former_) CompareAll(formerModel_, *former_, comparison);
}

void CollectionStage::CompareAll(const CollectionModel& model, Properties& properties,
                                 StateComparison& comparison) const {
  comparison.Expect({}, "Count", static_cast<std::int32_t>(model.Members.size()), properties.Count());
  comparison.Expect({}, "Style", model.Style, properties.Style());
  comparison.Expect({}, "DirtyValues", model.DirtyValues(), properties.DirtyValues());
  comparison.Expect({}, "EmptyValues", model.EmptyValues(), properties.EmptyValues());
  comparison.Expect({}, "RequiresValues", model.RequiresValues(), properties.RequiresValues());
  comparison.Expect({}, "Dirty", model.Dirty(), properties.Dirty());
  comparison.Expect({}, "StateFlags", model.StateFlags(), properties.StateFlags());
  comparison.Expect({}, "Modifiable(True)", model.Modifiable(true), properties.Modifiable(true));
  comparison.Expect({}, "Modifiable(False)", model.Modifiable(false), properties.Modifiable(false));
  comparison.Expect({}, "Locked", model.Locked, properties.Locked());
  comparison.Expect({}, "SupportsAdd", model.SupportsAdd, properties.SupportsAdd());
  comparison.Expect({}, "SupportsRemove", model.SupportsRemove, properties.SupportsRemove());
  if (comparison.First().empty()) CompareMembers(model, properties, comparison);
  comparison.Expect({}, "being defined", model.Defined, static_cast<bool>(properties.Data()));
  if (comparison.First().empty() && model.Defined) CompareDefinitions(model, *properties.Data(), comparison);
}

void CollectionStage::CompareMembers(const CollectionModel& model, Properties& properties,
                                     StateComparison& comparison) const {
  std::int32_t position = 0;
  for (const auto& expected : model.Members) {
    const auto member = properties.Item(++position);
    Stage::Compare(*expected, *member, comparison);
    comparison.Expect(expected->Name, "key", true, properties.Find({.Index = expected->Name}) == member);
  }
}

void CollectionStage::CompareDefinitions(const CollectionModel& model, const PropertiesData& data,
                                         StateComparison& comparison) {
  comparison.Expect({}, "count of definitions", static_cast<std::int32_t>(model.Definitions.size()), data.Count());
  if (!comparison.First().empty()) return;
  std::int32_t position = 0;
  for (const auto& expected : model.Definitions) {
    const auto& definition = data.At(++position);
    comparison.Expect({}, "the Name of a definition", expected->Name, definition->Name());
    comparison.Expect(expected->Name, "OrderNumber", position, definition->OrderNumber());
  }
}

std::unique_ptr<Stage> StageFor(StateWorld& world, const StateSequence& sequence, Mistake wrong) {
  if (sequence.Subject.IsCollection) return std::make_unique<CollectionStage>(world, sequence, wrong);
  return std::make_unique<PropertyStage>(world, sequence, wrong);
}

}  // namespace

StateWorld::StateWorld() {
  Apartment.State().Platform.Odbc = Driver;
  Apartment.Messages().SetLogMode(lmOff);
}

std::optional<StateDifference> Play(StateWorld& world, const StateSequence& sequence, Mistake wrong) {
  const auto stage = StageFor(world, sequence, wrong);
  std::size_t step = 0;
  try {
    auto what = stage->Begin();
    while (what.empty() && step < sequence.Operations.size()) what = stage->Step(sequence.Operations[step++]);
    if (what.empty()) return std::nullopt;
    return StateDifference{step, std::move(what)};
  } catch (const Error& error) { return StateDifference{step, std::string("asking raises ") + error.what()}; }
}

}  // namespace velmoria::test

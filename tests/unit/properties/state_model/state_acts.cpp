#include "tests/unit/properties/state_model/state_acts.h"

#include <array>

#include "velmoria/core/display.h"
#include "velmoria/runtime/text.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

constexpr std::array kDataTypes{dtVariant, dtString, dtLongInteger, dtDate, dtInteger,   dtBoolean,     dtCurrency,
                                dtSingle,  dtDouble, dtDecimal,     dtByte, dtByteArray, zDataTypes{12}};
constexpr std::array kWritableTypes{dtString, dtLongInteger, dtDate, dtBoolean, dtDouble};
constexpr std::array kFlags{pfNone,
                            pfNone,
                            pfNone,
                            pfRequired,
                            pfAllowZeroLength,
                            pfInput,
                            pfInput | pfRequired,
                            pfInput | pfRequired | pfAllowZeroLength};
constexpr std::array kStates{sfnonpersistent | sfNew,        sfNew,           sfpersistent, sfpersistent,
                             sfpersistent | sfpendingdelete, sfpendingdelete, sfdeleted,    sfpersistent | sfNew,
                             sfNew | sfpendingdelete,        sfdirty,         zStateFlags{}};
constexpr std::array kNames{"A", "B", "C", "D", "E", "a", "b"};

Variant AnyIndex(Dice& dice) {
  return dice.OneIn(2) ? Variant(kNames[dice.Below(kNames.size())]) : Variant(static_cast<std::int32_t>(dice.Below(5)));
}

Position AnyPlace(Dice& dice) {
  switch (dice.Below(8)) {
    case 0: return {.Before = AnyIndex(dice)};
    case 1: return {.After = AnyIndex(dice)};
    case 2: return {.Before = AnyIndex(dice), .After = AnyIndex(dice)};
    default: return {};
  }
}

PropertyFields AnyFields(Dice& dice, const StateSubject& subject, const char* name) {
  PropertyFields fields{.Name = name};
  fields.DataType = subject.Routed ? dice.Of(kWritableTypes) : dice.Of(kDataTypes);
  fields.Value = subject.Routed || !dice.OneIn(16) ? OwnValue(dice, fields.DataType) : AnyValue(dice, fields.DataType);
  fields.Size = dice.OneIn(4) ? 2 : 0;
  fields.Flags = dice.Of(kFlags);
  fields.Modifiable = !dice.OneIn(16);
  fields.Locked = dice.OneIn(8);
  return fields;
}

std::string ShownType(zDataTypes dataType) {
  const auto name = DataTypeName(dataType);
  return name.empty() ? "data type " + NumberText(static_cast<std::int32_t>(dataType)) : name;
}

std::string ShownFlag(bool flag, const char* name) { return flag ? std::string(", ") + name : std::string(); }

std::string ShownFields(const PropertyFields& fields) {
  std::string text = fields.Name + " of " + ShownType(fields.DataType);
  if (!fields.Value.IsMissing()) text += " holding " + Shown(fields.Value);
  if (!fields.DefaultValue.IsMissing()) text += " by default " + Shown(fields.DefaultValue);
  if (fields.Size != 0) text += ", at most " + NumberText(fields.Size);
  if (fields.Flags != pfNone) text += ", " + FlagsDisplay(fields.Flags);
  return text + ShownFlag(!fields.Modifiable, "read only") + ShownFlag(fields.Locked, "DefaultValue locked");
}

std::string ShownPlace(const Position& place) {
  std::string text;
  if (place.Before.IsGiven()) text += ", before " + Shown(place.Before);
  if (place.After.IsGiven()) text += ", after " + Shown(place.After);
  return text;
}

std::string ShownNumber(const Operation& operation) { return NumberText(operation.Number); }
std::string ShownValue(const Operation& operation) { return Shown(operation.Value); }
std::string ShownBoolean(const Operation& operation) { return operation.Number != 0 ? "True" : "False"; }

// What acts take.

constexpr ActArgument kNothing{[](Operation&, Dice&, const StateSequence&) {},
                               [](const Operation&) { return std::string(); }};
constexpr ActArgument kValue{[](Operation& operation, Dice& dice, const StateSequence& sequence) {
                               operation.Value =
                                   AnyValue(dice, sequence.Members[dice.Below(sequence.Members.size())].DataType);
                             },
                             ShownValue};
constexpr ActArgument kFlagsOf{
    [](Operation& operation, Dice& dice, const StateSequence&) {
      operation.Number = static_cast<std::int32_t>(dice.Of(kFlags));
    },
    [](const Operation& operation) { return FlagsDisplay(zPropertyFlags{operation.Number}); }};
constexpr ActArgument kStateOf{[](Operation& operation, Dice& dice, const StateSequence&) {
                                 operation.Number = static_cast<std::int32_t>(dice.Of(kStates));
                               },
                               ShownNumber};
constexpr ActArgument kTypeOf{[](Operation& operation, Dice& dice, const StateSequence&) {
                                operation.Number = static_cast<std::int32_t>(dice.Of(kDataTypes));
                              },
                              [](const Operation& operation) { return ShownType(zDataTypes{operation.Number}); }};
constexpr ActArgument kSizeOf{[](Operation& operation, Dice& dice, const StateSequence&) {
                                operation.Number = static_cast<std::int32_t>(dice.Below(4));
                              },
                              ShownNumber};
constexpr ActArgument kMostlyTrue{
    [](Operation& operation, Dice& dice, const StateSequence&) { operation.Number = dice.OneIn(4) ? 0 : 1; },
    ShownBoolean};
constexpr ActArgument kMostlyFalse{
    [](Operation& operation, Dice& dice, const StateSequence&) { operation.Number = dice.OneIn(4) ? 1 : 0; },
    ShownBoolean};
constexpr ActArgument kListener{[](Operation& operation, Dice& dice, const StateSequence&) {
                                  constexpr std::array kModes{Listener::Agrees,      Listener::Agrees,
                                                              Listener::Agrees,      Listener::Cancels,
                                                              Listener::FailsBefore, Listener::FailsAfter};
                                  operation.Number = static_cast<std::int32_t>(dice.Of(kModes));
                                },
                                [](const Operation& operation) {
                                  constexpr std::array kWords{"agree", "cancel", "fail before", "fail after"};
                                  return std::string(kWords[static_cast<std::size_t>(operation.Number)]);
                                }};
constexpr ActArgument kIndex{
    [](Operation& operation, Dice& dice, const StateSequence&) { operation.Value = AnyIndex(dice); }, ShownValue};
constexpr ActArgument kNewName{
    [](Operation& operation, Dice& dice, const StateSequence&) { operation.Text = dice.Of(kNames); },
    [](const Operation& operation) { return operation.Text; }};
constexpr ActArgument kRenaming{
    [](Operation& operation, Dice& dice, const StateSequence&) {
      operation.Value = dice.Of(kNames);
      operation.Text = dice.Of(kNames);
    },
    [](const Operation& operation) { return Shown(operation.Value) + " to " + Quoted(operation.Text); }};
constexpr ActArgument kFields{
    [](Operation& operation, Dice& dice, const StateSequence& sequence) {
      operation.Fields = AnyFields(dice, sequence.Subject, dice.Of(kNames));
      if (dice.OneIn(3)) operation.Fields.DefaultValue = AnyValue(dice, operation.Fields.DataType);
      operation.Place = AnyPlace(dice);
    },
    [](const Operation& operation) { return ShownFields(operation.Fields) + ShownPlace(operation.Place); }};

// What acts suit.

bool IsAny(const StateSubject&) { return true; }
bool IsLone(const StateSubject& subject) { return !subject.IsCollection; }
bool IsDefined(const StateSubject& subject) { return subject.Defined; }
bool IsCached(const StateSubject& subject) { return subject.Style == psCached; }
bool IsRouted(const StateSubject& subject) { return subject.Routed; }
bool IsNotRouted(const StateSubject& subject) { return !subject.Routed; }
bool CanBeDeleted(const StateSubject& subject) { return subject.Style == psPersistent || IsCached(subject); }

// What can be done to a Property.

constexpr std::array kPropertyActs{
    PropertyAct{"Value =", 40, kValue, [](auto& it, auto& model, auto& scene) { model.LetValue(it.Value, scene); },
                [](auto& it, auto& property) { property->SetValue(it.Value); }},
    PropertyAct{"DefaultValue =", 7, kValue,
                [](auto& it, auto& model, auto& scene) {
                  model.LetDefaultValue(it.Value);
                  if (scene.Wrong == Mistake::DefaultValueStamps) model.Stamp = scene.Now;
                },
                [](auto& it, auto& property) { property->SetDefaultValue(it.Value); }},
    PropertyAct{"Undo", 8, kNothing, [](auto&, auto& model, auto& scene) { model.Undo(scene); },
                [](auto&, auto& property) { property->Undo(); }},
    PropertyAct{"MarkUpdated", 8, kNothing, [](auto&, auto& model, auto& scene) { model.MarkUpdated(scene); },
                [](auto&, auto& property) { property->MarkUpdated(); }},
    PropertyAct{"MarkUndone", 3, kNothing, [](auto&, auto& model, auto& scene) { model.MarkUndone(scene); },
                [](auto&, auto& property) { property->MarkUndone(); }},
    PropertyAct{"ClearDirty", 5, kNothing, [](auto&, auto& model, auto&) { model.ClearDirty(); },
                [](auto&, auto& property) { property->ClearDirty(); }},
    PropertyAct{"state :=", 4, kStateOf,
                [](auto& it, auto& model, auto& scene) { model.LetState(zStateFlags{it.Number}, scene); },
                [](auto& it, auto& property) { property->SetStateFlags(zStateFlags{it.Number}); }},
    PropertyAct{
        "Flags =", 5, kFlagsOf,
        [](auto& it, auto& model, auto& scene) { model.Let(&PropertyModel::Flags, zPropertyFlags{it.Number}, scene); },
        [](auto& it, auto& property) { property->SetFlags(zPropertyFlags{it.Number}); }},
    PropertyAct{
        "Modifiable =", 4, kMostlyTrue,
        [](auto& it, auto& model, auto& scene) { model.Let(&PropertyModel::Modifiable, it.Number != 0, scene); },
        [](auto& it, auto& property) { property->SetModifiable(it.Number != 0); }},
    PropertyAct{"Locked =", 3, kMostlyFalse, [](auto& it, auto& model, auto&) { model.Locked = it.Number != 0; },
                [](auto& it, auto& property) { property->SetLocked(it.Number != 0); }},
    PropertyAct{"Size =", 4, kSizeOf,
                [](auto& it, auto& model, auto& scene) { model.Let(&PropertyModel::Size, it.Number, scene); },
                [](auto& it, auto& property) { property->SetSize(it.Number); }},
    PropertyAct{
        "DataType =", 3, kTypeOf,
        [](auto& it, auto& model, auto& scene) { model.Let(&PropertyModel::DataType, zDataTypes{it.Number}, scene); },
        [](auto& it, auto& property) { property->SetDataType(zDataTypes{it.Number}); }, IsNotRouted},
    PropertyAct{"listeners of values", 5, kListener,
                [](auto& it, auto&, auto& scene) { scene.OnValue = static_cast<Listener>(it.Number); },
                [](auto&, auto&) {}},
    PropertyAct{"go on with the Copy", 3, kNewName, [](auto& it, auto& model, auto&) { model = model.Copied(it.Text); },
                [](auto& it, auto& property) { property = property->Copy(it.Text); }, IsLone, true}};

// What can be done to a Properties.

constexpr std::array kCollectionActs{
    CollectionAct{"SetupItem", 8, kFields,
                  [](auto& it, auto& model, auto& scene) { model.SetupItem(it.Fields, it.Place, scene); },
                  [](auto& it, auto& properties) { properties->SetupItem(it.Fields, it.Place); }},
    CollectionAct{"Add", 6, kFields, [](auto& it, auto& model, auto& scene) { model.Add(it.Fields, it.Place, scene); },
                  [](auto& it, auto& properties) { properties->Add(Framework().CreateProperty(it.Fields), it.Place); }},
    CollectionAct{"Remove", 5, kIndex, [](auto& it, auto& model, auto& scene) { model.Remove(it.Value, scene); },
                  [](auto& it, auto& properties) { properties->Remove(it.Value); }},
    CollectionAct{"RenameItem", 6, kRenaming,
                  [](auto& it, auto& model, auto& scene) { model.RenameItem(it.Value.AsText(), it.Text, scene); },
                  [](auto& it, auto& properties) { properties->RenameItem(it.Value.AsText(), it.Text); }, IsDefined},
    CollectionAct{"Item", 2, kIndex, [](auto& it, auto& model, auto& scene) { model.Item(it.Value, scene); },
                  [](auto& it, auto& properties) { properties->Item(it.Value); }},
    CollectionAct{"Undo of all", 5, kNothing, [](auto&, auto& model, auto& scene) { model.Undo(scene); },
                  [](auto&, auto& properties) { properties->Undo(); }},
    CollectionAct{"Delete", 7, kNothing, [](auto&, auto& model, auto& scene) { model.Delete(scene); },
                  [](auto&, auto& properties) { properties->Delete(); }, CanBeDeleted},
    CollectionAct{"Update", 9, kNothing, [](auto&, auto& model, auto& scene) { model.Update(scene); },
                  [](auto&, auto& properties) { properties->Update(); }, IsRouted},
    CollectionAct{"StateFlags =", 6, kStateOf,
                  [](auto& it, auto& model, auto& scene) { model.LetStateFlags(zStateFlags{it.Number}, scene); },
                  [](auto& it, auto& properties) { properties->SetStateFlags(zStateFlags{it.Number}); }, IsCached},
    CollectionAct{"ClearDirty of all", 4, kNothing, [](auto&, auto& model, auto&) { model.ClearDirty(); },
                  [](auto&, auto& properties) { properties->ClearDirty(); }},
    CollectionAct{"Locked of all =", 2, kMostlyFalse,
                  [](auto& it, auto& model, auto&) { model.LetLocked(it.Number != 0); },
                  [](auto& it, auto& properties) { properties->SetLocked(it.Number != 0); }},
    CollectionAct{
        "SupportsAdd =", 2, kMostlyTrue,
        [](auto& it, auto& model, auto&) { model.LetSupports(&CollectionModel::SupportsAdd, it.Number != 0); },
        [](auto& it, auto& properties) { properties->SetSupportsAdd(it.Number != 0); }},
    CollectionAct{
        "SupportsRemove =", 2, kMostlyTrue,
        [](auto& it, auto& model, auto&) { model.LetSupports(&CollectionModel::SupportsRemove, it.Number != 0); },
        [](auto& it, auto& properties) { properties->SetSupportsRemove(it.Number != 0); }},
    CollectionAct{"veto of listeners =", 4, kMostlyFalse,
                  [](auto& it, auto&, auto& scene) { scene.Veto = it.Number != 0; }, [](auto&, auto&) {}},
    CollectionAct{"go on with the Copy of all", 1, kNothing, [](auto&, auto& model, auto&) { model = model.Copied(); },
                  [](auto&, auto& properties) { properties = properties->Copy(); }, IsAny, true}};

template <class Acts, class WeightOf>
const auto* Chosen(const Acts& acts, Dice& dice, WeightOf weightOf) {
  std::size_t sum = 0;
  for (const auto& act : acts) sum += weightOf(act);
  auto drawn = dice.Below(sum);
  auto chosen = acts.begin();
  for (; drawn >= weightOf(*chosen); ++chosen) drawn -= weightOf(*chosen);
  return &*chosen;
}

Operation DrawnOperation(Dice& dice, const StateSequence& sequence) {
  constexpr std::size_t kSeldom = 6;  // an act on a collection that does not suit it is refused, and drawn less often
  const auto& subject = sequence.Subject;
  Operation operation;
  if (subject.IsCollection && dice.OneIn(2)) {
    operation.OnCollection = Chosen(kCollectionActs, dice, [&](const CollectionAct& act) {
      return act.Suits(subject) ? act.Weight : act.Weight / kSeldom;
    });
    operation.OnCollection->Takes.Draw(operation, dice, sequence);
    return operation;
  }
  operation.OnProperty =
      Chosen(kPropertyActs, dice, [&](const PropertyAct& act) { return act.Suits(subject) ? act.Weight : 0; });
  operation.Member = dice.Below(6);
  operation.OnProperty->Takes.Draw(operation, dice, sequence);
  return operation;
}

std::string ShownOperation(const Operation& operation, const StateSubject& subject) {
  const bool onProperty = operation.OnProperty != nullptr;
  const auto& takes = onProperty ? operation.OnProperty->Takes : operation.OnCollection->Takes;
  const auto argument = takes.Show(operation);
  std::string text;
  if (onProperty && subject.IsCollection)
    text = "member " + NumberText(static_cast<long long>(operation.Member) + 1) + ": ";
  text += onProperty ? operation.OnProperty->Name : operation.OnCollection->Name;
  return argument.empty() ? text : text + " " + argument;
}

}  // namespace

StateSequence DrawnSequence(const StateSubject& subject, std::uint64_t seed) {
  constexpr std::array kEditFlags{efAll, efAll, efUpdate, efInsert, efUpdate | efInsert, efDelete};
  Dice dice(seed);
  StateSequence sequence;
  sequence.Subject = subject;
  if (subject.Routed) sequence.EditFlags = dice.Of(kEditFlags);
  const auto members = subject.IsCollection ? dice.Below(4) + 1 : 1;
  for (std::size_t each = 0; each < members; ++each) {
    sequence.Members.push_back(AnyFields(dice, subject, kNames[each]));
  }
  for (auto left = dice.Below(12) + 4; left > 0; --left) sequence.Operations.push_back(DrawnOperation(dice, sequence));
  return sequence;
}

std::string Shown(const StateSequence& sequence) {
  std::string text = sequence.Subject.Called;
  for (const auto& member : sequence.Members) text += "; " + ShownFields(member);
  if (sequence.Subject.Routed) text += "; EditFlags " + EditFlagsDisplay(sequence.EditFlags);
  long long step = 0;
  for (const auto& operation : sequence.Operations) {
    text += "\n  " + NumberText(++step) + ". " + ShownOperation(operation, sequence.Subject);
  }
  return text;
}

}  // namespace velmoria::test

#include "tests/scenario/collection_model/collection_stage.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "tests/support/expect_raised.h"
#include "velmoria/brokering/business_objects_impl.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

class CollectionStage;
using Objects = std::vector<IBusinessObjectPtr>;

}  // namespace

struct CollectionAct {
  const char* Called;
  std::size_t Weight;
  bool Writes;
  bool NeedsObject;
  void (*Expect)(CollectionStage& stage, const CollectionStep& step, ObjectModels& given);
  void (*Do)(CollectionStage& stage, const CollectionStep& step, Objects& given);
};

namespace {

/// An object that a step has given, beside its model.
struct SeenObject {
  ObjectModelPtr Model;
  IBusinessObjectPtr Object;
  ShownRow Row;
};

struct HeardEvent {
  std::string Event;
  IBusinessObjectPtr Item;
};

BusinessObjectsPtr BoundCollection(const RowWorld& world, const CollectionKind& kind) {
  world.Design.Action->SetObjectBuffer(kind.Buffer);
  auto collection = Make<BusinessObjects>();
  collection->SetupBound(
      {.Recordset = world.Design.Read(), .ObjectType = kind.ObjectType, .CollectionType = kind.CollectionType});
  return collection;
}

BusinessObjectsPtr TransientCollection() {
  auto collection = Make<BusinessObjects>();
  collection->SetupTransient("Mine", {}, true, false, {}, true);
  return collection;
}

void Tell(BusinessObjects& collection, std::vector<HeardEvent>& told) {
  collection.BeforeUpdate += [&told](bool&) { told.push_back({"bu", {}}); };
  collection.AfterUpdate += [&told] { told.push_back({"au", {}}); };
  collection.BeforePendingDelete += [&told](bool&) { told.push_back({"bd", {}}); };
  collection.AfterPendingDelete += [&told] { told.push_back({"ad", {}}); };
  collection.BeforeItemUpdate += [&told](IBusinessObject& item, bool&) { told.push_back({"bi", &item}); };
  collection.AfterItemUpdate += [&told](IBusinessObject& item) { told.push_back({"ai", &item}); };
  collection.BeforeItemPendingDelete += [&told](IBusinessObject& item, bool&) { told.push_back({"bd", &item}); };
  collection.AfterItemPendingDelete += [&told](IBusinessObject& item) { told.push_back({"ad", &item}); };
}

/// Both collections, their models, and what differs.
class CollectionStage {
  TableModel table_ = RowWorld::FirstTable();  // before the models, which stand over it

 public:
  CollectionStage(RowWorld& world, const CollectionKind& kind, CollectionMistake wrong)
      : BoundExpected(table_, kind, wrong), MineExpected(wrong), world_(world) {
    world_.Reset();
    Bound = BoundCollection(world, kind);
    Tell(*Bound, told_);
    Tell(*Mine, told_);
  }

  BoundModel BoundExpected;
  TransientModel MineExpected;
  BusinessObjectsPtr Bound;
  BusinessObjectsPtr Mine = TransientCollection();

  /// The first difference behind a step, or "".
  std::string Do(const CollectionStep& step) {
    if (step.Act->NeedsObject && seen_.empty()) return "";
    Clear();
    ObjectModels expected;
    Objects given;
    const auto refused = Refusal([&] { step.Act->Expect(*this, step, expected); });
    const auto raised = Thrown([&] { step.Act->Do(*this, step, given); });
    if (step.Act->Writes) world_.IsTouched = true;
    const auto number = raised ? raised->CatalogueNumber() : 0;
    world_.Raised.insert(number);
    if (number != refused) return "raised " + std::to_string(number) + ", expected " + std::to_string(refused);
    if (given.size() != expected.size()) return "gave " + std::to_string(given.size()) + " objects";
    for (std::size_t each = 0; each < given.size(); ++each) {
      if (!See(expected[each], given[each])) return "gave another object at " + std::to_string(each + 1);
    }
    return Difference(step.Act->Writes);
  }

  const SeenObject& Seen(const CollectionStep& step) const { return seen_[step.Object % seen_.size()]; }

  Variant IndexOf(const CollectionStep& step) const {
    if (step.Other % 2 == 0) return std::to_string(step.Position);
    const auto identifier = world_.Design.Class->CreateIdentifier();
    identifier->Properties()->Item(1)->SetValue(step.Position);
    return identifier;
  }

  void TurnGuard(std::int32_t id) {
    if (table_.Guarded.erase(id) == 0) table_.Guarded.insert(id);
  }
  void WriteGuards() { world_.WriteGuards(table_.Guarded); }

  std::string TableDifference() {
    const auto stored = world_.Stored();
    const auto expected = ShownTable(table_);
    return stored == expected ? "" : "stored " + stored + ", expected " + expected;
  }

 private:
  void Clear() {
    Apartment().Messages->Clear();
    told_.clear();
    BoundExpected.Told.clear();
    MineExpected.Told.clear();
  }

  template <class Routine>
  static std::int32_t Refusal(Routine&& routine) {
    try {
      routine();
    } catch (const RowRefused& refused) { return static_cast<std::int32_t>(refused.Number); }
    return 0;
  }

  /// Notes a pair, and whether it is the one noted before.
  bool See(const ObjectModelPtr& model, const IBusinessObjectPtr& object) {
    if (!model || !object) return !model && !object;
    for (const auto& seen : seen_) {
      if (seen.Model == model || seen.Object == object) return seen.Model == model && seen.Object == object;
    }
    seen_.push_back({model, object, ShownRow(object->GetModel()->PropertyContext()->Item(1))});
    return true;
  }

  std::string Difference(bool written) {
    auto expected = BoundExpected.Told;
    expected.insert(expected.end(), MineExpected.Told.begin(), MineExpected.Told.end());
    if (!IsTold(expected)) return "told otherwise: " + ShownTold();
    if (!SameWhole(*Bound, BoundExpected)) return "bound collection: " + ShownWhole(*Bound);
    if (!SameWhole(*Mine, MineExpected)) return "transient collection: " + ShownWhole(*Mine);
    const auto difference = ObjectsDifference();
    return difference.empty() && written ? TableDifference() : difference;
  }

  bool IsTold(const std::vector<HeardModel>& expected) {
    return std::equal(told_.begin(), told_.end(), expected.begin(), expected.end(),
                      [&](const auto& heard, const auto& model) {
                        return heard.Event == model.Event && See(model.Item, heard.Item);
                      });
  }

  std::string ShownTold() const {
    std::string text;
    for (const auto& heard : told_)
      text += heard.Event + (heard.Item ? " of " + heard.Item->StateFlagsDisplay() : "") + ", ";
    return text;
  }

  // A dispatcher has no answer to Dirty.
  template <class Model>
  static bool SameWhole(BusinessObjects& real, const Model& model) {
    return real.Count() == model.Count() && real.StateFlags() == model.StateFlags() &&
           (real.CollectionType() == cltDispatcher || real.Dirty() == model.IsDirty());
  }

  static std::string ShownWhole(BusinessObjects& real) {
    return std::to_string(real.Count()) + " " + StateFlagsDisplay(real.StateFlags()) +
           (real.CollectionType() != cltDispatcher && real.Dirty() ? " dirty" : "");
  }

  std::string ObjectsDifference() const {
    for (std::size_t each = 0; each < seen_.size(); ++each) {
      const auto& [model, object, row] = seen_[each];
      auto difference = row.Difference(*model->Page, model->Row);
      if (difference.empty() && (object->StateFlags() != model->StateFlags() || object->Dirty() != model->IsDirty()))
        difference = "the object is " + object->StateFlagsDisplay();
      if (!difference.empty()) return "object " + std::to_string(each) + ": " + difference;
    }
    return "";
  }

  RowWorld& world_;
  std::vector<SeenObject> seen_;
  std::vector<HeardEvent> told_;
};

using S = CollectionStage;
using Step = CollectionStep;

std::string KeyOf(const Step& step) { return std::to_string(step.Position); }

std::optional<std::int32_t> BeforeOf(const Step& step) {
  return step.Position % 3 == 1 ? std::optional(step.Other) : std::nullopt;
}

std::optional<std::int32_t> AfterOf(const Step& step) {
  return step.Position % 4 == 1 ? std::optional(step.Other) : std::nullopt;
}

Variant Given(const std::optional<std::int32_t>& position) { return position ? *position : Variant::Missing(); }

template <zErrors number>
void Refused(S&, const Step&, ObjectModels&) {
  throw RowRefused{number};
}

constexpr CollectionAct kActs[] = {
    {"Item by position", 5, false, false,
     [](S& s, const Step& step, auto& given) { given.push_back(s.BoundExpected.Item(step.Position)); },
     [](S& s, const Step& step, auto& given) { given.push_back(s.Bound->Item(step.Position)); }},
    {"Item by key", 4, false, false,
     [](S& s, const Step& step, auto& given) { given.push_back(s.BoundExpected.Item(KeyOf(step))); },
     [](S& s, const Step& step, auto& given) { given.push_back(s.Bound->Item(s.IndexOf(step))); }},
    {"range-for", 1, false, false, [](S& s, const Step&, auto& given) { given = s.BoundExpected.Enumerated(); },
     [](S& s, const Step&, auto& given) {
       for (const auto& each : *s.Bound) given.push_back(each);
     }},
    {"SetupItem", 2, false, false, [](S& s, const Step&, auto& given) { given.push_back(s.BoundExpected.SetupItem()); },
     [](S& s, const Step&, auto& given) { given.push_back(s.Bound->SetupItem()); }},
    {"Update", 2, true, false, [](S& s, const Step&, auto&) { s.BoundExpected.Update(); },
     [](S& s, const Step&, auto&) { s.Bound->Update(); }},
    {"Delete", 1, false, false, [](S& s, const Step&, auto&) { s.BoundExpected.Delete(); },
     [](S& s, const Step&, auto&) { s.Bound->Delete(); }},
    {"Undo", 1, false, false, [](S& s, const Step&, auto&) { s.BoundExpected.Undo(); },
     [](S& s, const Step&, auto&) { s.Bound->Undo(); }},
    {"let Value of a member", 6, false, true,
     [](S& s, const Step& step, auto&) { s.Seen(step).Model->Let(step.Column, step.Value); },
     [](S& s, const Step& step, auto&) {
       s.Seen(step).Object->FindProperty(kColumnNames[step.Column])->SetValue(step.Value);
     }},
    {"Update of a member", 2, true, true, [](S& s, const Step& step, auto&) { s.Seen(step).Model->Update(); },
     [](S& s, const Step& step, auto&) { s.Seen(step).Object->Update(); }},
    {"Delete of a member", 2, false, true, [](S& s, const Step& step, auto&) { s.Seen(step).Model->Delete(); },
     [](S& s, const Step& step, auto&) { s.Seen(step).Object->Delete(); }},
    {"Undo of a member", 1, false, true, [](S& s, const Step& step, auto&) { s.Seen(step).Model->Undo(); },
     [](S& s, const Step& step, auto&) { s.Seen(step).Object->Undo(); }},
    {"guard", 1, true, false, [](S& s, const Step& step, auto&) { s.TurnGuard(step.Position); },
     [](S& s, const Step&, auto&) { s.WriteGuards(); }},
    {"Add to the bound one", 1, false, true, &Refused<errNotSupported_Add>,
     [](S& s, const Step& step, auto&) { s.Bound->Add(s.Seen(step).Object); }},
    {"Remove from the bound one", 1, false, false, &Refused<errNotSupported_Remove>,
     [](S& s, const Step& step, auto&) { s.Bound->Remove(step.Position); }},
    {"Add to mine", 4, false, true,
     [](S& s, const Step& step, auto&) { s.MineExpected.Add(s.Seen(step).Model, BeforeOf(step), AfterOf(step)); },
     [](S& s, const Step& step, auto&) {
       s.Mine->Add(s.Seen(step).Object, {.Before = Given(BeforeOf(step)), .After = Given(AfterOf(step))});
     }},
    {"Remove from mine by position", 1, false, false,
     [](S& s, const Step& step, auto&) { s.MineExpected.Remove(step.Position); },
     [](S& s, const Step& step, auto&) { s.Mine->Remove(step.Position); }},
    {"Remove from mine by key", 1, false, false,
     [](S& s, const Step& step, auto&) { s.MineExpected.Remove(KeyOf(step)); },
     [](S& s, const Step& step, auto&) { s.Mine->Remove(s.IndexOf(step)); }},
    {"Item of mine by position", 1, false, false,
     [](S& s, const Step& step, auto& given) { given.push_back(s.MineExpected.Item(step.Position)); },
     [](S& s, const Step& step, auto& given) { given.push_back(s.Mine->Item(step.Position)); }},
    {"Item of mine by key", 1, false, false,
     [](S& s, const Step& step, auto& given) { given.push_back(s.MineExpected.Item(KeyOf(step))); },
     [](S& s, const Step& step, auto& given) { given.push_back(s.Mine->Item(s.IndexOf(step))); }},
    {"range-for over mine", 1, false, false,
     [](S& s, const Step&, auto& given) { given = s.MineExpected.Enumerated(); },
     [](S& s, const Step&, auto& given) {
       for (const auto& each : *s.Mine) given.push_back(each);
     }},
    {"SetupItem of mine", 1, false, false, &Refused<errNotSupported_SetupBusinessObject>,
     [](S& s, const Step&, auto&) { s.Mine->SetupItem(); }},
    {"Update of mine", 2, true, false, [](S& s, const Step&, auto&) { s.MineExpected.Update(); },
     [](S& s, const Step&, auto&) { s.Mine->Update(); }},
    {"Delete of mine", 1, false, false, [](S& s, const Step&, auto&) { s.MineExpected.Delete(); },
     [](S& s, const Step&, auto&) { s.Mine->Delete(); }},
    {"Undo of mine", 1, false, false, [](S& s, const Step&, auto&) { s.MineExpected.Undo(); },
     [](S& s, const Step&, auto&) { s.Mine->Undo(); }},
};

}  // namespace

std::vector<CollectionStep> DrawnCollectionSteps(std::uint64_t seed) {
  Dice dice(seed);
  std::vector<CollectionStep> steps(dice.Length({6, 6}, {16, 24}));
  for (auto& step : steps) {
    step.Act = &dice.ByWeight(kActs);
    step.Object = dice.Below(16);
    step.Position = static_cast<std::int32_t>(dice.Below(10));
    step.Other = static_cast<std::int32_t>(dice.Below(4));
    step.Column = dice.OneIn(3) ? 0 : 1 + dice.Below(2);
    step.Value = DrawnCell(dice, step.Column);
  }
  return steps;
}

std::string Shown(const std::vector<CollectionStep>& steps) {
  std::string text;
  for (const auto& step : steps) {
    text += std::string(step.Act->Called) + ", object " + std::to_string(step.Object) + ", position " +
            std::to_string(step.Position) + ", other " + std::to_string(step.Other) + ", " + kColumnNames[step.Column] +
            ", " + ShownCell(step.Value) + "\n";
  }
  return text;
}

std::string Play(RowWorld& world, const std::vector<CollectionStep>& steps, const CollectionKind& kind,
                 CollectionMistake wrong) {
  CollectionStage stage(world, kind, wrong);
  for (std::size_t step = 0; step < steps.size(); ++step) {
    const auto difference = stage.Do(steps[step]);
    if (!difference.empty()) return "step " + std::to_string(step + 1) + ": " + difference;
  }
  const auto difference = stage.TableDifference();
  return difference.empty() ? "" : "at the end: " + difference;
}

}  // namespace velmoria::test

#include "tests/scenario/row_model/row_stage.h"

#include <algorithm>
#include <iterator>

#include "tests/support/expect_raised.h"
#include "tests/support/told_events.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

class RowStage;

struct Place {
  std::size_t Page;
  std::size_t Row;
};

}  // namespace

struct RowAct {
  const char* Called;
  std::size_t Weight;
  bool Writes;
  void (*Expect)(RowStage& stage, const Place& place, const RowStep& step);
  void (*Do)(RowStage& stage, const Place& place, const RowStep& step);
};

namespace {

/// Both tables, both sets of pages, and what differs.
class RowStage {
 public:
  RowStage(RowWorld& world, std::int32_t buffer, RowMistake wrong)
      : world_(world), wrong_(wrong), buffer_(static_cast<std::size_t>(buffer)) {
    world_.Reset();
    for (const auto& [id, cells] : table_.Rows) fetched_.push_back({.Now = cells, .Old = {}});
    world_.Design.Action->SetObjectBuffer(buffer);
    Join(world_.Design.Read());
  }

  /// The first difference behind a step, or "".
  std::string Do(const RowStep& step) {
    Apartment().Messages->Clear();
    told_.clear();
    const auto place = PlaceOf(step.Row);
    models_[place.Page].Told.clear();
    const auto expected = Expect(step, place);
    const auto raised = Thrown([&] { step.Act->Do(*this, place, step); });
    const auto number = raised ? raised->CatalogueNumber() : 0;
    world_.Raised.insert(number);
    if (number != expected) return "raised " + std::to_string(number) + ", expected " + std::to_string(expected);
    if (told_ != models_[place.Page].Told) return "told '" + told_ + "', expected '" + models_[place.Page].Told + "'";
    if (step.Act->Writes) world_.IsTouched = true;
    const auto difference = RowsDifference();
    return difference.empty() && step.Act->Writes ? TableDifference() : difference;
  }

  std::string TableDifference() const {
    const auto stored = world_.Stored();
    const auto expected = ShownTable(table_);
    return stored == expected ? "" : "stored " + stored + ", expected " + expected;
  }

  PageModel& Model(const Place& place) { return models_[place.Page]; }
  Recordset& Page(const Place& place) { return *pages_[place.Page]; }
  Properties& Row(const Place& place) { return rows_[place.Page][place.Row].Row(); }

  void AddRow(const Place& place) { Hold(place.Page, Page(place).CreatePersistentProperties("")); }

  void TurnPage() {
    const auto last = pages_.back();
    if (!last->NextBookmark().IsEmpty()) Join(last->DatabaseAgent()->GetRecordset(1, last, false));
  }

  void TurnGuard(std::int32_t number) {
    const auto id = number % 9 + 1;
    if (table_.Guarded.erase(id) == 0) table_.Guarded.insert(id);
  }

  void WriteGuards() { world_.WriteGuards(table_.Guarded); }

 private:
  Place PlaceOf(std::size_t number) const {
    std::size_t all = 0;
    for (const auto& page : rows_) all += page.size();
    number %= all;
    std::size_t page = 0;
    for (; number >= rows_[page].size(); ++page) number -= rows_[page].size();
    return {page, number};
  }

  void Join(const RecordsetPtr& page) {
    pages_.push_back(page);
    rows_.emplace_back();
    for (std::int32_t row = 0; row < page->Count(); ++row)
      Hold(rows_.size() - 1, page->GetPersistentProperties(row, ""));
    auto& model = models_.emplace_back(table_, wrong_);
    const auto left = fetched_.size() - next_;
    const auto count = buffer_ == 0 ? left : std::min(buffer_, left);
    model.Rows.assign(fetched_.begin() + static_cast<std::ptrdiff_t>(next_),
                      fetched_.begin() + static_cast<std::ptrdiff_t>(next_ + count));
    next_ += count;
    model.IsLast = next_ == fetched_.size();
  }

  void Hold(std::size_t page, const PropertiesPtr& row) {
    TellEvents(*row, told_);
    rows_[page].emplace_back(row);
  }

  std::int32_t Expect(const RowStep& step, const Place& place) {
    try {
      step.Act->Expect(*this, place, step);
    } catch (const RowRefused& refused) { return static_cast<std::int32_t>(refused.Number); }
    return 0;
  }

  std::string RowsDifference() const {
    for (std::size_t page = 0; page < rows_.size(); ++page) {
      if (rows_[page].size() != models_[page].Rows.size()) return "page " + std::to_string(page) + " has other rows";
      for (std::size_t row = 0; row < rows_[page].size(); ++row) {
        const auto difference = rows_[page][row].Difference(models_[page], row);
        if (!difference.empty())
          return "page " + std::to_string(page) + " row " + std::to_string(row) + ": " + difference;
      }
    }
    return "";
  }

  RowWorld& world_;
  RowMistake wrong_;
  std::size_t buffer_;
  TableModel table_ = RowWorld::FirstTable();
  std::vector<RowModel> fetched_;  // what the result held when it was opened
  std::size_t next_ = 0;           // the first of them that no page has
  std::vector<PageModel> models_;
  std::vector<RecordsetPtr> pages_;
  std::vector<std::vector<ShownRow>> rows_;
  std::string told_;
};

using S = RowStage;
using P = Place;
using Step = RowStep;

zStateFlags FlagsOf(const Step& step) { return static_cast<zStateFlags>(step.Number); }

constexpr RowAct kActs[] = {
    {"let Value", 4, false, [](S& s, const P& p, const Step& step) { s.Model(p).Let(p.Row, step.Column, step.Value); },
     [](S& s, const P& p, const Step& step) { s.Row(p).Item(kColumnNames[step.Column])->SetValue(step.Value); }},
    {"let StateFlags", 1, false, [](S& s, const P& p, const Step& step) { s.Model(p).LetState(p.Row, FlagsOf(step)); },
     [](S& s, const P& p, const Step& step) { s.Row(p).SetStateFlags(FlagsOf(step)); }},
    {"Delete", 1, false, [](S& s, const P& p, const Step&) { s.Model(p).Delete(p.Row); },
     [](S& s, const P& p, const Step&) { s.Row(p).Delete(); }},
    {"Undo", 1, false, [](S& s, const P& p, const Step&) { s.Model(p).Undo(p.Row); },
     [](S& s, const P& p, const Step&) { s.Row(p).Undo(); }},
    {"Undo of a column", 1, false,
     [](S& s, const P& p, const Step& step) { s.Model(p).UndoColumn(p.Row, step.Column); },
     [](S& s, const P& p, const Step& step) { s.Row(p).Item(kColumnNames[step.Column])->Undo(); }},
    {"Update", 3, true, [](S& s, const P& p, const Step&) { s.Model(p).Update(p.Row); },
     [](S& s, const P& p, const Step&) { s.Row(p).Update(); }},
    {"Update of the page", 1, true, [](S& s, const P& p, const Step&) { s.Model(p).Save(); },
     [](S& s, const P& p, const Step&) { s.Page(p).Update(); }},
    {"new row", 2, false, [](S& s, const P& p, const Step&) { s.Model(p).NewRow(); },
     [](S& s, const P& p, const Step&) { s.AddRow(p); }},
    {"next page", 2, false, [](S&, const P&, const Step&) {}, [](S& s, const P&, const Step&) { s.TurnPage(); }},
    {"guard", 1, true, [](S& s, const P&, const Step& step) { s.TurnGuard(step.Number); },
     [](S& s, const P&, const Step&) { s.WriteGuards(); }},
};

}  // namespace

std::vector<RowStep> DrawnRowSteps(std::uint64_t seed) {
  Dice dice(seed);
  std::vector<RowStep> steps(dice.Length({4, 6}, {12, 20}));
  for (auto& step : steps) {
    step.Act = &dice.ByWeight(kActs);
    step.Row = dice.Below(8);
    step.Column = dice.OneIn(4) ? 0 : 1 + dice.Below(2);
    step.Value = DrawnCell(dice, step.Column);
    step.Number = static_cast<std::int32_t>(dice.Below(64));
  }
  return steps;
}

std::string Shown(const std::vector<RowStep>& steps) {
  std::string text;
  for (const auto& step : steps) {
    text += std::string(step.Act->Called) + ", row " + std::to_string(step.Row) + ", " + kColumnNames[step.Column] +
            ", " + ShownCell(step.Value) + ", " + std::to_string(step.Number) + "\n";
  }
  return text;
}

std::string Play(RowWorld& world, const std::vector<RowStep>& steps, std::int32_t buffer, RowMistake wrong) {
  RowStage stage(world, buffer, wrong);
  for (std::size_t step = 0; step < steps.size(); ++step) {
    const auto difference = stage.Do(steps[step]);
    if (!difference.empty()) return "step " + std::to_string(step + 1) + ": " + difference;
  }
  const auto difference = stage.TableDifference();
  return difference.empty() ? "" : "at the end: " + difference;
}

}  // namespace velmoria::test

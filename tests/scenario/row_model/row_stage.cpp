#include "tests/scenario/row_model/row_stage.h"

#include <algorithm>
#include <iterator>

#include "tests/support/expect_raised.h"
#include "tests/support/told_events.h"
#include "tests/unit/properties/state_model/state_values.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

class RowStage;

struct Place {
  std::size_t Page;
  std::size_t Row;
};

constexpr const char* kNames[] = {"Id", "Name", "Total"};

// An Id that is no rowid, so that the database gives none of its own.
constexpr const char* kTable = R"sql(
pragma synchronous = off;
create table orders (Id int not null primary key, Name varchar(20), Total double);
create table guards (Id int);
create trigger guard_insert before insert on orders when new.Id in (select Id from guards)
  begin select raise(abort, 'guarded'); end;
create trigger guard_update before update on orders when old.Id in (select Id from guards)
  begin select raise(abort, 'guarded'); end;
create trigger guard_delete before delete on orders when old.Id in (select Id from guards)
  begin select raise(abort, 'guarded'); end;
)sql";

constexpr const char* kRows = R"sql(
begin;
delete from guards; delete from orders;
insert into orders values (1, 'Ada', 1.5), (2, 'Ben', null), (3, null, 3.5), (4, 'Dan', 4.5), (5, null, null);
commit;
)sql";

TableModel FirstTable() {
  return {.Rows = {{1, {1, "Ada", 1.5}},
                   {2, {2, "Ben", Variant::Null()}},
                   {3, {3, Variant::Null(), 3.5}},
                   {4, {4, "Dan", 4.5}},
                   {5, {5, Variant::Null(), Variant::Null()}}},
          .Guarded = {}};
}

std::string Cell(const Variant& value) { return value.IsEmpty() || value.IsNull() ? value.TypeName() : value.AsText(); }

Variant DrawnValue(Dice& dice, std::size_t column) {
  static const std::vector<Variant> ids{1, 2, 3, 4, 5, 6, 7, 8, 9, Variant::Null(), Variant()};
  static const std::vector<Variant> names{"Ada",           "Ben",    "O'Hara", "", "more than twenty characters",
                                          Variant::Null(), Variant()};
  static const std::vector<Variant> totals{1.5, 0.0, -2.25, Variant::Null(), Variant()};
  return dice.Of(column == 0 ? ids : column == 1 ? names : totals);
}

}  // namespace

struct RowAct {
  const char* Called;
  std::size_t Weight;
  void (*Expect)(RowStage& stage, const Place& place, const RowStep& step);
  void (*Do)(RowStage& stage, const Place& place, const RowStep& step);
};

namespace {

/// Both tables, both sets of pages, and what differs.
class RowStage {
 public:
  RowStage(RowWorld& world, std::int32_t buffer, RowMistake wrong)
      : world_(world), wrong_(wrong), buffer_(static_cast<std::size_t>(buffer)) {
    world_.File.Run(kRows);
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
    return Difference();
  }

  PageModel& Model(const Place& place) { return models_[place.Page]; }
  Recordset& Page(const Place& place) { return *pages_[place.Page]; }
  Properties& Row(const Place& place) { return *rows_[place.Page][place.Row]; }

  void AddRow(const Place& place) { Hold(place.Page, Page(place).CreatePersistentProperties("")); }

  void TurnPage() {
    const auto last = pages_.back();
    if (!last->NextBookmark().IsEmpty()) Join(last->DatabaseAgent()->GetRecordset(1, last, false));
  }

  void TurnGuard(std::int32_t number) {
    const auto id = number % 9 + 1;
    if (table_.Guarded.erase(id) == 0) table_.Guarded.insert(id);
  }

  void WriteGuards() {
    std::string script = "delete from guards;";
    for (const auto id : table_.Guarded) script += "insert into guards values (" + std::to_string(id) + ");";
    world_.File.Run(script);
  }

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
    rows_[page].push_back(row);
  }

  std::int32_t Expect(const RowStep& step, const Place& place) {
    try {
      step.Act->Expect(*this, place, step);
    } catch (const RowRefused& refused) { return static_cast<std::int32_t>(refused.Number); }
    return 0;
  }

  std::string RowDifference(std::size_t page, std::size_t row) const {
    const auto real = RealRow(*rows_[page][row]);
    const auto model = ModelRow(models_[page], row);
    if (real == model) return "";
    return "page " + std::to_string(page) + " row " + std::to_string(row) + ": " + real + ", expected " + model;
  }

  std::string Difference() const {
    for (std::size_t page = 0; page < rows_.size(); ++page) {
      if (rows_[page].size() != models_[page].Rows.size()) return "page " + std::to_string(page) + " has other rows";
      for (std::size_t row = 0; row < rows_[page].size(); ++row) {
        auto difference = RowDifference(page, row);
        if (!difference.empty()) return difference;
      }
    }
    const auto stored = world_.File.Column(
        "select Id || ' ' || ifnull(Name, 'NULL') || ' ' || ifnull(Total, 'NULL') from "
        "orders order by Id");
    const auto expected = StoredModel();
    return stored == expected ? "" : "stored " + stored + ", expected " + expected;
  }

  static std::string RealRow(Properties& row) {
    auto text = StateFlagsDisplay(row.StateFlags()) + (row.Dirty() ? " dirty" : "");
    if (has(row.StateFlags(), sfdeleted)) return text;
    for (const auto* name : kNames) {
      const auto member = row.Item(name);
      text += std::string(" ") + name + " " + Cell(member->EmptyValue() ? Variant() : member->Value()) + " was " +
              Cell(member->OldValue()) + (member->DirtyValue() ? " dirty" : "");
    }
    return text;
  }

  static std::string ModelRow(const PageModel& page, std::size_t row) {
    auto text = StateFlagsDisplay(page.StateFlags(row)) + (page.IsDirty(row) ? " dirty" : "");
    if (page.IsDeleted(row)) return text;
    for (std::size_t column = 0; column < kColumns; ++column) {
      text += std::string(" ") + kNames[column] + " " + Cell(page.Rows[row].Now[column]) + " was " +
              Cell(page.Rows[row].Old[column]) + (page.Differs(row, column) ? " dirty" : "");
    }
    return text;
  }

  std::string StoredModel() const {
    std::string text;
    for (const auto& [id, cells] : table_.Rows) {
      const auto& total = cells[2];
      if (!text.empty()) text += '|';
      text += std::to_string(id) + " " + (cells[1].IsNull() ? "NULL" : cells[1].AsText()) + " ";
      text += total.IsNull() ? "NULL" : total.AsText() + (total.AsDouble() == 0 ? ".0" : "");
    }
    return text;
  }

  RowWorld& world_;
  RowMistake wrong_;
  std::size_t buffer_;
  TableModel table_ = FirstTable();
  std::vector<RowModel> fetched_;  // what the result held when it was opened
  std::size_t next_ = 0;           // the first of them that no page has
  std::vector<PageModel> models_;
  std::vector<RecordsetPtr> pages_;
  std::vector<std::vector<PropertiesPtr>> rows_;
  std::string told_;
};

using S = RowStage;
using P = Place;
using Step = RowStep;

zStateFlags FlagsOf(const Step& step) { return static_cast<zStateFlags>(step.Number); }

constexpr RowAct kActs[] = {
    {"let Value", 4, [](S& s, const P& p, const Step& step) { s.Model(p).Let(p.Row, step.Column, step.Value); },
     [](S& s, const P& p, const Step& step) { s.Row(p).Item(kNames[step.Column])->SetValue(step.Value); }},
    {"let StateFlags", 1, [](S& s, const P& p, const Step& step) { s.Model(p).LetState(p.Row, FlagsOf(step)); },
     [](S& s, const P& p, const Step& step) { s.Row(p).SetStateFlags(FlagsOf(step)); }},
    {"Delete", 1, [](S& s, const P& p, const Step&) { s.Model(p).Delete(p.Row); },
     [](S& s, const P& p, const Step&) { s.Row(p).Delete(); }},
    {"Undo", 1, [](S& s, const P& p, const Step&) { s.Model(p).Undo(p.Row); },
     [](S& s, const P& p, const Step&) { s.Row(p).Undo(); }},
    {"Undo of a column", 1, [](S& s, const P& p, const Step& step) { s.Model(p).UndoColumn(p.Row, step.Column); },
     [](S& s, const P& p, const Step& step) { s.Row(p).Item(kNames[step.Column])->Undo(); }},
    {"Update", 3, [](S& s, const P& p, const Step&) { s.Model(p).Update(p.Row); },
     [](S& s, const P& p, const Step&) { s.Row(p).Update(); }},
    {"Update of the page", 1, [](S& s, const P& p, const Step&) { s.Model(p).Save(); },
     [](S& s, const P& p, const Step&) { s.Page(p).Update(); }},
    {"new row", 2, [](S& s, const P& p, const Step&) { s.Model(p).NewRow(); },
     [](S& s, const P& p, const Step&) { s.AddRow(p); }},
    {"next page", 2, [](S&, const P&, const Step&) {}, [](S& s, const P&, const Step&) { s.TurnPage(); }},
    {"guard", 1, [](S& s, const P&, const Step& step) { s.TurnGuard(step.Number); },
     [](S& s, const P&, const Step&) { s.WriteGuards(); }},
};

const RowAct& DrawnAct(Dice& dice) {
  std::vector<const RowAct*> acts;
  for (const auto& act : kActs) acts.insert(acts.end(), act.Weight, &act);
  return *dice.Of(acts);
}

}  // namespace

std::vector<RowStep> DrawnRowSteps(std::uint64_t seed) {
  Dice dice(seed);
  std::vector<RowStep> steps(12 + dice.Below(20));
  for (auto& step : steps) {
    step.Act = &DrawnAct(dice);
    step.Row = dice.Below(8);
    step.Column = dice.OneIn(4) ? 0 : 1 + dice.Below(2);
    step.Value = DrawnValue(dice, step.Column);
    step.Number = static_cast<std::int32_t>(dice.Below(64));
  }
  return steps;
}

std::string Shown(const std::vector<RowStep>& steps) {
  std::string text;
  for (const auto& step : steps) {
    text += std::string(step.Act->Called) + ", row " + std::to_string(step.Row) + ", " + kNames[step.Column] + ", " +
            Cell(step.Value) + ", " + std::to_string(step.Number) + "\n";
  }
  return text;
}

RowWorld::RowWorld() : File(kTable), Design({.ConnectString = File.ConnectString() + ";SyncPragma=OFF"}) {}

std::string Play(RowWorld& world, const std::vector<RowStep>& steps, std::int32_t buffer, RowMistake wrong) {
  RowStage stage(world, buffer, wrong);
  for (std::size_t step = 0; step < steps.size(); ++step) {
    const auto difference = stage.Do(steps[step]);
    if (!difference.empty()) return "step " + std::to_string(step + 1) + ": " + difference;
  }
  return "";
}

}  // namespace velmoria::test

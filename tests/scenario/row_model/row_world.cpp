#include "tests/scenario/row_model/row_world.h"

#include <utility>

#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

// An Id that is no rowid, so that the database gives none of its own. Nothing here has to outlive a crash.
constexpr const char* kTable = R"sql(
pragma synchronous = off; pragma journal_mode = memory;
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
begin; delete from guards; delete from orders;
insert into orders values (1, 'Ada', 1.5), (2, 'Ben', null), (3, null, 3.5), (4, 'Dan', 4.5), (5, null, null);
commit;
)sql";

std::string ShownModel(const PageModel& page, std::size_t row) {
  auto text = StateFlagsDisplay(page.StateFlags(row)) + (page.IsDirty(row) ? " dirty" : "");
  if (page.IsDeleted(row)) return text;
  for (std::size_t column = 0; column < kColumns; ++column) {
    text += std::string(" ") + kColumnNames[column] + " " + ShownCell(page.Rows[row].Now[column]) + " was " +
            ShownCell(page.Rows[row].Old[column]) + (page.Differs(row, column) ? " dirty" : "");
  }
  return text;
}

Variant ValueOf(const Property& cell) { return cell.EmptyValue() ? Variant() : cell.Value(); }

}  // namespace

RowWorld::RowWorld()
    : File(kTable), Design({.ConnectString = File.ConnectString() + ";SyncPragma=OFF;JournalMode=MEMORY"}) {}

TableModel RowWorld::FirstTable() {
  return {.Rows = {{1, {1, "Ada", 1.5}},
                   {2, {2, "Ben", Variant::Null()}},
                   {3, {3, Variant::Null(), 3.5}},
                   {4, {4, "Dan", 4.5}},
                   {5, {5, Variant::Null(), Variant::Null()}}},
          .Guarded = {}};
}

void RowWorld::Reset() {
  if (std::exchange(IsTouched, false)) File.Run(kRows);
}

void RowWorld::WriteGuards(const std::set<std::int32_t>& ids) {
  std::string script = "begin; delete from guards;";
  for (const auto id : ids) script += "insert into guards values (" + std::to_string(id) + ");";
  File.Run(script + "commit;");
}

std::string RowWorld::Stored() {
  return File.Column(
      "select Id || ' ' || ifnull(Name, 'NULL') || ' ' || ifnull(Total, 'NULL') from orders order by Id");
}

ShownRow::ShownRow(PropertiesPtr row) : row_(std::move(row)) {
  for (std::size_t column = 0; column < kColumns; ++column) cells_[column] = row_->Item(kColumnNames[column]);
}

bool ShownRow::CellAgrees(const PageModel& page, std::size_t row, std::size_t column) const {
  const auto& [now, old] = page.Rows[row];
  const auto& cell = *cells_[column];
  return IsSame(ValueOf(cell), now[column]) && IsSame(cell.OldValue(), old[column]) &&
         cell.DirtyValue() == page.Differs(row, column);
}

bool ShownRow::Agrees(const PageModel& page, std::size_t row) const {
  if (row_->StateFlags() != page.StateFlags(row) || row_->Dirty() != page.IsDirty(row)) return false;
  for (std::size_t column = 0; column < kColumns && !page.IsDeleted(row); ++column) {
    if (!CellAgrees(page, row, column)) return false;
  }
  return true;
}

std::string ShownRow::Shown() const {
  auto text = StateFlagsDisplay(row_->StateFlags()) + (row_->Dirty() ? " dirty" : "");
  if (has(row_->StateFlags(), sfdeleted)) return text;
  for (std::size_t column = 0; column < kColumns; ++column) {
    const auto& cell = *cells_[column];
    text += std::string(" ") + kColumnNames[column] + " " + ShownCell(ValueOf(cell)) + " was " +
            ShownCell(cell.OldValue()) + (cell.DirtyValue() ? " dirty" : "");
  }
  return text;
}

std::string ShownRow::Difference(const PageModel& page, std::size_t row) const {
  return Agrees(page, row) ? "" : Shown() + ", expected " + ShownModel(page, row);
}

std::string ShownTable(const TableModel& table) {
  std::string text;
  for (const auto& [id, cells] : table.Rows) {
    const auto& total = cells[2];
    if (!text.empty()) text += '|';
    text += std::to_string(id) + " " + (cells[1].IsNull() ? "NULL" : cells[1].AsText()) + " ";
    text += total.IsNull() ? "NULL" : total.AsText() + (total.AsDouble() == 0 ? ".0" : "");
  }
  return text;
}

std::string ShownCell(const Variant& value) {
  return value.IsEmpty() || value.IsNull() ? value.TypeName() : value.AsText();
}

Variant DrawnCell(Dice& dice, std::size_t column) {
  static const std::vector<Variant> ids{1, 2, 3, 4, 5, 6, 7, 8, 9, Variant::Null(), Variant()};
  static const std::vector<Variant> names{"Ada",           "Ben",    "O'Hara", "", "more than twenty characters",
                                          Variant::Null(), Variant()};
  static const std::vector<Variant> totals{1.5, 0.0, -2.25, Variant::Null(), Variant()};
  return dice.Of(column == 0 ? ids : column == 1 ? names : totals);
}

}  // namespace velmoria::test

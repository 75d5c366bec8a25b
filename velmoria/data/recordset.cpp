#include <algorithm>
#include <utility>

#include "velmoria/core/statistics.h"
#include "velmoria/data/column_place_impl.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/data/row_changes_impl.h"
#include "velmoria/design/source.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_texts_impl.h"
#include "velmoria/runtime/key_index.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

using List = RowChanges::List;

namespace {

/// True for as long as it lives.
struct Marked {
  explicit Marked(bool& mark) : Mark(mark) { Mark = true; }
  ~Marked() { Mark = false; }
  Marked(const Marked&) = delete;
  Marked& operator=(const Marked&) = delete;

  bool& Mark;
};

}  // namespace

Recordset::Recordset() = default;

Recordset::~Recordset() = default;

void Recordset::Initialize(DatabaseAgentPtr agent, RecordsetPage page) {
  agent_ = std::move(agent);
  columns_ = std::move(page.Columns);
  columns_->FixOrder();
  statistics_ = std::move(page.Statistics);
  prevBookmark_ = std::move(page.PrevBookmark);
  firstBookmark_ = std::move(page.FirstBookmark);
  lastBookmark_ = std::move(page.LastBookmark);
  nextBookmark_ = std::move(page.NextBookmark);
  rows_ = std::move(page.Rows);
  fetchedRows_ = static_cast<std::int32_t>(rows_.Rows());
  fetchedColumns_ = rows_.Columns();
  virtualFirstNumber_ = page.VirtualFirstNumber;
  engine_ = page.Engine;
  if (engine_ != engUnknown || !agent_) return;
  if (const auto source = agent_->Source()) engine_ = source->Engine();
}

StatisticsPtr Recordset::Statistics() {
  if (!statistics_) statistics_ = Make<velmoria::Statistics>();
  return statistics_;
}

std::string Recordset::Details() const { return agent_ ? agent_->Details() : std::string(); }

std::int32_t Recordset::VirtualCount() const try { return agent_->RowCount(); } catch (...) {
  Failed("VirtualCount (Get)");
}

std::int32_t Recordset::VirtualLastNumber() const {
  return virtualFirstNumber_ > -1 ? virtualFirstNumber_ + Count() : 0;
}

PropertiesPtr Recordset::BuildProperties(std::int32_t row, const std::string& key) {
  if (row < 0 || row >= Count()) {
    Raise(errPersistence_Row, "BuildProperties", {NumberText(row), NumberText(Count())});
  }
  auto properties = Make<Properties>();
  properties->BindRow(RecordsetPtr(this), row, key);
  return properties;
}

PropertiesPtr Recordset::GetPersistentProperties(std::int32_t row, const std::string& key) try {
  return BuildProperties(row, key);
} catch (...) { Failed("GetPersistentProperties"); }

PropertiesPtr Recordset::CreatePersistentProperties(const std::string& key) try {
  if (!nextBookmark_.IsEmpty()) {
    Raise(errBusinessObjects_Buffer, "CreatePersistentProperties", {NumberText(agent_->ObjectBuffer())});
  }
  return BuildProperties(AddRow(), key);
} catch (...) { Failed("CreatePersistentProperties"); }

std::vector<PropertyPtr> Recordset::TakeMembers() noexcept { return std::exchange(idleMembers_, {}); }

void Recordset::KeepMembers(std::vector<PropertyPtr> members) noexcept {
  if (!idleMembers_.empty()) return;
  for (auto& member : members) {
    if (member && !member->LeaveRow()) member.reset();
  }
  idleMembers_ = std::move(members);
}

RowChanges& Recordset::Changes() {
  if (!changes_) changes_ = std::make_unique<RowChanges>();
  return *changes_;
}

std::int32_t Recordset::AddRow() {
  const auto row = Count();
  auto& changes = Changes();
  changes.Touch(row, CellsOfRow());
  changes.Enter(List::New, row);
  ++addedRows_;
  return row;
}

std::size_t Recordset::ColumnOf(const Variant& index) const { return PlaceOfColumn(*columns_->Item(index)); }

/// What asks for the change of a column counts by OrderNumber, which stays with a definition that is moved.
std::size_t Recordset::NumberedColumn(const Variant& index, const char* routine) const {
  if (index.IsText()) return ColumnOf(index);
  const auto place = static_cast<std::size_t>(PositionFromIndex(index) - 1);
  if (!DefinitionAt(place)) Raise(errItem_Property, routine, PropertyKeyTexts({.Index = index}));
  return place;
}

/// One for every column that there is or was.
std::size_t Recordset::CellsOfRow() const { return static_cast<std::size_t>(columns_->LastOrder()); }

Variant Recordset::Fetched(std::int32_t row, std::size_t column) const {
  if (column >= fetchedColumns_) Fail(RuntimeFailure::SubscriptOutOfRange);
  if (row != foundRow_) {
    found_ = rows_.Find(static_cast<std::size_t>(row));
    foundRow_ = row;
  }
  return found_.Chunk->Value(column, found_.Row);
}

Variant Recordset::Present(std::int32_t row, std::size_t column) const {
  if (changes_) {
    if (const auto* stored = changes_->FindStored(row, column)) return stored->Present;
    if (row >= fetchedRows_) return {};
  }
  return Fetched(row, column);
}

void Recordset::RefuseDeleted(std::int32_t row, const char* routine) const {
  if (changes_ && changes_->IsIn(List::Deleted, row)) Raise(errPersistence_Deleted, routine, {NumberText(row)});
}

/// The host may have moved the definitions, or taken one out: a column keeps its place all the same.
PropertyDataPtr Recordset::DefinitionAt(std::size_t column) const {
  const auto definition =
      std::ranges::find_if(*columns_, [=](const auto& each) { return PlaceOfColumn(*each) == column; });
  return definition == columns_->end() ? PropertyDataPtr() : *definition;
}

bool Recordset::IsLong(std::int32_t row, std::size_t column) const {
  return row < fetchedRows_ && column < fetchedColumns_ && rows_.Storage(column) == ColumnStorage::Placeholder;
}

// Nothing but a long column that was not read with its page has an Empty value under no change.
bool Recordset::IsUnread(std::int32_t row, std::size_t column) const {
  if (readsLong_ || !IsLong(row, column)) return false;
  if (changes_ && changes_->FindStored(row, column)) return false;
  const auto definition = DefinitionAt(column);
  return definition && definition->DataType() == dtByteArray && agent_->AccessMethod() == kRdo;
}

void Recordset::ReadLong(std::int32_t row, std::size_t column) {
  const Marked reading(readsLong_);
  const auto properties = BuildProperties(row, "");
  Store(row, column, agent_->GetBLOBFieldValue(DefinitionAt(column)->Name(), properties));
}

Variant Recordset::PresentOrRead(std::int32_t row, std::size_t column) {
  auto value = changes_ ? Present(row, column) : Fetched(row, column);
  if (!value.IsEmpty() || !IsUnread(row, column)) return value;
  ReadLong(row, column);
  return Present(row, column);
}

Variant Recordset::Values(std::int32_t row, const PropertyData& column) try {
  RefuseDeleted(row, "Values");
  return PresentOrRead(row, PlaceOfColumn(column));
} catch (...) { Failed("Values (Get)"); }

}  // namespace velmoria

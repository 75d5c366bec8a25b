#include "velmoria/data/column_place_impl.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/data/row_changes_impl.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_texts_impl.h"

namespace velmoria {

using List = RowChanges::List;

void Recordset::DeletePersistentProperties(std::int32_t row) try {
  auto& changes = Changes();
  if (changes.IsIn(List::New, row)) {
    changes.Leave(List::New, row);
    FlagDeleted(row);
  } else if (!changes.IsIn(List::Deleted, row)) {
    changes.Enter(List::Pending, row);
  }
} catch (...) { Failed("DeletePersistentProperties"); }

void Recordset::FlagDeleted(std::int32_t row) try {
  auto& changes = Changes();
  changes.Leave(List::Pending, row);
  changes.Enter(List::Deleted, row);
} catch (...) { Failed("FlagDeleted"); }

void Recordset::UpdatePersistentProperties(const PropertiesPtr& properties) try {
  const auto row = properties->Row();
  const auto state = properties->StateFlags();
  if (!has(state, sfpendingdelete)) {
    WriteRow(properties, has(state, sfNew));
  } else if (has(state, sfNew)) {
    Changes().Leave(List::New, row);
    FlagDeleted(row);
  } else {
    agent_->DeletePersistentProperties(properties, 0);
  }
} catch (...) { Failed("UpdatePersistentProperties"); }

void Recordset::WriteRow(const PropertiesPtr& properties, bool isNew) {
  bool written = false;
  try {
    agent_->UpdatePersistentProperties(properties, 0, written);
  } catch (...) {
    // The database has the row; only the step behind the write failed.
    if (written) FileAsSaved(properties->Row());
    throw;
  }
  if (written || !isNew) FileAsSaved(properties->Row());
}

void Recordset::FileAsSaved(std::int32_t row) {
  auto& changes = Changes();
  if (changes.IsIn(List::New, row)) {
    NullEmptyValues(row);
    changes.Leave(List::New, row);
  }
  changes.Leave(List::Dirty, row);
}

void Recordset::NullEmptyValues(std::int32_t row) {
  const auto columns = CellsOfRow();
  for (std::size_t column = 0; column < columns; ++column) {
    if (Present(row, column).IsEmpty()) Store(row, column, Variant::Null());
  }
}

void Recordset::UpdateRow(std::int32_t row) { UpdatePersistentProperties(BuildProperties(row, {})); }

void Recordset::Update() try {
  if (!changes_) return;
  for (const auto list : {List::Dirty, List::New, List::Pending}) {
    // A copy: a row that is saved leaves its lists during the walk.
    for (const auto row : changes_->Rows(list)) {
      if (changes_->IsIn(list, row) && !changes_->IsIn(List::Deleted, row)) UpdateRow(row);
    }
  }
} catch (...) { Failed("Update"); }

void Recordset::RefreshCounterFields(const std::vector<CounterValue>& values, std::int32_t row) try {
  for (const auto& value : values) {
    auto column = columns_->Find(Variant::Missing(), {}, value.SourceKey);
    if (!column) column = columns_->Find(value.Name, {}, value.SourceKey);
    if (!column) {
      Raise(errItem_Property, "RefreshCounterFields",
            PropertyKeyTexts({.Index = value.Name, .SourceKey = value.SourceKey}));
    }
    Store(row, PlaceOfColumn(*column), value.Value);
  }
} catch (...) { Failed("RefreshCounterFields"); }

}  // namespace velmoria

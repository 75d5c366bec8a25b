#include <vector>

#include "velmoria/data/agents/sql_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/source.h"
#include "velmoria/platform/rdo/rdo_column.h"
#include "velmoria/platform/rdo/rdo_parameter.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"

namespace velmoria {

namespace {

std::string NameOfCounter(const Properties& properties) {
  for (const auto& property : properties)
    if (property->Counter()) return property->Name();
  return "{unknown}";
}

std::vector<CounterValue> FirstRow(const rdoResultset& result) {
  std::vector<CounterValue> values;
  for (const auto& column : result.rdoColumns())
    values.push_back({column->Name(), column->SourceTable() + "." + column->SourceColumn(), column->Value()});
  return values;
}

/// The markers that a text has for long values take them in the order of the columns.
void BindLongValues(const rdoQuery& query, const Properties& properties) {
  std::size_t next = 0;
  for (const auto& property : properties) {
    if (next == query.rdoParameters().size()) return;
    const auto type = property->SourceDataType();
    if (type > dtRDOLONGVARCHAR || type < dtRDOLongVarBinary) continue;
    const auto& marker = query.rdoParameters()[next++];
    marker->SetDirection(rdParamInput);
    marker->SetValue(property->Value());
  }
}

void Refresh(Properties& properties, const std::vector<CounterValue>& values) {
  if (properties.IsBound()) return properties.Recordset()->RefreshCounterFields(values, properties.Row());
  for (const auto& value : values) properties.Item(value.Name)->SetValue(value.Value);
}

}  // namespace

void SQLAgent::ExecuteLogged(const char* routine, std::string sql) const {
  const auto query = CreateStatement(std::move(sql));
  LogStatement(routine, *query);
  query->Execute();
  query->Close();
}

void SQLAgent::Execute() try {
  const auto query = CreatePreparedStatement();
  query->Execute();
  TakeOutputs(*query);
  query->Close();
} catch (...) { Failed("Execute"); }

void SQLAgent::InsertPersistentProperties(const PropertiesPtr& properties) try {
  InsertRow(properties, KeyParameters(), true);
} catch (...) { Failed("InsertPersistentProperties", errPersistence_Insert); }

void SQLAgent::InsertRow(const PropertiesPtr& properties, const PropertiesPtr& parameters, bool identityRequired) {
  bool returnsIdentity = false;
  const auto query = CreateStatement(source_->SQLInsert(properties, returnsIdentity, parameters));
  BindLongValues(*query, *properties);
  LogStatement("InsertPersistentProperties", *query);
  if (returnsIdentity)
    ReadIdentity(*query, properties, identityRequired);
  else
    query->Execute();
  query->Close();
}

void SQLAgent::ReadIdentity(rdoQuery& query, const PropertiesPtr& properties, bool required) const {
  const auto result = query.OpenResultset();
  if (result->rdoColumns().IsEmpty()) {
    if (!required) return;
    Raise(errRDO_Identity_Insert, "InsertPersistentProperties", {NameOfCounter(*properties)},
          "Some database engines do not support Inserting new records into tables with IDENTITY columns during a "
          "complex transaction.");
  }
  if (!result->AtBOF() && !result->AtEOF()) Refresh(*properties, FirstRow(*result));
  result->Close();
}

// The key is looked for as it was: current values first, then the old ones of what has changed.
void SQLAgent::UpdatePersistentProperties(const PropertiesPtr& properties) try {
  if (has(properties->StateFlags(), sfNew)) return InsertRow(properties, nullptr, false);
  const auto& keys = KeyParameters();
  keys->PrepareValues({.Properties = properties});
  keys->PrepareValues({.Properties = properties, .DirtyOnly = true, .UseOldValue = true});
  ExecuteLogged("UpdatePersistentProperties", source_->SQLUpdate(properties, keys));
} catch (...) { Failed("UpdatePersistentProperties", errPersistence_Update); }

void SQLAgent::DeletePersistentProperties(const PropertiesPtr& properties) try {
  const auto& keys = KeyParameters();
  keys->PrepareValues({.Properties = properties});
  ExecuteLogged("DeletePersistentProperties", source_->SQLDelete(properties, keys));
  if (properties->IsBound()) properties->Recordset()->FlagDeleted(properties->Row());
} catch (...) { Failed("DeletePersistentProperties", errPersistence_Delete, {source_->SourceText()}); }

// By a statement of its own, which finds the row by its present key.
Variant SQLAgent::GetBLOBFieldValue(const Variant& index, const PropertiesPtr& properties) try {
  const auto property = properties->Item(index);
  const auto& keys = KeyParameters();
  keys->PrepareValues({.Properties = properties});
  const auto query = CreateStatement(source_->SQLSelect(keys));
  LogStatement("GetBLOBFieldValue", *query);
  const auto result = query->OpenResultset(HowToOpen());
  const auto column = result->rdoColumns().At(Variant(property->Name()));
  const auto size = result->AtEOF() ? 0 : column->ColumnSize();
  const auto value = size < 1 ? Variant() : column->GetChunk(size);
  result->Close();
  query->Close();
  return value;
} catch (...) { Failed("GetBLOBFieldValue", errRDO_Resultset, {source_->SourceTypeName(), source_->SourceText()}); }

}  // namespace velmoria

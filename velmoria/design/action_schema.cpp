#include "velmoria/core/now.h"
#include "velmoria/core/statistics.h"
#include "velmoria/core/type_codes.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/readable_source_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/source.h"
#include "velmoria/design/sources.h"
#include "velmoria/platform/rdo/rdo_column.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

// What the server fills in by itself is not asked of the user.
zPropertyFlags FlagsOf(const odbc::ColumnInfo& column) {
  auto flags = column.IsText ? pfAllowZeroLength : pfNone;
  if (column.AutoIncrement) return flags | pfcounter;
  return column.Required ? flags | pfRequired : flags;
}

PropertyFields FieldsOf(const odbc::ColumnInfo& column, zEngines engine) {
  const auto type = static_cast<zSourceDataTypes>(column.Type);
  return {.Name = column.Name,
          .DataType = DataTypeForSourceDataType(engine, type),
          .Size = column.Size,
          .SourceName = column.Name,
          .SourceColumn = column.BaseColumn,
          .SourceTable = column.BaseTable,
          .SourceDataType = type,
          .Flags = FlagsOf(column),
          .Engine = engine};
}

void AddColumn(PropertiesData& definitions, const odbc::ColumnInfo& column, zEngines engine) {
  const auto definition = definitions.SetupItem(psPersistent, FieldsOf(column, engine), {}, true);
  definition->SetColumnFacts(
      {.Attributes = AttributesOf(column), .OrdinalPosition = definitions.Count(), .ChunkRequired = column.IsLong});
}

PropertiesDataPtr DefinitionsOf(const std::vector<odbc::ColumnInfo>& columns, zEngines engine, std::string& context) {
  auto definitions = Make<PropertiesData>();
  for (const auto& column : columns) {
    context = column.Name;
    AddColumn(*definitions, column, engine);
  }
  return definitions;
}

}  // namespace

/// What was made of a result's columns. Results that share the description get definitions like these, which are never
/// given out themselves; they are made when the description comes for the second time.
struct Action::LastColumns {
  odbc::Columns Described;
  zEngines Engine = engUnknown;
  PropertiesDataPtr Definitions;

  bool Are(const odbc::Columns& described, zEngines engine) const { return Described == described && Engine == engine; }
};

PropertiesDataPtr Action::MakeDefinitions(const rdoResultset& result, std::string& context) {
  const auto engine = Connection()->Engine();
  const auto& described = result.Described();
  if (!lastColumns_ || !lastColumns_->Are(described, engine)) {
    lastColumns_ = std::make_shared<LastColumns>(LastColumns{described, engine, {}});
    return DefinitionsOf(*described, engine, context);
  }
  auto& like = lastColumns_->Definitions;
  if (!like) like = DefinitionsOf(*described, engine, context);
  return like->Twin();
}

PropertiesDataPtr Action::RDOCreatePropertiesData(rdoResultset& result) {
  std::string context;
  try {
    const auto start = Now();
    auto definitions = MakeDefinitions(result, context);
    const auto statistic =
        definitions->Statistics()->SetupItem({.Name = "Read " + Quoted(DatabaseName()) + " Properties Meta-data",
                                              .SubjectLabel = "Column",
                                              .SubjectCount = definitions->Count(),
                                              .StartTime = start});
    statistic->SetEndTime(Now());
    return definitions;
  } catch (...) {
    const auto source = Sources()->Item();
    Failed("RDOCreatePropertiesData", SourceFailure(source->SourceType()), {source->SourceText()},
           "Processing RDO Column, " + context);
  }
}

}  // namespace velmoria

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

}  // namespace

PropertiesDataPtr Action::RDOCreatePropertiesData(rdoResultset& result) {
  std::string context;
  try {
    const auto engine = Connection()->Engine();
    auto definitions = Make<PropertiesData>();
    const auto statistic =
        definitions->Statistics()->SetupItem({.Name = "Read " + Quoted(DatabaseName()) + " Properties Meta-data",
                                              .SubjectLabel = "Column",
                                              .StartTime = Now()});
    for (const auto& column : result.Described()) {
      context = column.Name;
      AddColumn(*definitions, column, engine);
    }
    statistic->SetSubjectCount(definitions->Count());
    statistic->SetEndTime(Now());
    return definitions;
  } catch (...) {
    const auto source = Sources()->Item();
    Failed("RDOCreatePropertiesData", SourceFailure(source->SourceType()), {source->SourceText()},
           "Processing RDO Column, " + context);
  }
}

}  // namespace velmoria

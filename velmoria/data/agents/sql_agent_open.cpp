#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/display.h"
#include "velmoria/core/globals.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/type_codes.h"
#include "velmoria/data/agents/sql_agent_impl.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/readable_source_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/source.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_parameter.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/platform/rdo/rdo_table.h"
#include "velmoria/platform/rdo/rdo_tables.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

struct CursorRow {
  zCursorTypes CursorType;
  rdoNumber Value;
};
constexpr CursorRow kCursorTypes[] = {
    {crtNone, rdOpenForwardOnly},
    {crtKeyset, rdOpenKeyset},
    {crtDynamic, rdOpenDynamic},
    {crtStatic, rdOpenStatic},
};

rdoNumber ResultsetType(zCursorTypes cursorType) {
  for (const auto& row : kCursorTypes)
    if (row.CursorType == cursorType) return row.Value;
  return rdOpenForwardOnly;
}

rdoNumber ParameterType(const Property& property) {
  auto type = property.SourceDataType();
  if (type == dtSourceVariant && property.DataType() != dtVariant)
    type = SourceDataTypeForDataType(property.Engine(), property.DataType());
  if (type == dtSourceVariant) type = SourceDataTypeForVarType(property.Engine(), property.Value().Type());
  return static_cast<rdoNumber>(type);
}

rdoNumber Direction(zPropertyFlags flags) {
  if (has(flags, pfReturnValue)) return rdParamReturnValue;
  if (!has(flags, pfOutput)) return rdParamInput;
  return has(flags, pfInput) ? rdParamInputOutput : rdParamOutput;
}

void Bind(rdoParameter& marker, const Property& property) {
  marker.SetType(ParameterType(property));
  marker.SetDirection(Direction(property.Flags()));
  if (!property.EmptyValue() && has(property.Flags(), pfInput)) marker.SetValue(property.Value());
}

void AppendParameter(std::string& text, const rdoParameter& parameter) {
  text += "\r\n    Name: " + Quoted(parameter.Name()) + "  Type: " + NumberText(parameter.Type()) +
          "  Direction: " + NumberText(parameter.Direction()) + "  Value: ";
  const auto& value = parameter.Value();
  if (value.IsText())
    text += Quoted(value.TextView());
  else if (value.IsByteArray())
    text += "(Byte Array)";
  else
    text += value.IsGiven() && !value.IsNull() ? value.AsText() : "Null";
}

}  // namespace

// The text has the first placeholder twice and no second one, so the engine is never shown.
void SQLAgent::CheckSourceType(const char* routine) const {
  if (FindReadableSource(source_->SourceType())) return;
  Raise(errInvalid_SourceType, routine, {source_->SourceTypeName(), source_->EngineName()});
}

bool SQLAgent::NeedsStatement() const {
  return source_->SourceType() == stSQL || !statementParameters_->EmptyValues() ||
         statementParameters_->RequiresValues();
}

void SQLAgent::CreateResultset() try {
  CheckSourceType("CreateResultset");
  const auto connection = action_->Connection();
  const OpenResultsetArguments how{.Type = ResultsetType(connection->CursorType())};
  auto resultset = NeedsStatement()
                       ? CreatePreparedStatement()->OpenResultset(how)
                       : connection->GetConnection()->rdoTables()->Item(source_->SourceText())->OpenResultset(how);
  propertiesData_ = action_->RDOCreatePropertiesData(*resultset);
  resultset_ = std::move(resultset);
} catch (...) { Failed("CreateResultset", SourceFailure(source_->SourceType()), {source_->SourceText()}); }

rdoQueryPtr SQLAgent::CreateStatement(const std::string& sql) const {
  auto query = action_->Connection()->GetConnection()->CreateQuery("", sql);
  query->SetPrepared(!has(source_->OptionFlags(), ofRDOPassthru));
  return query;
}

rdoQueryPtr SQLAgent::CreatePreparedStatement() const try {
  CheckSourceType("CreatePreparedStatement");
  CheckRequiredValues();
  auto query = CreateStatement(source_->SQLSelect(statementParameters_));
  if (query->Prepared())
    BindParameters(*query);
  else
    CheckDirections();
  LogStatement("CreatePreparedStatement", *query);
  return query;
} catch (...) { Failed("CreatePreparedStatement"); }

void SQLAgent::CheckRequiredValues() const {
  std::string names;
  for (const auto& parameter : *statementParameters_)
    if (parameter->RequiresValue()) names += (names.empty() ? "" : ", ") + parameter->Name();
  if (!names.empty()) Raise(errProperties_Required, "CreatePreparedStatement", {names});
}

void SQLAgent::CheckDirections() const {
  for (const auto& parameter : *statementParameters_)
    if (has(parameter->Flags(), pfOutput | pfReturnValue))
      Raise(errRDO_PassThru_Output_Parameters, "CreatePreparedStatement", {parameter->Name()});
}

/// Markers have no names in a statement, so they go by their order.
void SQLAgent::BindParameters(rdoQuery& query) const {
  std::int32_t position = 0;
  for (const auto& marker : query.rdoParameters()) Bind(*marker, *statementParameters_->Item(++position));
}

void SQLAgent::LogStatement(const char* routine, const rdoQuery& query) const {
  const auto messages = Apartment().Messages;
  if (!messages) return;
  auto text = query.SQL();
  if (!query.rdoParameters().empty()) text += "\r\nParameters:";
  for (const auto& parameter : query.rdoParameters()) AppendParameter(text, *parameter);
  messages->SetupItem({.Number = errRDO_Info,
                       .TypeName = std::string(ReportedType()),
                       .RoutineName = routine,
                       .TypeFlags = tfVelmoria,
                       .SeverityFlags = svfInfo,
                       .ExtraText = std::move(text)});
}

}  // namespace velmoria

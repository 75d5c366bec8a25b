#include "velmoria/brokering/identifier.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/display.h"
#include "velmoria/core/globals.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/profile.h"
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
#include "velmoria/properties/attribute.h"
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

/// A setting of the machine, not set at first.
bool EnforcesOrder() {
  const auto profile = Apartment().Profile;
  const auto setting =
      profile
          ? profile->Item({.Index = "EnforceActionParameterOrder", .DefaultValue = false, .DefaultDataType = dtBoolean})
          : AttributePtr();
  return setting && setting->Value().AsBoolean();
}

/// A long text takes its own room, not that of the next doubling.
void AppendText(std::string& text, std::string_view value) {
  if (value.size() > text.capacity()) text.reserve(text.size() + value.size() + 1024);
  text.append("'").append(value).append("'");
}

void AppendParameter(std::string& text, const rdoParameter& parameter) {
  text += "\r\n    Name: " + Quoted(parameter.Name()) + "  Type: " + NumberText(parameter.Type()) +
          "  Direction: " + NumberText(parameter.Direction()) + "  Value: ";
  const auto& value = parameter.Value();
  if (value.IsText())
    AppendText(text, value.TextView());
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
  return source_->SourceType() == stSQL || IsProcedure() || !statementParameters_->EmptyValues() ||
         statementParameters_->RequiresValues();
}

/// What a procedure or a text of the host's own does when it is run again, nobody knows.
bool SQLAgent::OnlyReads() const { return source_->SourceType() == stTable || source_->SourceType() == stView; }

OpenResultsetArguments SQLAgent::HowToOpen() const {
  return {.Type = ResultsetType(action_->Connection()->CursorType()),
          .Repeatable = OnlyReads(),
          .Shape = OnlyReads() ? source_->SourceText() : std::string()};
}

void SQLAgent::CreateResultset(bool async) try {
  CheckSourceType("CreateResultset");
  propertiesData_ = nullptr;
  const auto connection = action_->Connection();
  auto how = HowToOpen();
  if (async) how.Options = rdAsyncEnable;
  query_ = NeedsStatement() ? CreatePreparedStatement() : rdoQueryPtr();
  resultset_ = query_ ? query_->OpenResultset(how)
                      : connection->GetConnection()->rdoTables()->Item(source_->SourceText())->OpenResultset(how);
  asyncFlag_ = async;
  if (!async) DescribeResultset();
} catch (...) {
  CloseResultset();
  Failed("CreateResultset", SourceFailure(source_->SourceType()), {source_->SourceText()});
}

/// The columns of a result that is being opened are known when it is open.
void SQLAgent::DescribeResultset() try {
  if (!propertiesData_) propertiesData_ = action_->RDOCreatePropertiesData(*resultset_);
} catch (...) { Failed("CreateResultset", SourceFailure(source_->SourceType()), {source_->SourceText()}); }

rdoQueryPtr SQLAgent::CreateStatement(std::string sql) const {
  auto query = action_->Connection()->GetConnection()->CreateQuery("", std::move(sql));
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
  CheckParameterOrder(*query);
  return query;
} catch (...) { Failed("CreatePreparedStatement"); }

void SQLAgent::CheckRequiredValues() const {
  if (!statementParameters_->RequiresValues()) return;
  std::string names;
  for (const auto& parameter : *statementParameters_)
    if (has(parameter->Flags(), pfRequired) && parameter->EmptyValue())
      names += (names.empty() ? "" : ", ") + parameter->Name();
  Raise(errProperties_Required, "CreatePreparedStatement", {names});
}

void SQLAgent::CheckDirections() const {
  for (const auto& parameter : *statementParameters_)
    if (has(parameter->Flags(), pfOutput | pfReturnValue))
      Raise(errRDO_PassThru_Output_Parameters, "CreatePreparedStatement", {parameter->Name()});
}

/// A procedure's markers go by their names, those of a statement, which have none, by their order.
PropertyPtr SQLAgent::ParameterFor(const rdoParameter& marker, std::int32_t position) const {
  if (!IsProcedure() || !marker.IsNamed()) return statementParameters_->Item(position);
  return statementParameters_->Item(marker.Name());
}

void SQLAgent::BindParameters(rdoQuery& query) const {
  std::int32_t position = 0;
  for (const auto& marker : query.rdoParameters()) Bind(*marker, *ParameterFor(*marker, ++position));
}

void SQLAgent::CheckParameterOrder(const rdoQuery& query) const {
  if (!IsProcedure() || !EnforcesOrder()) return;
  std::size_t place = 0;
  for (const auto& parameter : action_->CreateParameters()) {
    const auto& markers = query.rdoParameters();
    const bool isSent = place < markers.size();
    const auto name = isSent ? markers[place]->Name() : std::string();
    ++place;
    if (isSent && (EqualFolded(name, parameter->Name()) || EqualFolded(name, parameter->SourceName()))) continue;
    Raise(errMismatch_Parameters, "CreatePreparedStatement",
          {NumberText(static_cast<long long>(place)), parameter->Name(), parameter->SourceName(), name});
  }
}

void SQLAgent::TakeOutputs(const rdoQuery& query) const {
  std::int32_t position = 0;
  for (const auto& marker : query.rdoParameters()) {
    ++position;
    if (marker->Direction() == rdParamInput) continue;
    const auto name = marker->IsNamed() ? marker->Name() : statementParameters_->Item(position)->Name();
    parameters_->Item(name)->SetValue(marker->Value());
  }
}

/// What a call gives back is complete when its rows have been read.
void SQLAgent::TakeOutputsOfResultset() {
  if (!query_ || !resultset_->TakeOutputs()) return;
  TakeOutputs(*query_);
  query_ = nullptr;
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

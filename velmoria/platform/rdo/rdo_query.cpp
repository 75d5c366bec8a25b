#include "velmoria/platform/rdo/rdo_query.h"

#include <algorithm>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/call_outputs.h"
#include "velmoria/platform/odbc/markers.h"
#include "velmoria/platform/odbc/procedure.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_cursor.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/platform/rdo/rdo_parameter.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {
namespace {

void Describe(rdoParameter& parameter, const odbc::ProcedureParameter& described) {
  // One without a name, or whose name could not be read, goes by its place.
  if (!described.Name.empty()) parameter.SetName(described.Name);
  parameter.SetType(described.Type);
  parameter.SetSize(described.Size, described.Digits);
  if (described.Kind == SQL_PARAM_INPUT_OUTPUT) parameter.SetDirection(rdParamInputOutput);
  if (described.Kind == SQL_PARAM_OUTPUT) parameter.SetDirection(rdParamOutput);
}

}  // namespace

rdoQuery::rdoQuery(rdoConnectionPtr connection, std::string name, std::string sql)
    : connection_(std::move(connection)), name_(std::move(name)) {
  SetSQL(std::move(sql));
}

rdoQuery::~rdoQuery() = default;

std::string_view rdoQuery::ReportedType() const noexcept { return "rdoQuery"; }

void rdoQuery::SetSQL(std::string value) {
  executed_.reset();
  sql_ = std::move(value);
  preparable_ = true;
  parameters_.clear();
  const std::size_t markers = odbc::CountMarkers(sql_);
  for (std::size_t number = 1; number <= markers; ++number) {
    parameters_.push_back(Make<rdoParameter>("Param" + NumberText(static_cast<long long>(number))));
  }
  NameParameters();
}

void rdoQuery::SetPrepared(bool value) {
  prepared_ = value;
  executed_.reset();
}

// A procedure that the catalogue describes otherwise than it is called, an overloaded one perhaps, keeps the order of
// its markers for names.
void rdoQuery::NameParameters() {
  const auto call = odbc::ParseCall(sql_);
  if (!call || parameters_.empty()) return;
  connection_->MakeRoom();
  const auto described = odbc::DescribeProcedure(connection_->Handle(), *call);
  connection_->Engine()->rdoErrors().clear();
  if (call->Returns) {
    preparable_ = connection_->Manners().PreparesReturns;
    parameters_.front()->SetName(std::string(odbc::kReturnValue));
    parameters_.front()->SetDirection(rdParamReturnValue);
  }
  if (described.size() != parameters_.size()) return;
  for (std::size_t place = 0; place < described.size(); ++place) Describe(*parameters_[place], described[place]);
}

/// A call that returns a value has no such row.
bool rdoQuery::OutputsComeAsRow() const {
  const auto is = [](rdoNumber direction) {
    return [direction](const rdoParameterPtr& parameter) { return parameter->Direction() == direction; };
  };
  return !std::ranges::all_of(parameters_, is(rdParamInput)) &&
         std::ranges::none_of(parameters_, is(rdParamReturnValue)) && connection_->Manners().OutputsComeAsRow;
}

std::unique_ptr<odbc::ParameterValues> rdoQuery::Bind(odbc::Statement& statement) const {
  auto values = std::make_unique<odbc::ParameterValues>(OutputsComeAsRow());
  for (const auto& parameter : parameters_) {
    if (parameter->Direction() == rdParamInput) {
      values->Add(parameter->Value(), parameter->Type());
      continue;
    }
    const bool takes = parameter->Direction() == rdParamInputOutput;
    values->AddOutput({.Name = parameter->Name(),
                       .Type = parameter->Type(),
                       .Size = parameter->Size(),
                       .Digits = static_cast<odbc::Small>(parameter->Decimals())},
                      takes ? &parameter->Value() : nullptr);
  }
  values->BindTo(statement);
  return values;
}

void rdoQuery::Execute() {
  connection_->MakeRoom();
  connection_->Engine()->rdoErrors().clear();
  connection_->RefuseLostTransaction();
  // On a failure the statement ends, ahead of what is bound to it; the next Execute begins with a new one.
  std::unique_ptr<odbc::ParameterValues> values;
  auto statement = std::move(executed_);
  if (!statement || !statement->IsOpen()) {
    statement = std::make_unique<odbc::Statement>(connection_->Handle());
    if (Prepares()) statement->Prepare(sql_);
  }
  rowsAffected_ = -1;
  values = Bind(*statement);
  Prepares() ? statement->Execute() : statement->ExecuteDirect(sql_);
  rowsAffected_ = statement->RowsAffected();
  odbc::CallOutputs outputs(*values);
  outputs.TakeFrom(*statement);
  for (const auto& output : outputs.Outputs()) parameters_[output.Place]->SetValue(output.Value);
  const bool isFree = statement->EndResult() && (parameters_.empty() || statement->UnbindParameters());
  if (Prepares() && isFree) executed_ = std::move(statement);
}

rdoResultsetPtr rdoQuery::OpenResultset(const OpenResultsetArguments& arguments) {
  connection_->MakeRoom();
  connection_->Engine()->rdoErrors().clear();
  connection_->RefuseLostTransaction();
  std::unique_ptr<odbc::ParameterValues> values;  // outlives the statement that it is bound to
  auto statement = std::make_unique<odbc::Statement>(connection_->Handle());
  const bool repeats = arguments.Repeatable && arguments.Type != rdOpenStatic;
  if (arguments.Type != rdOpenForwardOnly && !repeats) statement->AskForScrolling();
  const bool background = (arguments.Options & rdAsyncEnable) != 0 && !connection_->NeedsThisThread(sql_);
  if (Prepares() && !background) statement->Prepare(sql_);
  values = Bind(*statement);
  if (background) {
    statement->ExecuteInBackground(sql_, Prepares());
  } else {
    Prepares() ? statement->Execute() : statement->ExecuteDirect(sql_);
  }
  auto cursor =
      Make<RdoCursor>(connection_, std::move(statement), std::move(values), arguments.Type == rdOpenForwardOnly);
  if (repeats) cursor->LetRunAgain(sql_, Prepares());
  cursor->SetShape(arguments.Shape);
  cursor->LetTakeOutputs(parameters_);
  return Make<rdoResultset>(connection_->Engine(), std::move(cursor), arguments.Type);
}

void rdoQuery::Close() {
  connection_->Engine()->rdoErrors().clear();
  executed_.reset();
}

}  // namespace velmoria

#include "velmoria/platform/rdo/rdo_query.h"

#include "velmoria/platform/odbc/markers.h"
#include "velmoria/platform/odbc/parameters.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/platform/rdo/rdo_parameter.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

rdoQuery::rdoQuery(rdoConnectionPtr connection, std::string name, std::string sql)
    : connection_(std::move(connection)), name_(std::move(name)) {
  SetSQL(std::move(sql));
}

rdoQuery::~rdoQuery() = default;

std::string_view rdoQuery::ReportedType() const noexcept { return "rdoQuery"; }

void rdoQuery::SetSQL(std::string value) {
  executed_.reset();
  sql_ = std::move(value);
  parameters_.clear();
  const std::size_t markers = odbc::CountMarkers(sql_);
  for (std::size_t number = 1; number <= markers; ++number) {
    parameters_.push_back(Make<rdoParameter>("Param" + NumberText(static_cast<long long>(number))));
  }
}

void rdoQuery::SetPrepared(bool value) {
  prepared_ = value;
  executed_.reset();
}

void rdoQuery::Run(odbc::Statement& statement) const {
  odbc::ParameterValues values;
  for (const auto& parameter : parameters_) {
    if (parameter->Direction() != rdParamInput) {
      Fail(RuntimeFailure::InvalidArgument, "The parameter '" + parameter->Name() + "' is no input parameter.");
    }
    values.Add(parameter->Value(), parameter->Type());
  }
  values.BindTo(statement);
  if (prepared_) {
    statement.Execute();
  } else {
    statement.ExecuteDirect(sql_);
  }
  if (!parameters_.empty()) statement.UnbindParameters();
}

void rdoQuery::Execute() {
  connection_->Engine()->rdoErrors().clear();
  // On a failure the statement ends; the next Execute begins with a new one.
  auto statement = std::move(executed_);
  if (!statement || !statement->IsOpen()) {
    statement = std::make_unique<odbc::Statement>(connection_->Handle());
    if (prepared_) statement->Prepare(sql_);
  }
  rowsAffected_ = -1;
  Run(*statement);
  rowsAffected_ = statement->RowsAffected();
  statement->EndResult();
  if (prepared_) executed_ = std::move(statement);
}

rdoResultsetPtr rdoQuery::OpenResultset(const OpenResultsetArguments& arguments) {
  connection_->Engine()->rdoErrors().clear();
  auto statement = std::make_unique<odbc::Statement>(connection_->Handle());
  if (arguments.Type != rdOpenForwardOnly) statement->AskForScrolling();
  if (prepared_) statement->Prepare(sql_);
  Run(*statement);
  return Make<rdoResultset>(connection_, std::move(statement), arguments.Type);
}

void rdoQuery::Close() {
  connection_->Engine()->rdoErrors().clear();
  executed_.reset();
}

}  // namespace velmoria

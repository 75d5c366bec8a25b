#include "velmoria/platform/odbc/call_outputs.h"

#include <memory>
#include <utility>

#include <sql.h>

#include "velmoria/platform/odbc/columns.h"
#include "velmoria/platform/odbc/landing.h"
#include "velmoria/platform/odbc/long_value.h"
#include "velmoria/platform/rdo_constants.h"

namespace velmoria::odbc {
namespace {

Variant ReadValue(Statement& statement, const ColumnInfo& column, Word number) {
  if (column.IsLong) return ReadLongValue(statement, number, column.Type == rdTypeLONGVARCHAR);
  Landing landing(column, number, statement.Dates());
  const auto memory = std::make_unique_for_overwrite<std::byte[]>(landing.Bytes(1));
  landing.LandIn(memory.get(), 1);
  landing.Begin();
  landing.Read(statement, 0);
  return landing.Value();
}

}  // namespace

// A failure to read counts only if no other row follows: the result may be any other one.
void CallOutputs::LookAt(Statement& statement) {
  if (!values_->OutputsComeAsRow() || !MayBe(static_cast<std::size_t>(statement.Columns()))) return;
  row_.reset();
  failure_ = nullptr;
  try {
    const auto columns = DescribeColumns(statement);
    const Code code = statement.Calls().Fetch(statement.Get());
    if (code == SQL_NO_DATA) return;
    statement.Check(code);
    std::vector<Variant> row;
    for (const auto& column : *columns) row.push_back(ReadValue(statement, column, static_cast<Word>(row.size() + 1)));
    row_ = std::move(row);
  } catch (...) { failure_ = std::current_exception(); }
}

void CallOutputs::TakeFrom(Statement& statement) noexcept {
  try {
    LookAt(statement);
    while (statement.MoreResults()) LookAt(statement);
    if (!failure_) Collect();
  } catch (...) { failure_ = std::current_exception(); }
}

void CallOutputs::TakeBehind(Statement& statement, BlockFetch& rows) noexcept {
  try {
    rows.Release();
    statement.MoreResults() ? TakeFrom(statement) : Collect();
  } catch (...) { failure_ = std::current_exception(); }
}

void CallOutputs::TakeAtEnd() noexcept {
  try {
    Collect();
  } catch (...) { failure_ = std::current_exception(); }
}

void CallOutputs::Collect() {
  std::size_t column = 0;
  for (std::size_t place = 0; place < values_->Count(); ++place) {
    if (!values_->IsOutput(place)) continue;
    outputs_.push_back({place, row_ ? values_->Output(place, (*row_)[column]) : values_->Output(place)});
    ++column;
  }
}

const std::vector<CallOutputs::Output>& CallOutputs::Outputs() const {
  if (failure_) std::rethrow_exception(failure_);
  return outputs_;
}

}  // namespace velmoria::odbc

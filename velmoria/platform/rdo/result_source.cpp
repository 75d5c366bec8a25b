#include "velmoria/platform/rdo/result_source.h"

#include <utility>

namespace velmoria {

using WhenCut = odbc::BlockFetch::WhenCut;

bool ResultSource::OpenResult() {
  bool hasColumns = statement_->Columns() > 0;
  while (!hasColumns && statement_->MoreResults()) hasColumns = statement_->Columns() > 0;
  return hasColumns;
}

void ResultSource::BeginFetch(odbc::Columns columns) {
  fetch_.emplace(*statement_, std::move(columns), recipe_ ? WhenCut::Tell : WhenCut::ReadRowByRow);
}

void ResultSource::End() noexcept {
  statement_.reset();
  fetch_.reset();
}

void ResultSource::RunAgain(odbc::Connection& connection, const odbc::Columns& columns) {
  statement_ = std::make_unique<odbc::Statement>(connection);
  if (recipe_->Prepared) statement_->Prepare(recipe_->Sql);
  values_->BindTo(*statement_);
  recipe_->Prepared ? statement_->Execute() : statement_->ExecuteDirect(recipe_->Sql);
  if (!OpenResult()) odbc::FailClosed("The statement was run again and gives no result any more.");
  // The rows that there are, and those who read them, know the columns that there were.
  if (odbc::DescribeColumns(*statement_, columns) != columns) {
    odbc::FailClosed("The statement was run again, and the columns of the result have changed since. Open it anew.");
  }
  fetch_.emplace(*statement_, columns, WhenCut::ReadRowByRow);
}

}  // namespace velmoria

#include <utility>

#include "velmoria/core/now.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/agents/sql_agent_impl.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/source.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

/// One page as it comes from the result: its rows, the positions around it, and its measurement.
struct ResultPage {
  Variant Prev{};
  Variant First{};
  Variant Last{};
  Variant Next{};
  RowBlock Rows{};
  StatisticsPtr Statistics{};
};

namespace {

/// Empty at both ends of the result.
Variant PositionOf(const rdoResultset& result) {
  return result.AtBOF() || result.AtEOF() ? Variant() : result.Bookmark();
}

bool IsUsable(const Variant& position) { return !position.IsEmpty() && !position.IsNull(); }

/// Reads the rows and then the positions behind and at the last of them.
void Fetch(rdoResultset& result, long long rows, ResultPage& page) {
  page.Rows = result.GetRows(rows);
  page.Next = PositionOf(result);
  result.MovePrevious();
  const auto last = PositionOf(result);
  if (IsUsable(last)) page.Last = last;
}

// The result keeps what it has fetched: the way to its end and back is one pass over the rows.
void FetchAll(rdoResultset& result, const RecordsetPtr& previous, ResultPage& page) {
  result.MoveLast();
  const auto rows = result.RowCount();
  if (rows == 0) return;
  if (previous && IsUsable(previous->NextBookmark())) {
    result.SetBookmark(previous->NextBookmark());
    page.First = PositionOf(result);
    if (!result.AtBOF()) result.MovePrevious();
    page.Prev = PositionOf(result);
    result.SetBookmark(page.First);
  } else {
    result.MoveFirst();
    page.First = PositionOf(result);
  }
  Fetch(result, rows, page);
}

void FetchNext(rdoResultset& result, long long rows, const RecordsetPtr& previous, ResultPage& page) {
  if (previous) {
    page.Prev = previous->LastBookmark();
    page.First = previous->NextBookmark();
    if (IsUsable(page.First)) result.SetBookmark(page.First);
  } else {
    result.MoveFirst();
    page.First = PositionOf(result);
  }
  Fetch(result, rows, page);
}

}  // namespace

RecordsetPtr SQLAgent::GetRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous, bool keepOpen) try {
  if (!undeclared_.empty())
    Fail(RuntimeFailure::InvalidArgument, "The Source does not declare these parameters: " + undeclared_);
  auto recordset = MakeRecordset(agent, previous, ReadPage(previous));
  if (objectBuffer_ == 0 && !keepOpen) CloseResultset();
  return recordset;
} catch (...) { ReadFailed("GetRecordsetChunk_Client"); }

ResultPage SQLAgent::ReadPage(const RecordsetPtr& previous) {
  ResultPage page{.Statistics = Make<velmoria::Statistics>()};
  const auto statistic = page.Statistics->SetupItem(
      {.Name = "Read " + Quoted(action_->DatabaseName()) + " Rows", .SubjectLabel = "Row", .StartTime = Now()});
  if (!resultset_) CreateResultset();
  if (objectBuffer_ < 0) Fail(RuntimeFailure::InvalidArgument, "Pages can only be read forwards");
  if (objectBuffer_ == 0)
    FetchAll(*resultset_, previous, page);
  else
    FetchNext(*resultset_, objectBuffer_, previous, page);
  statistic->SetSubjectCount(static_cast<std::int32_t>(page.Rows.Rows()));
  statistic->SetEndTime(Now());
  propertiesData_->Statistics()->Add(statistic);
  return page;
}

// Pages follow one another without a gap, their numbers fall one short for each.
std::int32_t SQLAgent::FirstNumber(const RecordsetPtr& previous) const {
  if (previous) return previous->VirtualFirstNumber() + objectBuffer_ - 1;
  return objectBuffer_ == 0 ? -1 : 0;
}

RecordsetPtr SQLAgent::MakeRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous,
                                     ResultPage page) const {
  auto recordset = Make<Recordset>();
  recordset->Initialize(agent, {.Columns = propertiesData_,
                                .PrevBookmark = std::move(page.Prev),
                                .FirstBookmark = std::move(page.First),
                                .LastBookmark = std::move(page.Last),
                                .NextBookmark = std::move(page.Next),
                                .Rows = std::move(page.Rows),
                                .Statistics = std::move(page.Statistics),
                                .VirtualFirstNumber = FirstNumber(previous),
                                .Engine = action_->Connection()->Engine()});
  return recordset;
}

// A result that failed is of no use; the next read opens another one.
void SQLAgent::ReadFailed(const char* routine) {
  const bool cursorRefused = CurrentError().Number() == rdErrForwardOnly;
  CloseResultset();
  if (!cursorRefused) Failed(routine, errRDO_Resultset, {source_->SourceTypeName(), source_->SourceText()});
  const auto connection = action_->Connection();
  Failed(routine, errNotSupported_Cursor,
         {connection->CursorDriverName(), connection->CursorTypeName(), connection->EngineName()});
}

}  // namespace velmoria

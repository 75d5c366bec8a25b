#include <utility>

#include "velmoria/core/now.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/agents/result_filter_impl.h"
#include "velmoria/data/agents/result_page_impl.h"
#include "velmoria/data/agents/sql_agent_impl.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/source.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

RecordsetPtr SQLAgent::GetRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous, bool keepOpen) try {
  auto recordset = ReadPage(agent, previous);
  if (recordset && objectBuffer_ == 0 && !keepOpen) CloseResultset();
  return recordset;
} catch (...) { ReadFailed(IsFiltered() ? "GetRecordsetStep_Client" : "GetRecordsetChunk_Client"); }

RecordsetPtr SQLAgent::ReadPage(const DatabaseAgentPtr& agent, const RecordsetPtr& previous) {
  auto statistics = Make<velmoria::Statistics>();
  const auto statistic = statistics->SetupItem(
      {.Name = "Read " + Quoted(action_->DatabaseName()) + " Rows" + (IsFiltered() ? " with Filter" : ""),
       .SubjectLabel = "Row",
       .StartTime = Now()});
  if (!resultset_) CreateResultset();
  if (resultset_->StillExecuting()) return {};
  DescribeResultset();
  auto page = IsFiltered() ? ReadMatches(*resultset_, ResultFilter(*this, *resultset_, *filterParameters_),
                                         objectBuffer_, previous)
                           : ReadChunk(*resultset_, objectBuffer_, previous);
  TakeOutputsOfResultset();
  statistic->SetSubjectCount(static_cast<std::int32_t>(page.Rows.Rows()));
  statistic->SetEndTime(Now());
  propertiesData_->Statistics()->Add(statistic);
  return MakeRecordset(agent, previous, std::move(page), std::move(statistics));
}

void SQLAgent::LoadPersistentProperties() try {
  if (!resultset_) CreateResultset(true);
} catch (...) { Failed("LoadPersistentProperties"); }

bool SQLAgent::StillExecuting() { return resultset_ && resultset_->StillExecuting(); }

RecordsetPtr SQLAgent::GetAsyncRecordset(const DatabaseAgentPtr& agent) {
  if (!asyncFlag_ || StillExecuting()) return {};
  auto recordset = GetRecordset(agent, nullptr, false);
  asyncFlag_ = false;
  return recordset;
}

void SQLAgent::Cancel() try {
  if (!resultset_) return;
  resultset_->Cancel();
  CloseResultset();
} catch (...) { Failed("Cancel"); }

// Pages follow one another without a gap, their numbers fall one short for each.
std::int32_t SQLAgent::FirstNumber(const RecordsetPtr& previous, const Variant& next) const {
  if (previous) return previous->VirtualFirstNumber() + objectBuffer_ - 1;
  const bool isWhole = IsFiltered() ? next.IsEmpty() : objectBuffer_ == 0;
  return isWhole ? -1 : 0;
}

RecordsetPtr SQLAgent::MakeRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous, ResultPage page,
                                     StatisticsPtr statistics) const {
  const auto firstNumber = FirstNumber(previous, page.Next);
  auto recordset = Make<Recordset>();
  recordset->Initialize(agent, {.Columns = propertiesData_,
                                .PrevBookmark = std::move(page.Prev),
                                .FirstBookmark = std::move(page.First),
                                .LastBookmark = std::move(page.Last),
                                .NextBookmark = std::move(page.Next),
                                .Rows = std::move(page.Rows),
                                .Statistics = std::move(statistics),
                                .VirtualFirstNumber = firstNumber,
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

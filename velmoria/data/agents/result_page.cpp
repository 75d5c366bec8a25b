#include "velmoria/data/agents/result_filter_impl.h"
#include "velmoria/data/agents/result_page_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/runtime/row_gatherer.h"

namespace velmoria {

namespace {

bool HasRow(const rdoResultset& result) { return !result.AtBOF() && !result.AtEOF(); }

/// Empty at both ends of the result.
Variant PositionOf(const rdoResultset& result) { return HasRow(result) ? result.Bookmark() : Variant(); }

bool IsUsable(const Variant& position) { return !position.IsEmpty() && !position.IsNull(); }

void GoTo(rdoResultset& result, const Variant& position) {
  if (IsUsable(position)) result.SetBookmark(position);
}

/// Begins the page at the current row and leaves the result there. Prev is the row before it, Empty when there is none.
void BeginHere(rdoResultset& result, ResultPage& page) {
  page.First = PositionOf(result);
  if (!result.AtBOF()) result.MovePrevious();
  page.Prev = PositionOf(result);
  GoTo(result, page.First);
}

void BeginAtStart(rdoResultset& result, ResultPage& page) {
  result.MoveFirst();
  page.First = PositionOf(result);
}

/// Begins the page so many rows before the current one, or at the first row if there are not so many.
void BeginBefore(rdoResultset& result, long long rows, ResultPage& page) {
  result.Move(-rows);
  if (result.AtBOF())
    BeginAtStart(result, page);
  else
    BeginHere(result, page);
}

/// Reads the rows and then the positions behind and at the last of them.
void Fetch(rdoResultset& result, long long rows, ResultPage& page) {
  page.Rows = result.GetRows(rows);
  page.Next = PositionOf(result);
  result.MovePrevious();
  const auto last = PositionOf(result);
  if (IsUsable(last)) page.Last = last;
}

// The result keeps what it has fetched: the way to its end and back is one pass over the rows.
void ReadAll(rdoResultset& result, const RecordsetPtr& previous, ResultPage& page) {
  result.MoveLast();
  const auto rows = result.RowCount();
  if (rows == 0) return;
  if (previous && IsUsable(previous->NextBookmark())) {
    result.SetBookmark(previous->NextBookmark());
    BeginHere(result, page);
  } else {
    BeginAtStart(result, page);
  }
  Fetch(result, rows, page);
}

void ReadForwards(rdoResultset& result, long long rows, const RecordsetPtr& previous, ResultPage& page) {
  if (previous) {
    page.Prev = previous->LastBookmark();
    page.First = previous->NextBookmark();
    GoTo(result, page.First);
  } else {
    BeginAtStart(result, page);
  }
  Fetch(result, rows, page);
}

void ReadBackwards(rdoResultset& result, long long rows, const RecordsetPtr& previous, ResultPage& page) {
  if (previous) {
    GoTo(result, previous->FirstBookmark());
  } else {
    result.MoveLast();
    page.Last = PositionOf(result);
  }
  BeginBefore(result, rows, page);
  Fetch(result, rows, page);
}

/// From the current row on to one that matches, or to the end.
void SeekMatch(rdoResultset& result, const ResultFilter& filter) {
  while (!result.AtEOF() && !filter.Matches()) result.MoveNext();
}

}  // namespace

ResultPage ReadChunk(rdoResultset& result, std::int32_t buffer, const RecordsetPtr& previous) {
  ResultPage page;
  if (buffer == 0)
    ReadAll(result, previous, page);
  else if (buffer > 0)
    ReadForwards(result, buffer, previous, page);
  else
    ReadBackwards(result, -static_cast<long long>(buffer), previous, page);
  return page;
}

ResultPage ReadMatches(rdoResultset& result, const ResultFilter& filter, std::int32_t buffer,
                       const RecordsetPtr& previous) {
  ResultPage page;
  if (previous) {
    page.Prev = previous->LastBookmark();
    GoTo(result, previous->NextBookmark());
  } else {
    result.MoveFirst();
  }
  SeekMatch(result, filter);
  page.First = PositionOf(result);
  RowGatherer rows;
  while (HasRow(result) && (buffer <= 0 || rows.Rows() < static_cast<std::size_t>(buffer))) {
    page.Last = PositionOf(result);
    rows.Add(result.GetRows(1));
    SeekMatch(result, filter);
  }
  page.Next = PositionOf(result);
  page.Rows = rows.Build();
  return page;
}

}  // namespace velmoria

#include "tests/support/fake_agent.h"

#include <algorithm>
#include <utility>

#include "velmoria/data/database_agent_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

FakeAgent::FakeAgent(ClassPtr classObject, ActionPtr action)
    : class_(std::move(classObject)), action_(std::move(action)) {}

FakeAgent::~FakeAgent() = default;

ClassPtr FakeAgent::Class() const { return class_; }

ActionPtr FakeAgent::Action() const { return action_; }

SourcePtr FakeAgent::Source() const { return action_->Sources()->Item(); }

PropertiesDataPtr FakeAgent::PropertiesData() { return Columns; }

std::int32_t FakeAgent::RowCount() {
  if (FailsReads) Fail(RuntimeFailure::DriverFailure);
  return TotalRows;
}

RecordsetPtr FakeAgent::GetRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous, bool) {
  constexpr int kEndless = 1000;
  if (AsyncPolls > 0) return {};
  AsyncPolls = -1;  // an opening is over once its page is asked for, whether it succeeded or failed
  if (FailsReads) Fail(RuntimeFailure::DriverFailure);
  if (++Reads > kEndless) Fail(RuntimeFailure::InvalidArgument, "It reads without end.");
  const auto total = static_cast<std::int32_t>(Rows.Rows());
  std::int32_t first = 0;
  if (previous) first = previous->NextBookmark().IsEmpty() ? total - 1 : previous->NextBookmark().AsLong();
  const std::int32_t rows = Buffer > 0 ? std::min(Buffer, total - first) : total;
  const std::int32_t behind = first + rows;
  RecordsetPage page{.Columns = Columns,
                     .FirstBookmark = first,
                     .Rows = Rows.Slice(static_cast<std::size_t>(first), static_cast<std::size_t>(rows))};
  if (behind < total) page.NextBookmark = behind;
  if (Buffer > 0) page.VirtualFirstNumber = previous ? previous->VirtualFirstNumber() + Buffer - 1 : 0;
  auto recordset = Make<Recordset>();
  recordset->Initialize(agent, std::move(page));
  return recordset;
}

void FakeAgent::LoadPersistentProperties() {
  if (FailsReads) Fail(RuntimeFailure::DriverFailure);
  ++Loads;
  AsyncPolls = PollsOnceLoaded;
}

bool FakeAgent::StillExecuting() {
  if (AsyncPolls <= 0) return false;
  --AsyncPolls;
  return true;
}

void FakeAgent::Write(const PropertiesPtr& properties, int& count) {
  if (Refuses) Fail(RuntimeFailure::DeviceError);
  ++count;
  WrittenRows.push_back(properties->Row());
}

void FakeAgent::InsertPersistentProperties(const PropertiesPtr& properties) {
  Write(properties, Inserts);
  properties->Recordset()->RefreshCounterFields(Assigned, properties->Row());
}

Variant FakeAgent::GetBLOBFieldValue(const Variant&, const PropertiesPtr&) {
  if (FailsReads) Fail(RuntimeFailure::DriverFailure);
  ++LongReads;
  return Long;
}

void FakeAgent::Execute() { ++Executions; }

void FakeAgent::UpdatePersistentProperties(const PropertiesPtr& properties) { Write(properties, Updates); }

void FakeAgent::DeletePersistentProperties(const PropertiesPtr& properties) {
  Write(properties, Deletes);
  if (properties->IsBound()) properties->Recordset()->FlagDeleted(properties->Row());
}

}  // namespace velmoria::test

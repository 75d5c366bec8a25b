#pragma once

#include <vector>

#include "velmoria/data/agents/agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/row_block.h"

namespace velmoria::test {

/// A back-end without a database: it counts what it is told to write, and can refuse, or fail behind a write. Given
/// Columns it reads Rows in pages of Buffer, as an agent over a database does: pages follow one another without a gap,
/// but each is numbered one short, and asked for more at the end it brings the last row again and again.
class FakeAgent final : public Agent {
 public:
  FakeAgent(ClassPtr classObject, ActionPtr action);
  ~FakeAgent() override;

  ClassPtr Class() const override;
  ActionPtr Action() const override;
  SourcePtr Source() const override;
  std::int32_t ObjectBuffer() const override { return Buffer; }
  std::string Details() const override { return "Fake agent"; }
  std::int32_t RowCount() override;
  PropertiesDataPtr PropertiesData() override;
  RecordsetPtr GetRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous, bool keepOpen) override;
  void LoadPersistentProperties() override;
  bool AsyncFlag() const override { return AsyncPolls >= 0; }
  bool StillExecuting() override;
  RecordsetPtr GetAsyncRecordset(const DatabaseAgentPtr& agent) override { return GetRecordset(agent, {}, false); }
  Variant GetBLOBFieldValue(const Variant& index, const PropertiesPtr& properties) override;
  void Execute() override;
  void InsertPersistentProperties(const PropertiesPtr& properties) override;
  void UpdatePersistentProperties(const PropertiesPtr& properties) override;
  void DeletePersistentProperties(const PropertiesPtr& properties) override;

  int Executions = 0;
  int Inserts = 0;
  int Updates = 0;
  int Deletes = 0;
  int Writes() const { return Inserts + Updates + Deletes; }
  std::vector<std::int32_t> WrittenRows;  // in the order of writing
  bool Refuses = false;                   // fails ahead of any write
  std::vector<CounterValue> Assigned;     // what an insert brings back; fails when there is no such column
  std::int32_t Buffer = 10;
  std::int32_t TotalRows = 3;
  PropertiesDataPtr Columns;
  RowBlock Rows;
  int Reads = 0;            // a test that reads on and on fails
  bool FailsReads = false;  // the database is gone
  Variant Long;             // what every long column holds
  int LongReads = 0;
  int AsyncPolls = -1;      // how often an asynchronous opening is still under way when it is asked; -1: opened at once
  int PollsOnceLoaded = 0;  // what AsyncPolls is when LoadPersistentProperties has begun one
  int Loads = 0;            // how often it has

 private:
  void Write(const PropertiesPtr& properties, int& count);

  ClassPtr class_;
  ActionPtr action_;
};

}  // namespace velmoria::test

#pragma once

#include <cstdint>
#include <string>

#include "velmoria/fwd.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The back-end of a DatabaseAgent: reads one Action's Source in pages and writes rows back. One implementation stands
/// for each way of reaching databases.
class Agent {
 public:
  virtual ~Agent();

  virtual ClassPtr Class() const = 0;
  virtual ActionPtr Action() const = 0;
  virtual SourcePtr Source() const = 0;
  /// The page size: 0 reads everything at once.
  virtual std::int32_t ObjectBuffer() const = 0;
  virtual std::string Details() const = 0;

  /// The rows of the whole result, opened if it is not; -1 while it is being opened.
  virtual std::int32_t RowCount() = 0;
  /// The column definitions, without reading rows.
  virtual PropertiesDataPtr PropertiesData() = 0;
  /// The first page, or the one that follows `previous`. Everything read at once closes the result unless keepOpen.
  virtual RecordsetPtr GetRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous, bool keepOpen) = 0;

  /// Opens the result while the caller goes on, unless it is open. A back-end that cannot do so leaves it to the read.
  virtual void LoadPersistentProperties() {}
  /// Gives up what is being opened.
  virtual void Cancel() {}
  /// Whether the result is opened while the caller goes on, and then whether that is still under way.
  virtual bool AsyncFlag() const { return false; }
  virtual bool StillExecuting() { return false; }
  /// The first page of a result opened so; waits for nothing. None of a back-end that opens at once.
  virtual RecordsetPtr GetAsyncRecordset(const DatabaseAgentPtr& agent);

  /// The present value of a long column of a row, which is not read with its page; index as Properties.Item takes it.
  virtual Variant GetBLOBFieldValue(const Variant& index, const PropertiesPtr& properties);

  /// Runs the Source for what it does; rows that it may give are dropped.
  virtual void Execute() = 0;

  virtual void InsertPersistentProperties(const PropertiesPtr& properties) = 0;
  virtual void UpdatePersistentProperties(const PropertiesPtr& properties) = 0;
  virtual void DeletePersistentProperties(const PropertiesPtr& properties) = 0;
};

}  // namespace velmoria

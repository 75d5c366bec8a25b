#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/reporting.h"
#include "velmoria/data/agents/agent_impl.h"
#include "velmoria/fwd.h"
#include "velmoria/platform/rdo/fwd.h"

namespace velmoria {

struct OpenResultsetArguments;
struct ResultPage;

/// The back-end for engines 2 to 5. It opens a read-only result, at once or while the caller goes on, reads it in pages
/// either way, and carries changes back as statements of its own. The open result is kept between pages and closed once
/// it has been read completely. A parameter that a statement or procedure does not declare filters its rows here.
class SQLAgent final : public Agent, public Reporting {
 public:
  SQLAgent();
  ~SQLAgent() override;
  std::string_view ReportedType() const noexcept override { return "SQLAgent"; }

  /// Sorts the parameters into those of the statement, the key and the filter. Raises 15053 for a type of Source
  /// that gives no rows, 15160 for a Class without identifier Properties, 15052 when their definition is missing.
  void Initialize(const ClassPtr& classObject, const ActionPtr& action, const PropertiesPtr& parameters,
                  std::int32_t objectBuffer);

  ClassPtr Class() const override;
  ActionPtr Action() const override;
  SourcePtr Source() const override;
  std::int32_t ObjectBuffer() const override { return objectBuffer_; }
  std::string Details() const override;
  /// Moves the open result to its end; filters do not count. Raises as GetRecordset.
  std::int32_t RowCount() override;
  PropertiesDataPtr PropertiesData() override;
  /// None while the result is being opened. Raises 15120 to 15123 when it cannot be opened, and before that 15053 as
  /// Initialize, 15119 for parameters that need a value, 15072 for one that is missing, 15078 for parameters in another
  /// order than the procedure's, 15180 for an output of a text that is passed through; 15096 for a filter whose
  /// Operator is none, 15099 when the cursor cannot move as pages need it, 15130 for anything else.
  RecordsetPtr GetRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous, bool keepOpen) override;

  void LoadPersistentProperties() override;
  void Cancel() override;
  bool AsyncFlag() const override { return asyncFlag_; }
  bool StillExecuting() override;
  RecordsetPtr GetAsyncRecordset(const DatabaseAgentPtr& agent) override;

  /// Raises 15130.
  Variant GetBLOBFieldValue(const Variant& index, const PropertiesPtr& properties) override;

  /// Output values arrive in the parameters that Initialize got, as they do when a result has been read to its end.
  /// Raises 15072, 15078, 15119 and 15180 as GetRecordset, and what the database refuses. A parameter that a statement
  /// does not declare is left out: only reading would filter by it.
  void Execute() override;
  /// Raises 15110, or 15179 when the statement should return a counter value and returns none.
  void InsertPersistentProperties(const PropertiesPtr& properties) override;
  /// Raises 15111.
  void UpdatePersistentProperties(const PropertiesPtr& properties) override;
  /// Raises 15114.
  void DeletePersistentProperties(const PropertiesPtr& properties) override;

 private:
  std::string StateDetails() const override { return Details(); }

  void TakeMarkedKeys();
  void SortParameters();
  void SortUndeclared(const PropertyPtr& parameter);
  const PropertiesPtr& KeyParameters();

  bool IsFiltered() const;
  bool IsProcedure() const;

  void CreateResultset(bool async = false);
  void DescribeResultset();
  void CloseResultset() noexcept;
  bool NeedsStatement() const;
  bool OnlyReads() const;
  OpenResultsetArguments HowToOpen() const;
  rdoQueryPtr CreateStatement(std::string sql) const;
  rdoQueryPtr CreatePreparedStatement() const;
  void CheckSourceType(const char* routine) const;
  void CheckRequiredValues() const;
  void CheckDirections() const;
  PropertyPtr ParameterFor(const rdoParameter& marker, std::int32_t position) const;
  void BindParameters(rdoQuery& query) const;
  void CheckParameterOrder(const rdoQuery& query) const;
  void TakeOutputs(const rdoQuery& query) const;
  void TakeOutputsOfResultset();
  void LogStatement(const char* routine, const rdoQuery& query) const;

  RecordsetPtr ReadPage(const DatabaseAgentPtr& agent, const RecordsetPtr& previous);
  RecordsetPtr MakeRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous, ResultPage page,
                             StatisticsPtr statistics) const;
  std::int32_t FirstNumber(const RecordsetPtr& previous, const Variant& next) const;
  [[noreturn, gnu::cold]] void ReadFailed(const char* routine);

  void InsertRow(const PropertiesPtr& properties, const PropertiesPtr& parameters, bool identityRequired);
  void ReadIdentity(rdoQuery& query, const PropertiesPtr& properties, bool required) const;
  void ExecuteLogged(const char* routine, std::string sql) const;

  ClassPtr class_;
  ActionPtr action_;
  SourcePtr source_;
  IdentifierPtr identifier_;
  PropertiesDataPtr propertiesData_;
  PropertiesPtr parameters_;
  PropertiesPtr statementParameters_;
  PropertiesPtr keyParameters_;  // until they are needed, only those that were marked
  PropertiesPtr filterParameters_;
  rdoResultsetPtr resultset_;
  rdoQueryPtr query_;  // of the open result, until its outputs have been taken
  bool asyncFlag_ = false;
  std::int32_t objectBuffer_ = 0;
};

}  // namespace velmoria

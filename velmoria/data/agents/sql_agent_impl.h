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

struct ResultPage;

/// The back-end for engines 2 to 5. It opens a read-only result, pages it forwards and carries changes back as
/// statements of its own; the open result is kept between pages and closed once it has been read completely.
class SQLAgent final : public Agent, public Reporting {
 public:
  SQLAgent();
  ~SQLAgent() override;
  std::string_view ReportedType() const noexcept override { return "SQLAgent"; }

  /// Sorts the parameters into those of the statement and those of the key. Raises 15160 and 15052.
  void Initialize(const ClassPtr& classObject, const ActionPtr& action, const PropertiesPtr& parameters,
                  std::int32_t objectBuffer);

  ClassPtr Class() const override;
  ActionPtr Action() const override;
  SourcePtr Source() const override;
  std::int32_t ObjectBuffer() const override { return objectBuffer_; }
  std::string Details() const override;
  /// Moves the open result to its end. Raises as GetRecordset.
  std::int32_t RowCount() override;
  PropertiesDataPtr PropertiesData() override;
  /// Raises 15053, 15119, 15180, 15120, 15121 or 15123 when the result cannot be opened, 15099 when its cursor cannot
  /// move as pages need it, 15130 for anything else.
  RecordsetPtr GetRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous, bool keepOpen) override;
  /// Raises 15119, 15180 and what the database refuses. A parameter that a statement does not declare is left out: only
  /// reading would filter by it.
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
  const PropertiesPtr& KeyParameters();

  void CreateResultset();
  void CloseResultset() noexcept;
  bool NeedsStatement() const;
  rdoQueryPtr CreateStatement(const std::string& sql) const;
  rdoQueryPtr CreatePreparedStatement() const;
  void CheckSourceType(const char* routine) const;
  void CheckRequiredValues() const;
  void CheckDirections() const;
  void BindParameters(rdoQuery& query) const;
  void LogStatement(const char* routine, const rdoQuery& query) const;

  ResultPage ReadPage(const RecordsetPtr& previous);
  RecordsetPtr MakeRecordset(const DatabaseAgentPtr& agent, const RecordsetPtr& previous, ResultPage page) const;
  std::int32_t FirstNumber(const RecordsetPtr& previous) const;
  [[noreturn]] void ReadFailed(const char* routine);

  void InsertRow(const PropertiesPtr& properties, const PropertiesPtr& parameters, bool identityRequired);
  void ReadIdentity(rdoQuery& query, const PropertiesPtr& properties, bool required) const;
  void ExecuteLogged(const char* routine, const std::string& sql) const;

  ClassPtr class_;
  ActionPtr action_;
  SourcePtr source_;
  IdentifierPtr identifier_;
  PropertiesDataPtr propertiesData_;
  PropertiesPtr parameters_;
  PropertiesPtr statementParameters_;
  PropertiesPtr keyParameters_;  // until it is needed, the Identifier stands for it
  std::string undeclared_;       // names of parameters that a statement does not declare
  rdoResultsetPtr resultset_;
  std::int32_t objectBuffer_ = 0;
};

}  // namespace velmoria

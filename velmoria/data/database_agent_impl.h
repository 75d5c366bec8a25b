#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "velmoria/core/access_method_impl.h"
#include "velmoria/core/reporting.h"
#include "velmoria/data/agents/agent_impl.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The engine-neutral front of the data layer: chooses the back-end of an Action's Source once, then forwards to it.
/// For a Source of an unknown engine there is no back-end, and every operation does nothing.
class DatabaseAgent final : public Object, public Reporting {
 public:
  DatabaseAgent();
  ~DatabaseAgent() override;
  std::string_view ReportedType() const noexcept override { return "DatabaseAgent"; }

  /// objectBuffer -1 takes the Action's. Raises 15097 for a Source of an engine that has no back-end yet.
  void Initialize(const ClassPtr& classObject, const ActionPtr& action, const PropertiesPtr& parameters,
                  std::int32_t objectBuffer);
  /// With a back-end made elsewhere.
  void Initialize(const ActionPtr& action, std::unique_ptr<Agent> backEnd, std::int32_t accessMethod = kRdo);

  /// 1 for engines 2 to 5, 2 for Access, 0 for anything else.
  std::int32_t AccessMethod() const { return accessMethod_; }
  ClassPtr Class() const;
  ActionPtr Action() const;
  SourcePtr Source() const;
  std::int32_t ObjectBuffer() const;
  std::int32_t RowCount();
  PropertiesDataPtr PropertiesData();
  std::string Details() const;

  /// pageStep has no effect: the direction of paging comes from ObjectBuffer alone.
  RecordsetPtr GetRecordset(std::int32_t pageStep, const RecordsetPtr& previous, bool flag);

  /// Opens the result while the caller goes on, where the back-end can; GetRecordset gives none until it is open.
  void LoadPersistentProperties();
  /// Gives up what is being opened.
  void Cancel();
  /// The value of a long column, which engines 2 to 5 read when it is first asked for; Empty for Access. Raises 15113.
  Variant GetBLOBFieldValue(const Variant& index, const PropertiesPtr& properties);

  /// Those of a back-end for engines 2 to 5; no other opens a result while the caller goes on.
  bool AsyncFlag() const { return accessMethod_ == kRdo && backEnd_ && backEnd_->AsyncFlag(); }
  bool StillExecuting();
  /// The first page of a result opened so, else none.
  RecordsetPtr Recordset();

  /// Runs the Source for what it does, without rows. Raises what the back-end raises.
  void Execute();

  /// Writes the row if it has changes. `written` becomes true once the database has the change, and stays so when the
  /// step after it fails (15162). Raises 15090, 15092, 15113 and what the back-end raises.
  void UpdatePersistentProperties(const PropertiesPtr& properties, std::int32_t flag, bool& written);
  /// Raises 15092, 15113 and what the back-end raises.
  void DeletePersistentProperties(const PropertiesPtr& properties, std::int32_t flag);

 private:
  std::string StateDetails() const override { return Details(); }
  using IdentifierText = std::string (*)(const Identifier&);

  void RefuseDeleted(Properties& properties, const char* routine, IdentifierText textOf) const;
  void CheckEditFlags(bool isNew) const;
  bool Write(const PropertiesPtr& properties, zStateFlags state);

  std::int32_t accessMethod_ = 0;
  std::unique_ptr<Agent> backEnd_;
  ActionPtr action_;
};

}  // namespace velmoria

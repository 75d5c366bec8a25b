#pragma once

#include <string>

#include "velmoria/design/design_collection.h"
#include "velmoria/design/source_kind.h"

namespace velmoria {

extern template class VELMORIA_API DesignCollection<SourceKind>;

/// The Sources of one Action, at most one an engine. Engine 0 means the one in force: that of the Action's Database;
/// an unknown Database then raises 15069.
class VELMORIA_API Sources final : public DesignCollection<SourceKind> {
 public:
  Sources();
  ~Sources() override;

  // Of the parents; empty without them.
  std::string ServerName() const;
  std::string ClassName() const;
  std::string ActionName() const;
  /// The engines of the Database's Connectors, or of this machine when the Database is unknown, that have no Source: an
  /// array from 0, or Empty when there is none.
  Variant MissingEngines() const;

 private:
  zEngines Resolved(const zEngines& engine, bool raising) const override;
  Variant CandidateEngines() const;
};

}  // namespace velmoria

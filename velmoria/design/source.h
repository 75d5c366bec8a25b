#pragma once

#include <cstdint>
#include <string>

#include "velmoria/design/design_object.h"
#include "velmoria/design/source_kind.h"

namespace velmoria {

extern template class VELMORIA_API DesignObject<SourceKind>;

/// The table, statement, procedure or view that carries out an Action on one engine. No setter tests its value or
/// consults Locked; what does not fit the engine shows when the Source is used.
class VELMORIA_API Source final : public DesignObject<SourceKind> {
 public:
  Source();
  ~Source() override;

  zSourceTypes SourceType() const;
  void SetSourceType(zSourceTypes value);
  std::string SourceTypeName() const;
  /// An SQL statement, or the name of a table, procedure, query or view.
  std::string SourceText() const;
  void SetSourceText(std::string value);
  // Kept for the host: the library does not read the sizes.

  std::int32_t KeysetSize() const;
  void SetKeysetSize(std::int32_t value);
  std::int32_t RowsetSize() const;
  void SetRowsetSize(std::int32_t value);

  /// The engine decides whether these are the DAO or the RDO options.
  zOptionFlags OptionFlags() const;
  void SetOptionFlags(zOptionFlags value);
  PropertiesPtr Parameters();

  // Of the parents; empty or 0 without them.
  std::string ServerName() const;
  std::string ClassName() const;
  std::string ActionName() const;
  std::string DatabaseName() const;
  zUsageFlags UsageFlags() const;
  std::string UsageFlagsDisplay() const;

  // The statements that brokering sends, with the values as literals. Those that change rows need a table or a view:
  // they raise 15170 for an SQL text, 15171 for a procedure, 15172 for a query definition, and are empty for stNone.

  /// All columns of the rows that the parameters select; for an SQL text or a procedure what SQLExecute gives. Raises
  /// 15172 for a query definition.
  std::string SQLSelect(const PropertiesPtr& parameters = {});
  /// `returnsIdentity` tells whether the statement also asks for the counter that the database gives.
  std::string SQLInsert(const PropertiesPtr& properties, bool& returnsIdentity, const PropertiesPtr& parameters = {});
  /// Sets these properties in the rows that the parameters select.
  std::string SQLUpdate(const PropertiesPtr& properties, const PropertiesPtr& parameters);
  std::string SQLDelete(const PropertiesPtr& properties, const PropertiesPtr& parameters);
  /// An SQL text as it stands, or the call of a procedure; with ofRDOPassthru the values take the place of the markers.
  /// Without parameters those of this Source count. Raises 15172 for a query definition and 15173 for any other type.
  std::string SQLExecute(const PropertiesPtr& parameters = {});

  // Inside the library.

  /// 2 for engAccess, 1 for engines 2 to 5, 0 for any other.
  std::int32_t AccessMethod() const;

 private:
  void PassOn(const ParentChange& change) override;

  PropertiesPtr parameters_;
};

}  // namespace velmoria

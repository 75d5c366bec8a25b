#include "velmoria/platform/rdo/rdo_tables.h"

#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_table.h"

namespace velmoria {

rdoTables::rdoTables(rdoConnectionPtr connection) : connection_(std::move(connection)) {}

rdoTables::~rdoTables() = default;

std::string_view rdoTables::ReportedType() const noexcept { return "rdoTables"; }

rdoTablePtr rdoTables::Item(std::string name) const { return Make<rdoTable>(connection_, std::move(name)); }

}  // namespace velmoria

#pragma once

#include <string>
#include <string_view>

#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// A table or view of a connection, known by its name alone.
class rdoTable : public Object {
 public:
  rdoTable(rdoConnectionPtr connection, std::string name);
  ~rdoTable() override;
  std::string_view ReportedType() const noexcept override;

  /// Every row and column. A name with blanks or signs, not delimited by the caller, is delimited as the server wants
  /// it.
  rdoResultsetPtr OpenResultset(const OpenResultsetArguments& arguments = {}) const;

 private:
  std::string DelimitedName() const;

  rdoConnectionPtr connection_;
  std::string name_;
};

}  // namespace velmoria

#pragma once

#include <string>
#include <string_view>

#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// The tables of a connection, by name. Nothing is looked up: a table that is not there fails when it is opened.
class rdoTables : public Object {
 public:
  explicit rdoTables(rdoConnectionPtr connection);
  ~rdoTables() override;
  std::string_view ReportedType() const noexcept override;

  rdoTablePtr Item(std::string name) const;

 private:
  rdoConnectionPtr connection_;
};

}  // namespace velmoria

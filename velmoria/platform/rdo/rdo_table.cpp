#include "velmoria/platform/rdo/rdo_table.h"

#include <algorithm>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/platform/rdo/rdo_resultset.h"

namespace velmoria {
namespace {

// Letters outside ASCII need no delimiters; ".", and whatever delimits, are the caller's own doing.
bool NeedsDelimiters(char c) noexcept {
  constexpr std::string_view kPlain = "_$#@.\"`[]";
  const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
  return !isLetter && !(c >= '0' && c <= '9') && kPlain.find(c) == std::string_view::npos;
}

}  // namespace

rdoTable::rdoTable(rdoConnectionPtr connection, std::string name)
    : connection_(std::move(connection)), name_(std::move(name)) {}

rdoTable::~rdoTable() = default;

std::string_view rdoTable::ReportedType() const noexcept { return "rdoTable"; }

std::string rdoTable::DelimitedName() const {
  const bool delimited = name_.find_first_of("\"`[") != std::string::npos;
  if (delimited || std::none_of(name_.begin(), name_.end(), NeedsDelimiters)) return name_;
  const std::string quote = connection_->Handle().InfoText(SQL_IDENTIFIER_QUOTE_CHAR);
  return quote.empty() || quote == " " ? name_ : quote + name_ + quote;
}

rdoResultsetPtr rdoTable::OpenResultset(const OpenResultsetArguments& arguments) const {
  connection_->Engine()->rdoErrors().clear();
  rdoQuery query(connection_, {}, "SELECT * FROM " + DelimitedName());
  query.SetPrepared(false);
  return query.OpenResultset(arguments);
}

}  // namespace velmoria

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/platform/odbc/parameters.h"
#include "velmoria/platform/odbc/statement.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

struct OpenResultsetArguments {
  rdoNumber Type = rdOpenForwardOnly;
  rdoNumber LockType = rdConcurReadOnly;  // taken and not used: every result is read-only
  rdoNumber Options = 0;
  /// The text only reads, so it may be run again. A result other than rdOpenStatic then comes by a cursor that does not
  /// scroll and gives whole blocks; when a value turns out longer than the driver said, the text is run once more, row
  /// by row, and 40071 raised if the rows before that one are not the same by then.
  bool Repeatable = false;
  /// Results of the same shape, in letters too, have the columns of the same table or view, and what drivers take long
  /// to say of these is asked once for a connection. Columns that have changed are noticed by their names, types and
  /// sizes. Empty for a result of its own shape.
  std::string Shape{};
};

/// A statement text with its parameters, run as often as wanted. Results opened from it are independent of it and of
/// one another, but for what a call gives back, which the parameters take from the one that is asked for it. Execute
/// and OpenResultset raise 13 when the value of a parameter cannot be sent.
class rdoQuery : public Object {
 public:
  rdoQuery(rdoConnectionPtr connection, std::string name, std::string sql);
  ~rdoQuery() override;
  std::string_view ReportedType() const noexcept override;

  std::string Name() const { return name_; }
  std::string SQL() const { return sql_; }
  /// Makes the parameters anew. Those of a "{ ? = call name ( ... ) }" are named, typed and directed as the catalogue
  /// has them, if it lists as many as there are markers.
  void SetSQL(std::string value);
  /// True, the default: the server prepares the text first. False: the text is executed directly.
  bool Prepared() const noexcept { return prepared_; }
  void SetPrepared(bool value);

  /// One for each marker, in their order, the first at 0. A "?" inside quotes or a comment is no marker.
  const std::vector<rdoParameterPtr>& rdoParameters() const noexcept { return parameters_; }

  /// Runs the text to the end of its last result, which are all dropped, then takes the values that come back.
  void Execute();
  /// How many rows the last Execute changed, -1 when the driver cannot tell.
  long long RowsAffected() const noexcept { return rowsAffected_; }
  /// Opens the first result that has columns. With rdAsyncEnable the server works on while the caller goes on, and a
  /// failure of it is raised by the result.
  rdoResultsetPtr OpenResultset(const OpenResultsetArguments& arguments = {});

  void Close();

 private:
  bool OutputsComeAsRow() const;
  std::unique_ptr<odbc::ParameterValues> Bind(odbc::Statement& statement) const;
  void NameParameters();
  bool Prepares() const noexcept { return prepared_ && preparable_; }

  rdoConnectionPtr connection_;
  std::string name_;
  std::string sql_;
  bool prepared_ = true;
  bool preparable_ = true;  // by the driver
  std::vector<rdoParameterPtr> parameters_;
  std::unique_ptr<odbc::Statement> executed_;  // prepared, and kept for the next Execute
  long long rowsAffected_ = -1;
};

}  // namespace velmoria

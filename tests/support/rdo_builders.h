#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/fake_odbc.h"
#include "velmoria/platform/rdo/rdo_column.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/platform/rdo/rdo_environment.h"
#include "velmoria/platform/rdo/rdo_parameter.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/platform/rdo/rdo_table.h"
#include "velmoria/platform/rdo/rdo_tables.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {

/// Expects an Error with the number and, as a part, the text.
template <class Routine>
void ExpectRdoFailure(std::int32_t number, const std::string& part, Routine&& routine) {
  try {
    routine();
    ADD_FAILURE() << "nothing was thrown";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), number) << error.what();
    EXPECT_NE(error.Description().find(part), std::string::npos) << error.what();
  }
}

/// An RDO engine over a driver in memory, with one environment.
class RdoTest : public ::testing::Test {
 protected:
  std::shared_ptr<FakeOdbc> odbc = std::make_shared<FakeOdbc>();
  rdoEnginePtr engine = Make<rdoEngine>(odbc);
  rdoEnvironmentPtr environment = engine->rdoCreateEnvironment("", "", "");

  rdoConnectionPtr Open(const std::string& connect = "Driver=Fake") {
    return environment->OpenConnection({.Prompt = rdDriverNoPrompt, .Connect = connect});
  }
  /// A result of rows "1", "2" ... in one column of whole numbers.
  rdoResultsetPtr OpenNumbers(int count, rdoNumber type = rdOpenKeyset) {
    odbc->Columns = {{"Id", 4}};
    odbc->Rows.clear();
    for (int number = 1; number <= count; ++number) odbc->Rows.push_back({std::to_string(number)});
    return OpenRows(type);
  }
  rdoResultsetPtr OpenRows(rdoNumber type = rdOpenKeyset) {
    return Open()->CreateQuery("", "SELECT")->OpenResultset({.Type = type});
  }
};

}  // namespace velmoria::test

#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {

/// A database that the suite runs over, and what differs from one to the other.
struct RdoBackend {
  std::string Name;
  bool IsPostgres;
};

/// A connection to a database with a table of every kind of column, made anew for each test.
class RdoContract : public ::testing::TestWithParam<RdoBackend> {
 protected:
  void SetUp() override;
  void TearDown() override;

  bool IsPostgres() const { return GetParam().IsPostgres; }
  rdoConnectionPtr Connect() { return ConnectWith(connectText); }
  rdoConnectionPtr ConnectWith(const std::string& text) {
    return environment->OpenConnection({.Prompt = rdDriverNoPrompt, .Connect = text});
  }
  void Run(const std::string& sql) { connection->CreateQuery("", sql)->Execute(); }
  rdoResultsetPtr Rows(const std::string& sql, rdoNumber type = rdOpenKeyset) {
    return connection->CreateQuery("", sql)->OpenResultset({.Type = type});
  }
  /// The first value of the first row.
  Variant Value(const std::string& sql) { return Rows(sql)->GetRows(1).Value(0, 0); }
  /// A statement that makes rows 1 to count of "n".
  std::string Numbers(int count) const;
  void MakeKinds();

  std::string folder;
  std::string connectText;
  rdoEnginePtr engine = Make<rdoEngine>();
  rdoEnvironmentPtr environment = engine->rdoCreateEnvironment("", "", "");
  rdoConnectionPtr connection;
};

/// SQLite always; PostgreSQL when VELMORIA_TEST_PG holds a connect string.
std::vector<RdoBackend> RdoBackends();

}  // namespace velmoria::test

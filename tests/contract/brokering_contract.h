#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tests/contract/rdo_contract.h"
#include "tests/support/counting_odbc.h"
#include "tests/support/expect_raised.h"
#include "tests/support/odbc_client.h"
#include "tests/support/refusal.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// A driver under one of the engines, with what else it differs in once rows have become objects. The driver's own
/// questions, and how a "Why" is meant, stand at RdoProfile; in its texts "{t}" is the prefix of every table here.
struct BrokeringProfile {
  RdoProfile Driver{};
  std::string Name{};
  zEngines Engine = engODBC;
  std::string FirstDay = "0100-01-01";
  std::vector<std::string> OddDays{};       // that a column can hold and a Date cannot
  std::string AllowOddDays{};               // what makes the server store them
  std::string Repeated{};                   // a text of {count} times "x"
  std::int32_t LongestCount = 100'000'000;  // the longest of these that is carried
  std::vector<std::string>
      MakeRowsAndOutput{};   // "{own}_both" that gives the orders up to its a, and sets its b to 10 a
  std::string NoIdentity{};  // how the driver begins to refuse the statement that asks for the new number

  std::string WhyNoOddDays{};
  std::string WhyNoDroppedColumn{};
  std::string WhyNoIdentity{};
  std::string WhyNoRefusal{};  // of that statement
  std::string WhyNoRowsAndOutput{};
  std::string WhyOneWriter{};
};

void PrintTo(const BrokeringProfile& profile, std::ostream* stream);

/// What an Action of the suite reads or runs.
struct Reading {
  std::string Name = "Get";
  std::string Text{};  // with braces
  zSourceTypes Type = stTable;
  std::int32_t ObjectBuffer = 0;
  zOptionFlags Options = ofNone;
  std::string ConnectionsName{};
  std::string DatabaseName = "Shop";
};

/// A whole request from the broker down to a real driver, and what lies in the database behind it, seen by a client of
/// plain calls. The registered database "Shop" is the driver's and the server "Sales" holds the classes. At the end
/// every handle of the driver must have been given back.
class BrokeringContract : public testing::TestWithParam<BrokeringProfile> {
 protected:
  void SetUp() override;
  void TearDown() override;
  /// The database that everything happens in.
  virtual std::string ConnectOf() { return Driver().Connect; }

  const BrokeringProfile& Profile() const { return GetParam(); }
  const RdoProfile& Driver() const { return GetParam().Driver; }
  /// A text of the profile with what stands for its names in braces.
  std::string Filled(std::string text) const;

  // Without the library.
  void ConnectClient() { client_ = std::make_unique<OdbcClient>(connectText_); }
  OdbcClient& Client() { return *client_; }
  void Run(const std::string& sql) { client_->RunAll({Filled(sql)}); }
  void RunAll(const std::vector<std::string>& texts);
  std::string Stored(const std::string& sql) { return client_->Value(Filled(sql)); }
  void MakeTable(const std::string& name, const std::string& columns);
  void MakeKinds();
  /// One row of every kind of value, and one of nothing but Null.
  void FillKinds();
  /// Orders 1 to count of the columns id, name ("name 1") and total (ten times the id).
  void MakeOrders(int count);

  // The design.
  static DatabasePtr AddDatabase(const std::string& name, zEngines engine, const std::string& connect,
                                 zCursorTypes cursorType = {});
  /// With an Action "Get" over the table "{t}name" for everything; the key columns are numbers.
  ClassPtr AddClass(const std::string& name, const std::string& table, const std::vector<std::string>& key = {"id"});
  ClassPtr AddOrders(int count) {
    MakeOrders(count);
    return AddClass("Order", "orders");
  }
  ActionPtr AddAction(const std::string& className, const Reading& reading,
                      const std::vector<PropertyFields>& parameters = {});
  static ActionPtr ActionOf(const std::string& className, const std::string& name = "Get");
  static PropertyFields Parameter(const char* name, zDataTypes type, zPropertyFlags flags = pfInput);

  // Requests.
  static IBusinessObjectPtr One(const std::string& className, const Variant& key) {
    return Framework{}.GetBusinessObject({.ClassName = className, .KeyValue1 = key});
  }
  static IBusinessObjectsPtr All(const std::string& className, const std::string& action = "Get") {
    return Framework{}.GetBusinessObjects({.ClassName = className, .ActionName = action});
  }
  static Variant Value(const IBusinessObjectPtr& object, const char* property) {
    return object->FindProperty(property)->Value();
  }
  static void Set(const IBusinessObjectPtr& object, const char* property, const Variant& value) {
    object->FindProperty(property)->SetValue(value);
  }
  static std::int32_t IdOf(const IBusinessObjectPtr& object) { return Value(object, "id").AsLong(); }
  /// What reads for the Action, below the broker.
  static DatabaseAgentPtr AgentOf(const std::string& className, const std::string& action = "Get",
                                  const PropertiesPtr& parameters = {});
  /// The ids of a page, with a blank between.
  static std::string Ids(const RecordsetPtr& page);

  /// Runs what may meet a result that is no longer what it was: a failure has a number of the catalogue.
  template <class Walk>
  bool EndsRightOrNumbered(Walk&& walk) {
    const auto error = Thrown(walk);
    if (error) { EXPECT_GE(error->CatalogueNumber(), 15000) << error->Description(); }
    Messages().Clear();
    return !error;
  }

  CountingOdbc& Odbc() { return *odbc_; }
  velmoria::Messages& Messages() const { return scope_->Messages(); }
  const std::string& ConnectText() const { return connectText_; }
  /// A fresh apartment that counts its handles with the others'.
  void UseDriver(ScopedApartment& apartment) const { apartment.State().Platform.Odbc = odbc_; }

 private:
  void RunOverServer(const std::vector<std::string>& texts);

  TemporaryFolder folder_;
  std::string serverText_;  // before the test's own database is chosen
  std::string connectText_;
  std::vector<std::string> tables_;
  std::unique_ptr<OdbcClient> client_;
  std::shared_ptr<CountingOdbc> odbc_ = std::make_shared<CountingOdbc>();
  std::unique_ptr<ScopedApartment> scope_;
};

/// The drivers of RdoProfilesWithOptions, each under the engine it is for; the T-SQL server is both SQL Server and
/// Sybase.
std::vector<BrokeringProfile> BrokeringProfiles();

}  // namespace velmoria::test

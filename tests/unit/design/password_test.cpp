#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/fake_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/platform/rdo/rdo_connection.h"

namespace velmoria::test {
namespace {

constexpr const char* kPassword = "canary-4711";

// A Connector with a password whose driver refuses to connect, and everything that is shown about it.
class PasswordTest : public testing::Test {
 protected:
  PasswordTest() {
    apartment_.State().Platform.Odbc = driver_;
    driver_->FailName = "DriverConnect";
    apartment_.Messages().SetupLogging({.LogMode = lmAutomatic});
    connector_ = design_.Database->Connectors()->Item(engODBC);
    connector_->SetPassword(kPassword);
  }

  /// What a step throws, if anything, and whatever it leaves in Messages, joins what is shown.
  template <class Step>
  void Show(Step&& step) {
    const auto error = Thrown(step);
    if (error) shown_ += error->Description() + error->what();
    for (const auto& message : apartment_.Messages()) {
      shown_ += message->Details() + message->StateDetails() + message->ExtraText() + message->Replace1() +
                message->Replace2() + message->Replace3() + message->Replace4();
    }
    shown_ += apartment_.Messages().Details();
    apartment_.Messages().Clear();
  }
  std::string Logged() const {
    std::string text;
    for (const auto& line : apartment_.Log().Lines) text += line.Text;
    return text;
  }

  ScopedApartment apartment_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
  OneAction design_;
  ConnectorPtr connector_;
  std::string shown_;
};

TEST_F(PasswordTest, ReachesTheDriver) {
  driver_->FailName.clear();
  design_.Action->Connection()->GetConnection();
  ASSERT_FALSE(driver_->Connects.empty());
  EXPECT_NE(driver_->Connects.front().find(kPassword), std::string::npos);
}

TEST_F(PasswordTest, NoDetailsMessageLogOrExceptionShowsIt) {
  const auto connectors = design_.Database->Connectors();
  connector_->SetConnectionString(std::string("Driver=Fake;UID=anna;Pwd={") + kPassword + "}");
  Show([&] { design_.Action->Connection()->GetConnection(); });
  Show([&] { design_.Action->CreateProperties(); });
  Show([&] { design_.Read(); });
  Show([&] { design_.Server->ActionMetaDataLoad(); });
  Show([&] { connectors->SetupItem({.Engine = engODBC, .ConnectionType = ctText, .Password = kPassword}); });
  Show([&] { connectors->SetupItem({.Engine = engRMS, .Password = kPassword}); });
  Show([&] { connectors->Add(connector_); });
  Show([&] { connectors->ChangeItemEngine(engODBC, engODBC); });
  Show([&] { connectors->Remove(engSybase); });
  connector_->SetConnectionType(ctNone);
  Show([&] { connector_->Data()->ODBCConnectionString(); });
  connector_->SetLocked(true);
  Show([&] { connector_->SetPassword(kPassword); });
  shown_ += connector_->Details() + connectors->Details() + connectors->Data()->Details() +
            design_.Database->Details() + Apartment().Databases->Details() + design_.Action->Connection()->Details();
  EXPECT_EQ(shown_.find(kPassword), std::string::npos) << shown_;
  EXPECT_EQ(Logged().find(kPassword), std::string::npos);
  EXPECT_NE(shown_.find("Pwd=***"), std::string::npos);
  EXPECT_NE(Logged().find("Problem adding Connector"), std::string::npos);
}

}  // namespace
}  // namespace velmoria::test

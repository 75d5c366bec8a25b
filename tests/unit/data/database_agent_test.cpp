#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/database.h"
#include "velmoria/design/server.h"
#include "velmoria/design/source.h"
#include "velmoria/design/sources.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

/// A back-end that notes what it is asked for.
class NotingAgent final : public Agent {
 public:
  NotingAgent(ClassPtr owner, ActionPtr action, std::string& calls, bool asynchronous)
      : class_(std::move(owner)), action_(std::move(action)), calls_(calls), asynchronous_(asynchronous) {}

  ClassPtr Class() const override { return class_; }
  ActionPtr Action() const override { return action_; }
  SourcePtr Source() const override { return action_->Sources()->Item(); }
  std::int32_t ObjectBuffer() const override { return 7; }
  std::string Details() const override { return "noting"; }
  std::int32_t RowCount() override { return 3; }
  PropertiesDataPtr PropertiesData() override { return {}; }
  RecordsetPtr GetRecordset(const DatabaseAgentPtr&, const RecordsetPtr&, bool keepOpen) override {
    calls_ += keepOpen ? "read open " : "read ";
    return {};
  }
  bool AsyncFlag() const override { return asynchronous_; }
  bool StillExecuting() override {
    calls_ += "poll ";
    return true;
  }
  RecordsetPtr GetAsyncRecordset(const DatabaseAgentPtr&) override {
    calls_ += "take ";
    return Make<Recordset>();
  }
  void Execute() override { calls_ += "execute "; }
  void InsertPersistentProperties(const PropertiesPtr&) override { calls_ += "insert "; }
  void UpdatePersistentProperties(const PropertiesPtr&) override { calls_ += "update "; }
  void DeletePersistentProperties(const PropertiesPtr&) override { calls_ += "delete "; }

 private:
  ClassPtr class_;
  ActionPtr action_;
  std::string& calls_;
  bool asynchronous_;
};

class DatabaseAgentTest : public testing::Test {
 protected:
  DatabaseAgentPtr MakeAgent(zEditFlags flags = efAll, std::int32_t accessMethod = 1, bool asynchronous = false) {
    design_.Action->SetEditFlags(flags);
    auto agent = Make<DatabaseAgent>();
    agent->Initialize(design_.Action,
                      std::make_unique<NotingAgent>(design_.Class, design_.Action, calls_, asynchronous), accessMethod);
    return agent;
  }
  /// A free-standing object with a state of one's choice and one value.
  static PropertiesPtr Cached(zStateFlags state, const Variant& value = std::int32_t{1}) {
    auto definition = Make<PropertiesData>();
    definition->SetupItem(psCached, {.Name = "Id", .Value = value, .DataType = dtLongInteger}, {}, true);
    auto properties = Make<Properties>();
    properties->Bind({.Style = psCached, .PropertiesData = definition});
    properties->SetStateFlags(state);
    return properties;
  }
  static bool Update(const DatabaseAgentPtr& agent, const PropertiesPtr& properties) {
    bool written = false;
    agent->UpdatePersistentProperties(properties, 0, written);
    return written;
  }

  ScopedApartment scope_;
  OneAction design_;
  std::string calls_;
};

TEST_F(DatabaseAgentTest, TheEngineOfTheSourceChoosesTheBackEnd) {
  EXPECT_EQ(design_.Agent()->AccessMethod(), 1);
  EXPECT_EQ(design_.Agent()->Action(), design_.Action);
  EXPECT_EQ(design_.Agent()->Class(), design_.Class);
}

TEST_F(DatabaseAgentTest, AnUnknownEngineHasNoBackEndAndEverythingDoesNothing) {
  auto agent = Make<DatabaseAgent>();
  agent->Initialize(design_.Action, nullptr, 0);
  EXPECT_EQ(agent->RowCount(), 0);
  EXPECT_EQ(agent->Details(), "");
  EXPECT_FALSE(agent->GetRecordset(0, nullptr, false));
  EXPECT_FALSE(agent->PropertiesData());
  EXPECT_NO_THROW(agent->Execute());
  EXPECT_FALSE(Update(agent, Cached(sfNew)));
  EXPECT_EQ(agent->ObjectBuffer(), 0);
  EXPECT_FALSE(agent->Recordset());
  EXPECT_FALSE(agent->AsyncFlag());
  EXPECT_FALSE(agent->StillExecuting());
  EXPECT_TRUE(agent->GetBLOBFieldValue("Id", Cached(sfpersistent)).IsEmpty());
  EXPECT_NO_THROW(agent->LoadPersistentProperties());
  EXPECT_NO_THROW(agent->Cancel());
  const auto old = Cached(sfpersistent);
  EXPECT_NO_THROW(agent->DeletePersistentProperties(old, 0));
  EXPECT_EQ(old->StateFlags(), Cached(sfpersistent)->StateFlags());
}

TEST_F(DatabaseAgentTest, QuestionsGoToTheBackEnd) {
  const auto agent = MakeAgent();
  EXPECT_EQ(agent->ObjectBuffer(), 7);
  EXPECT_EQ(agent->RowCount(), 3);
  EXPECT_EQ(agent->Details(), "noting");
}

TEST_F(DatabaseAgentTest, ExecutionGoesToTheBackEndWhateverTheActionPermits) {
  MakeAgent(efNone)->Execute();
  EXPECT_EQ(calls_, "execute ");
}

TEST_F(DatabaseAgentTest, TheStepAndOnServerEnginesTheFlagHaveNoEffectOnReading) {
  MakeAgent()->GetRecordset(-10, nullptr, true);
  EXPECT_EQ(calls_, "read ");
}

TEST_F(DatabaseAgentTest, AResultThatIsBeingOpenedIsAskedOfTheBackEnd) {
  const auto agent = MakeAgent(efAll, 1, true);
  EXPECT_TRUE(agent->AsyncFlag());
  EXPECT_TRUE(agent->StillExecuting());
  EXPECT_TRUE(agent->Recordset());
  EXPECT_EQ(calls_, "poll take ");
}

TEST_F(DatabaseAgentTest, WithoutAnAsynchronousOpeningOfAServerEngineThereIsNothingToAwait) {
  for (const auto& agent : {MakeAgent(), MakeAgent(efAll, 2, true)}) {
    EXPECT_FALSE(agent->AsyncFlag());
    EXPECT_FALSE(agent->StillExecuting());
    EXPECT_FALSE(agent->Recordset());
  }
  EXPECT_EQ(calls_, "");
}

TEST_F(DatabaseAgentTest, ANewRowIsInsertedAndAnOldOneUpdated) {
  EXPECT_TRUE(Update(MakeAgent(), Cached(sfNew)));
  EXPECT_TRUE(Update(MakeAgent(), Cached(sfpersistent)));
  EXPECT_EQ(calls_, "insert update ");
}

TEST_F(DatabaseAgentTest, WithoutChangesNothingIsWritten) {
  const auto properties = Cached(sfpersistent, {});
  EXPECT_FALSE(Update(MakeAgent(), properties));
  EXPECT_EQ(calls_, "");
}

TEST_F(DatabaseAgentTest, AWrittenRowEndsPersistentAndClean) {
  const auto properties = Cached(sfNew);
  Update(MakeAgent(), properties);
  EXPECT_EQ(properties->StateFlags(), sfpersistent);
  EXPECT_FALSE(properties->DirtyValues());
}

TEST_F(DatabaseAgentTest, UpdatingNeedsItsFlag) {
  ExpectRaised(errNotSupported_Update, [&] { Update(MakeAgent(efInsert), Cached(sfpersistent)); },
               {.Text = "Action: 'Get'"});
  EXPECT_EQ(calls_, "");
}

TEST_F(DatabaseAgentTest, InsertingNeedsItsFlag) {
  ExpectRaised(errNotSupported_Insert, [&] { Update(MakeAgent(efUpdate), Cached(sfNew)); }, {.Text = "Action: 'Get'"});
  EXPECT_EQ(calls_, "");
}

TEST_F(DatabaseAgentTest, ADeletedObjectIsNotUpdated) {
  ExpectRaised(errPersistence_Deleted, [&] { Update(MakeAgent(), Cached(sfdeleted)); });
}

TEST_F(DatabaseAgentTest, ADeletedObjectIsNotDeletedAgain) {
  ExpectRaised(errPersistence_Deleted, [&] { MakeAgent()->DeletePersistentProperties(Cached(sfdeleted), 0); });
  EXPECT_EQ(calls_, "");
}

TEST_F(DatabaseAgentTest, ADeletedObjectIsToldByItsKeyOnUpdateAndByAllOfItsIdentifierOnDelete) {
  const auto properties = Cached(sfdeleted, std::int32_t{7});
  properties->SetIdentifier(design_.Class->CreateIdentifier(properties));
  ExpectRaised(errPersistence_Deleted, [&] { Update(MakeAgent(), properties); }, {.Text = "Identifier: '7'"});
  ExpectRaised(errPersistence_Deleted, [&] { MakeAgent()->DeletePersistentProperties(properties, 0); },
               {.Text = "Identifier: 'Identifier for Server: 'Sales'  Class: 'Order'"});
}

TEST_F(DatabaseAgentTest, APendingDeleteOfACachedObjectNeedsTheFlagForUpdating) {
  ExpectRaised(errNotSupported_Update,
               [&] { Update(MakeAgent(efDelete | efInsert), Cached(sfpersistent | sfpendingdelete)); });
  EXPECT_EQ(calls_, "");
}

TEST_F(DatabaseAgentTest, APendingDeleteIsWrittenUnlessTheRowIsNew) {
  EXPECT_TRUE(Update(MakeAgent(), Cached(sfpersistent | sfpendingdelete)));
  EXPECT_EQ(calls_, "delete ");
  Update(MakeAgent(), Cached(sfNew | sfpendingdelete));
  EXPECT_EQ(calls_, "delete ");
}

TEST_F(DatabaseAgentTest, APendingDeleteOfACachedObjectPassesTheDeleteTest) {
  EXPECT_TRUE(Update(MakeAgent(efDelete | efUpdate), Cached(sfpersistent | sfpendingdelete)));
}

TEST_F(DatabaseAgentTest, DeletingIsRefusedWhenTheFlagsAreExactlyDeleteAndInTheWordsForUpdating) {
  ExpectRaised(errNotSupported_Update,
               [&] { MakeAgent(efDelete)->DeletePersistentProperties(Cached(sfpersistent), 0); });
  EXPECT_EQ(calls_, "");
}

TEST_F(DatabaseAgentTest, DeletingWorksWithAnyOtherFlagsEvenNone) {
  for (const auto flags : {efAll, efNone, efDelete | efInsert})
    MakeAgent(flags)->DeletePersistentProperties(Cached(sfpersistent), 0);
  EXPECT_EQ(calls_, "delete delete delete ");
}

TEST_F(DatabaseAgentTest, ARequiredValueLeftEmptyIsRaisedAfterTheRowWasWritten) {
  auto definition = Make<PropertiesData>();
  definition->SetupItem(psCached, {.Name = "a", .Value = 1, .DataType = dtLongInteger}, {}, true);
  definition->SetupItem(psCached, {.Name = "b", .DataType = dtLongInteger, .Flags = pfRequired}, {}, true);
  auto properties = Make<Properties>();
  properties->Bind({.Style = psCached, .PropertiesData = definition});
  properties->SetStateFlags(sfNew);
  bool written = false;
  ExpectRaised(errValue_Required, [&] { MakeAgent()->UpdatePersistentProperties(properties, 0, written); });
  EXPECT_TRUE(written);
  EXPECT_EQ(calls_, "insert ");
}

TEST(DatabaseAgentOfAccess, IsRefusedUntilThereIsABackEnd) {
  const ScopedApartment scope;
  const OneAction design({.Engine = engAccess});
  ExpectRaised(errNotSupported_Engine, [&] { design.Agent(); }, {.Text = "Engine: 'Microsoft Access'"});
}

}  // namespace

}  // namespace velmoria::test

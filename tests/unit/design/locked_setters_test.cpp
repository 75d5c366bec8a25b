#include <string>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

enum class WhenLocked { Refused, Accepted };
enum class WhenSame { Left, Stored };

/// A setter: with a value that a new object does not have, and with the one that it has.
template <class Facade>
struct Setter {
  const char* Routine;
  void (*Change)(Facade&);
  void (*SetSame)(Facade&);
  WhenLocked Locked = WhenLocked::Refused;
  WhenSame Same = WhenSame::Left;
};

constexpr Setter<Action> kAction[] = {
    {"ObjectBuffer", [](auto& o) { o.SetObjectBuffer(1); }, [](auto& o) { o.SetObjectBuffer(0); }},
    {"ObjectType", [](auto& o) { o.SetObjectType(otModel); }, [](auto& o) { o.SetObjectType(otBusiness); }},
    {"Description", [](auto& o) { o.SetDescription("x"); }, [](auto& o) { o.SetDescription(""); }},
    {"EditFlags", [](auto& o) { o.SetEditFlags(efAll); }, [](auto& o) { o.SetEditFlags(efNone); }},
    {"UsageFlags", [](auto& o) { o.SetUsageFlags(ufAll); }, [](auto& o) { o.SetUsageFlags(ufNone); }},
    {"ConnectionsName", [](auto& o) { o.SetConnectionsName("x"); }, [](auto& o) { o.SetConnectionsName(""); }},
    {"PropertiesName", [](auto& o) { o.SetPropertiesName("x"); }, [](auto& o) { o.SetPropertiesName(""); }},
    {"BusinessObjectsName", [](auto& o) { o.SetBusinessObjectsName("x"); },
     [](auto& o) { o.SetBusinessObjectsName(""); }},
    {"DatabaseName", [](auto& o) { o.SetDatabaseName("x"); }, [](auto& o) { o.SetDatabaseName(""); }},
    {"CollectionType", [](auto& o) { o.SetCollectionType(cltInitialized); },
     [](auto& o) { o.SetCollectionType(cltOptimized); }},
};

constexpr Setter<Class> kClass[] = {
    {"Description", [](auto& o) { o.SetDescription("x"); }, [](auto& o) { o.SetDescription(""); }},
    {"ActiveXClass", [](auto& o) { o.SetActiveXClass("x"); }, [](auto& o) { o.SetActiveXClass(""); }},
    {"ActiveXCollection", [](auto& o) { o.SetActiveXCollection("x"); }, [](auto& o) { o.SetActiveXCollection(""); }},
    {"SingleActionName", [](auto& o) { o.SetSingleActionName("x"); }, [](auto& o) { o.SetSingleActionName(""); }},
    {"NewActionName", [](auto& o) { o.SetNewActionName("x"); }, [](auto& o) { o.SetNewActionName(""); }},
    {"DefaultActionName", [](auto& o) { o.SetDefaultActionName("x"); }, [](auto& o) { o.SetDefaultActionName(""); }},
};

constexpr Setter<Database> kDatabase[] = {
    {"FileName", [](auto& o) { o.SetFileName("x"); }, [](auto& o) { o.SetFileName(""); }},
    {"Name", [](auto& o) { o.SetName("x"); }, [](auto& o) { o.SetName(""); }},
    {"AutoConnect", [](auto& o) { o.SetAutoConnect(true); }, [](auto& o) { o.SetAutoConnect(false); }},
    {"Description", [](auto& o) { o.SetDescription("x"); }, [](auto& o) { o.SetDescription(""); }},
    {"Engine", [](auto& o) { o.SetEngine(engODBC); }, [](auto& o) { o.SetEngine(engUnknown); }},
    {"LoadOnStartup", [](auto& o) { o.SetLoadOnStartup(true); }, [](auto& o) { o.SetLoadOnStartup(false); },
     WhenLocked::Accepted},
};

constexpr Setter<Connector> kConnector[] = {
    {"Description", [](auto& o) { o.SetDescription("x"); }, [](auto& o) { o.SetDescription(""); }},
    {"ConnectionType", [](auto& o) { o.SetConnectionType(ctText); }, [](auto& o) { o.SetConnectionType(ctNone); }},
    {"ConnectionString", [](auto& o) { o.SetConnectionString("x"); }, [](auto& o) { o.SetConnectionString(""); }},
    {"CursorDriver", [](auto& o) { o.SetCursorDriver(crdServerSide); }, [](auto& o) { o.SetCursorDriver(crdNone); }},
    {"CursorType", [](auto& o) { o.SetCursorType(crtStatic); }, [](auto& o) { o.SetCursorType(crtNone); }},
    {"UserName", [](auto& o) { o.SetUserName("x"); }, [](auto& o) { o.SetUserName(""); }},
    {"Password", [](auto& o) { o.SetPassword("x"); }, [](auto& o) { o.SetPassword(""); }},
    {"DefinitionValidation", [](auto& o) { o.SetDefinitionValidation(true); },
     [](auto& o) { o.SetDefinitionValidation(false); }},
};

constexpr Setter<Server> kServer[] = {
    {"Name", [](auto& o) { o.SetName("x"); }, [](auto& o) { o.SetName(""); }, WhenLocked::Accepted},
    {"FileName", [](auto& o) { o.SetFileName("x"); }, [](auto& o) { o.SetFileName(""); }, WhenLocked::Accepted},
    {"Description", [](auto& o) { o.SetDescription("x"); }, [](auto& o) { o.SetDescription(""); },
     WhenLocked::Accepted},
    {"ActiveXComponent", [](auto& o) { o.SetActiveXComponent("x"); }, [](auto& o) { o.SetActiveXComponent(""); },
     WhenLocked::Accepted},
    {"LoadOnStartup", [](auto& o) { o.SetLoadOnStartup(true); }, [](auto& o) { o.SetLoadOnStartup(false); },
     WhenLocked::Accepted},
    {"UseMetaData", [](auto& o) { o.SetUseMetaData(false); }, [](auto& o) { o.SetUseMetaData(true); },
     WhenLocked::Accepted},
};

constexpr Setter<Source> kSource[] = {
    {"SourceType", [](auto& o) { o.SetSourceType(stView); }, [](auto& o) { o.SetSourceType(stNone); },
     WhenLocked::Accepted, WhenSame::Stored},
    {"SourceText", [](auto& o) { o.SetSourceText("x"); }, [](auto& o) { o.SetSourceText(""); }, WhenLocked::Accepted},
    {"KeysetSize", [](auto& o) { o.SetKeysetSize(1); }, [](auto& o) { o.SetKeysetSize(0); }, WhenLocked::Accepted,
     WhenSame::Stored},
    {"RowsetSize", [](auto& o) { o.SetRowsetSize(1); }, [](auto& o) { o.SetRowsetSize(0); }, WhenLocked::Accepted,
     WhenSame::Stored},
    {"OptionFlags", [](auto& o) { o.SetOptionFlags(ofRDOAsync); }, [](auto& o) { o.SetOptionFlags(ofNone); },
     WhenLocked::Accepted, WhenSame::Stored},
    {"Description", [](auto& o) { o.SetDescription("x"); }, [](auto& o) { o.SetDescription(""); },
     WhenLocked::Accepted},
};

constexpr Setter<Relationship> kRelationship[] = {
    {"Association", [](auto& o) { o.SetAssociation(raManyToMany); }, [](auto& o) { o.SetAssociation(raOneToMany); },
     WhenLocked::Accepted},
    {"RelatedServerName", [](auto& o) { o.SetRelatedServerName("x"); }, [](auto& o) { o.SetRelatedServerName(""); },
     WhenLocked::Accepted},
    {"RelatedClassName", [](auto& o) { o.SetRelatedClassName("x"); }, [](auto& o) { o.SetRelatedClassName(""); },
     WhenLocked::Accepted},
    {"RelatedActionName", [](auto& o) { o.SetRelatedActionName("x"); }, [](auto& o) { o.SetRelatedActionName(""); },
     WhenLocked::Accepted},
    {"Description", [](auto& o) { o.SetDescription("x"); }, [](auto& o) { o.SetDescription(""); },
     WhenLocked::Accepted},
};

constexpr Setter<Link> kLink[] = {
    {"Description", [](auto& o) { o.SetDescription("x"); }, [](auto& o) { o.SetDescription(""); },
     WhenLocked::Accepted},
};

class LockedSettersTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

/// Calls back with the list of setters of every kind.
template <class Visit>
void ForEveryKind(Visit visit) {
  visit("Action", kAction);
  visit("Class", kClass);
  visit("Database", kDatabase);
  visit("Connector", kConnector);
  visit("Server", kServer);
  visit("Source", kSource);
  visit("Relationship", kRelationship);
  visit("Link", kLink);
}

template <class Facade>
void CheckLocked(const std::string& type, const Setter<Facade>& setter) {
  const auto object = Make<Facade>();
  object->SetLocked(true);
  if (setter.Locked == WhenLocked::Accepted) {
    EXPECT_NO_THROW(setter.Change(*object));
    return;
  }
  const auto before = object->Details();
  ExpectRaised(zErrors{15002}, [&] { setter.Change(*object); },
               {.Text = type + "." + setter.Routine + " (Let)", .Count = 1});
  ExpectRaised(zErrors{15002}, [&] { setter.SetSame(*object); });
  EXPECT_EQ(object->Details(), before);
  object->SetLocked(false);
  EXPECT_NO_THROW(setter.Change(*object));
}

TEST_F(LockedSettersTest, RefuseOrAcceptByKind) {
  ForEveryKind([](const char* type, const auto& setters) {
    for (const auto& setter : setters) {
      SCOPED_TRACE(std::string(type) + "." + setter.Routine);
      CheckLocked(type, setter);
    }
  });
}

template <class Facade>
bool DirtyAfter(void (*set)(Facade&)) {
  const auto object = Make<Facade>();
  set(*object);
  return object->Dirty();
}

TEST_F(LockedSettersTest, AChangeMakesDirtyAndAPresentValueOnlyWhereItIsStoredAlways) {
  ForEveryKind([](const char* type, const auto& setters) {
    for (const auto& setter : setters) {
      SCOPED_TRACE(std::string(type) + "." + setter.Routine);
      EXPECT_TRUE(DirtyAfter(setter.Change));
      EXPECT_EQ(DirtyAfter(setter.SetSame), setter.Same == WhenSame::Stored);
    }
  });
}

TEST_F(LockedSettersTest, ALockedActionAcceptsToBeUnlocked) {
  const auto action = Make<Action>();
  action->SetLocked(true);
  ExpectRaised(zErrors{15002}, [&] { action->SetDescription("x"); });
  action->SetLocked(false);
  action->SetDescription("free again");
  EXPECT_EQ(action->Description(), "free again");
}

TEST_F(LockedSettersTest, ALockedServerStillAcceptsItsDescription) {
  const auto server = Make<Server>();
  server->SetLocked(true);
  server->SetDescription("x");
  EXPECT_EQ(server->Description(), "x");
}

TEST_F(LockedSettersTest, ALockedActionsUserPropertiesAreChanged) {
  const auto action = Make<Action>();
  action->SetLocked(true);
  const auto note = action->UserProperties()->SetupItem({.Name = "Note"});
  note->SetValue("x");
  action->UserProperties()->RenameItem("Note", "Remark");
  EXPECT_EQ(action->UserProperties()->Item("Remark")->Value().AsText(), "x");
}

TEST_F(LockedSettersTest, LockedDoesNotReachChildren) {
  const auto object = Make<Class>();
  object->SetLocked(true);
  const auto action = object->Actions()->SetupItem({.Name = "Get"});
  action->SetDescription("x");
  EXPECT_FALSE(action->Locked());
}

TEST_F(LockedSettersTest, LockedDoesNotStopTheCollectionAroundIt) {
  const auto actions = Make<Class>()->Actions();
  actions->SetupItem({.Name = "Get", .Locked = true});
  actions->RenameItem("Get", "One");
  EXPECT_EQ(actions->Item("One")->Name(), "One");
  actions->Remove("One");
  EXPECT_EQ(actions->Count(), 0);
}

}  // namespace
}  // namespace velmoria::test

#include <map>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

// The order in which one Update and one Delete of a collection are heard, level by level, with a veto at each level.
// A block of the file is a headline "-- operation, veto", what was heard and written, indented by level, what state
// each object is left in, and an empty line.

/// A collection of three orders and a new one: the first is changed, the second flagged for deletion, the third
/// untouched. It notes every event of all levels; the veto is one of them, of the first order where it is an object's,
/// and then only that order is heard below the level of the collection.
class Transcript {
 public:
  explicit Transcript(std::string veto) : veto_(std::move(veto)) {
    for (int row = 1; row <= 3; ++row) objects_[std::to_string(row)] = collection_->Item(row);
    objects_["new"] = collection_->SetupItem();
    objects_["1"]->FindProperty("Name")->SetValue("changed");
    objects_["2"]->Delete();
    objects_["new"]->FindProperty("Id")->SetValue(77);
    for (const auto& [name, object] : objects_) {
      if (!veto_.empty() && name != "1") continue;
      const ModelPtr model = object->GetModel();
      ListenToWhole(*model, "  Model " + name, name);
      ListenToWhole(*model->PropertyContext(), "    PropertyContext " + name, name);
      ListenToItems<Properties>(*model->PropertyContext(), [](Properties&) { return std::string(); }, name == "1");
      ListenToWhole(*model->Properties(1), "      Properties " + name, name);
    }
    ListenToWhole(*collection_, "BusinessObjects", "1");
    ListenToItems<IBusinessObject>(*collection_, [this](IBusinessObject& item) { return NameOf(item); }, true);
  }

  std::string Of(void (IBusinessObjects::*operation)()) {
    (*collection_.*operation)();
    for (const auto& [name, object] : objects_) Note("left: " + name + " " + object->StateFlagsDisplay());
    return text_;
  }

 private:
  void Note(const std::string& line) {
    const auto written = [&](int count, int& known, const char* statement) {
      if (count != std::exchange(known, count)) text_ += std::string("        ") + statement + "\n";
    };
    written(orders_.Database->Updates, updates_, "UPDATE");
    written(orders_.Database->Inserts, inserts_, "INSERT");
    written(orders_.Database->Deletes, deletes_, "DELETE");
    text_ += line + "\n";
  }
  bool Vetoed(const std::string& line, const std::string& event, bool first) {
    const bool vetoed = first && event == veto_;
    Note(line + (vetoed ? ": vetoed" : ""));
    return vetoed;
  }
  std::string NameOf(IBusinessObject& item) const {
    for (const auto& [name, object] : objects_)
      if (object == &item) return name;
    return "?";
  }
  static std::string Level(const std::string& who) {
    const auto from = who.find_first_not_of(' ');
    return who.substr(from, who.find(' ', from) - from) + " ";
  }

  template <class Raiser>
  void ListenToWhole(Raiser& raiser, const std::string& who, const std::string& name) {
    const bool first = name == "1";
    const auto before = [this, who, first](const char* event) {
      return [this, who, first, event](bool& Cancel) { Cancel = Vetoed(who + " " + event, Level(who) + event, first); };
    };
    raiser.BeforeUpdate += before("BeforeUpdate");
    raiser.BeforePendingDelete += before("BeforePendingDelete");
    raiser.AfterUpdate += [this, who] { Note(who + " AfterUpdate"); };
    raiser.AfterPendingDelete += [this, who] { Note(who + " AfterPendingDelete"); };
  }
  template <class Item, class Raiser, class Name>
  void ListenToItems(Raiser& raiser, Name nameOf, bool first) {
    const std::string who = std::is_same_v<Item, Properties> ? "    PropertyContext" : "BusinessObjects";
    const auto line = [who, nameOf](const char* event, Item& item) {
      const std::string name = nameOf(item);
      return who + " " + event + (name.empty() ? "" : " " + name);
    };
    const auto before = [=, this](const char* event) {
      return [=, this](Item& item, bool& Cancel) {
        const std::string name = nameOf(item);
        Cancel = Vetoed(line(event, item), Level(who) + event, first && (name.empty() || name == "1"));
      };
    };
    raiser.BeforeItemUpdate += before("BeforeItemUpdate");
    raiser.BeforeItemPendingDelete += before("BeforeItemPendingDelete");
    raiser.AfterItemUpdate += [=, this](Item& item) { Note(line("AfterItemUpdate", item)); };
    raiser.AfterItemPendingDelete += [=, this](Item& item) { Note(line("AfterItemPendingDelete", item)); };
  }

  ScopedApartment apartment_;
  BoundOrders orders_;
  BusinessObjectsPtr collection_ = orders_.Collection();
  std::map<std::string, IBusinessObjectPtr> objects_;
  std::string veto_;
  std::string text_;
  int updates_ = 0;
  int inserts_ = 0;
  int deletes_ = 0;
};

std::string Render(const std::string& name, const std::string& event, void (IBusinessObjects::*operation)()) {
  std::string text;
  for (const char* veto : {"", "BusinessObjects Before", "BusinessObjects BeforeItem", "Model Before",
                           "PropertyContext Before", "PropertyContext BeforeItem", "Properties Before"}) {
    const std::string vetoed = *veto == '\0' ? "" : veto + event;
    text +=
        "-- " + name + ", " + (vetoed.empty() ? "no veto" : vetoed) + "\n" + Transcript(vetoed).Of(operation) + "\n";
  }
  return text;
}

TEST(CollectionEventsTest, UpdateAndDeleteAreHeardInThisOrder) {
  EXPECT_EQ(Render("Update", "Update", &IBusinessObjects::Update) +
                Render("Delete", "PendingDelete", &IBusinessObjects::Delete),
            ReadText(VELMORIA_TESTS_DIR "/golden/collection_events.txt"));
}

}  // namespace

}  // namespace velmoria::test

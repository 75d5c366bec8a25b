#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/scenario/faulty_shop.h"
#include "tests/support/fault_rounds.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

using Operation = FaultedOperation<FaultyShop>;

const std::vector<zErrors> kOpening{errRDO_Connection, errRDO_Environment};
const std::vector<zErrors> kReading{errRDO_Connection, errRDO_Environment, errRDO_Table, errRDO_SQL, errRDO_Resultset};
// Without a row there is no object.
const std::vector<zErrors> kReadingOne{errRDO_Connection, errRDO_Environment, errRDO_Table, errBusinessObject_Get};
// Whatever has kept a name from being loaded, the name is what is not found.
const std::vector<zErrors> kLoadingObjects{errItem_BusinessObjects};
const std::vector<zErrors> kLoadingProperties{errItem_Properties};
const std::vector<zErrors> kRefused{errVelmoria_Unknown, errRDO_Connection, errRDO_Environment};

std::string Text(const IBusinessObjectPtr& object, const char* property) {
  const auto value = object->FindProperty(property)->Value();
  return value.IsNull() ? "-" : value.AsText();
}

/// The objects in turn, by their positions up to the first that is not there.
std::string Walk(IBusinessObjects& objects, std::int32_t count, const char* property) {
  std::string text;
  for (std::int32_t position = 1; position <= count; ++position) text += Text(objects.Item(position), property) + ",";
  return text;
}

std::string All(IBusinessObjects& objects, const char* property) {
  std::string text;
  for (const auto& object : objects) text += Text(object, property) + ",";
  return text;
}

std::string Held(FaultyShop& shop) { return std::to_string(shop.Context->Count()); }

std::string StateOf(const IBusinessObjectPtr& object) {
  return object->StateFlagsDisplay() + (object->Dirty() ? " dirty " : " clean ");
}

std::string ObjectAndStored(FaultyShop& shop) { return StateOf(shop.Object) + shop.Stored(); }

std::string UpdateObject(FaultyShop& shop) {
  shop.Object->Update();
  return StateOf(shop.Object);
}

// ---- reading

std::string ReadOne(FaultyShop& shop) { return Text(shop.Order(2), "Name"); }

std::string ReadAll(FaultyShop& shop) {
  return All(*shop.Context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "Mine"}), "Name");
}

void GetPaged(FaultyShop& shop) {
  shop.Objects =
      shop.Context->GetBusinessObjects({.ClassName = "Order", .ActionName = "Paged", .CollectionType = cltOptimized});
}

std::string ReadInPages(FaultyShop& shop) {
  if (!shop.Objects) GetPaged(shop);
  return Walk(*shop.Objects, FaultyShop::kOrders, "Name");
}

std::string ReadFollowingPages(FaultyShop& shop) { return Walk(*shop.Objects, FaultyShop::kOrders, "Name"); }

void GetDispatched(FaultyShop& shop) {
  shop.Objects =
      shop.Context->GetBusinessObjects({.ClassName = "Order", .ActionName = "Paged", .CollectionType = cltDispatcher});
}

/// Nothing is kept, so every page that lies behind is read again from the first one on.
std::string ReadPagesAgain(FaultyShop& shop) {
  std::string text;
  for (const int position : {1, FaultyShop::kOrders, 2}) text += Text(shop.Objects->Item(position), "Name") + ",";
  return text;
}

void MakeBackwardsAgent(FaultyShop& shop) {
  shop.Agent = Make<DatabaseAgent>();
  shop.Agent->Initialize(shop.Base.Design.Order, shop.Base.OrderAction("Backwards"), {}, -1);
}

std::string IdsOf(const RecordsetPtr& page) {
  std::string ids;
  for (std::int32_t row = 0; row < page->Count(); ++row)
    ids += page->Values(row, *page->Columns()->Item("Id")).AsText() + ",";
  return ids;
}

std::string ReadBackwards(FaultyShop& shop) {
  auto page = shop.Agent->GetRecordset(0, nullptr, false);
  auto ids = IdsOf(page);
  if (page->Count() == FaultyShop::kPage) ids += IdsOf(shop.Agent->GetRecordset(0, page, false));
  return ids;
}

std::string ReadFiltered(FaultyShop& shop) {
  auto parameters = Make<Properties>();
  parameters->SetupItem({.Name = "Name", .Value = "Ben", .DataType = dtString, .Operator = ">="});
  return All(
      *shop.Context->GetBusinessObjects({.ClassName = "Order", .ActionName = "Filtered", .Parameters = parameters}),
      "Name");
}

std::string ReadByStatement(FaultyShop& shop) {
  return All(*shop.Context->GetBusinessObjects(
                 {.ClassName = "Order", .ActionName = "Named", .Parameters = shop.Base.NamedParameters("B")}),
             "Name");
}

std::string ReadLongerThanAnnounced(FaultyShop& shop) {
  return All(*shop.Context->GetBusinessObjects({.ClassName = "Order", .ActionName = "Notes"}), "Note");
}

std::string Count(FaultyShop& shop) { return std::to_string(shop.Objects->Count()); }

void GetPicture(FaultyShop& shop) {
  shop.Object = shop.Context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1, .ActionName = "Picture"});
}

std::string ReadLong(FaultyShop& shop) {
  const auto value = shop.Object->FindProperty("Photo")->Value();
  if (!value.IsByteArray()) return {};
  std::string text;
  for (const auto byte : value.Bytes()) text += std::to_string(static_cast<int>(byte)) + ",";
  return text;
}

std::string StateOfObject(FaultyShop& shop) { return StateOf(shop.Object); }

void GetOrder(FaultyShop& shop) { shop.Object = shop.Order(1); }

std::string ReadLines(FaultyShop& shop) { return All(*shop.Object->BusinessObjects("Lines"), "Product"); }

std::string HeldLines(FaultyShop& shop) {
  return StateOf(shop.Object) + std::to_string(shop.Object->BusinessObjectsCount());
}

std::string ReadDetail(FaultyShop& shop) { return shop.Object->Properties("Detail")->Item("Note")->Value().AsText(); }

std::string HeldProperties(FaultyShop& shop) {
  return StateOf(shop.Object) + std::to_string(shop.Object->PropertiesCount());
}

// ---- writing

std::string Execute(FaultyShop& shop) {
  shop.Context->Execute({.ClassName = "Order", .ActionName = "Raise"});
  return {};
}

std::string Stored(FaultyShop& shop) { return shop.Stored(); }

std::string Create(FaultyShop& shop) {
  return StateOf(shop.Context->CreateBusinessObject({.ClassName = "Order", .ActionName = "Get"}));
}

void UseMetaData(FaultyShop& shop) { shop.Base.Design.Sales->SetUseMetaData(true); }

void MakeNewOrder(FaultyShop& shop) {
  shop.Object = shop.Context->CreateBusinessObject({.ClassName = "Order", .ActionName = "Get"});
  shop.Object->FindProperty("Id")->SetValue(FaultyShop::kOrders + 1);
  shop.Object->FindProperty("Name")->SetValue("Ida");
}

void ChangeOrder(FaultyShop& shop) {
  GetOrder(shop);
  shop.Object->FindProperty("Name")->SetValue("Ann");
}

void DeleteOrder(FaultyShop& shop) {
  GetOrder(shop);
  shop.Object->Delete();
}

void ChangeOrderAndLines(FaultyShop& shop) {
  ChangeOrder(shop);
  shop.Objects = shop.Object->BusinessObjects("Lines");
  shop.Objects->Item(1)->FindProperty("Product")->SetValue("Torch");
  shop.Objects->Item(2)->FindProperty("Product")->SetValue("Stool");
}

/// What is written is clean, and what is not is still to be written; "" when that holds for each of the three.
std::string HalfWritten(FaultyShop& shop) {
  std::string wrong;
  const auto look = [&](const IBusinessObjectPtr& object, const char* property, const std::string& query) {
    const bool isWritten = shop.Base.File.Column(query) == Text(object, property);
    if (isWritten == object->Dirty()) wrong += Text(object, property) + " " + StateOf(object);
  };
  look(shop.Object, "Name", "select Name from orders where Id = 1");
  look(shop.Objects->Item(1), "Product", "select Product from lines where OrderId = 1 and LineNo = 1");
  look(shop.Objects->Item(2), "Product", "select Product from lines where OrderId = 1 and LineNo = 2");
  return wrong;
}

std::string UpdateAll(FaultyShop& shop) {
  shop.Object->GetModel()->Update(true);
  return StateOf(shop.Object);
}

// ---- connections and transactions

std::string Connect(FaultyShop& shop) {
  shop.Connection()->Connect();
  return {};
}

std::string IsConnected(FaultyShop& shop) { return shop.Connection()->ConnectionOpen() ? "open" : "closed"; }

void Connected(FaultyShop& shop) { shop.Connection()->Connect(); }

std::string Disconnect(FaultyShop& shop) {
  shop.Connection()->Disconnect();
  return IsConnected(shop);
}

std::string DisconnectGroup(FaultyShop& shop) {
  shop.Group()->Disconnect(engODBC);
  return IsConnected(shop);
}

std::string SupportsTransactions(FaultyShop& shop) {
  shop.Connection()->SupportsTransactions();
  return {};
}

void BeginAndChange(FaultyShop& shop) {
  shop.Connection()->TransBegin();
  ChangeOrder(shop);
  shop.Object->Update();
}

void GroupBeginAndChange(FaultyShop& shop) {
  Connected(shop);
  shop.Group()->TransBegin();
  ChangeOrder(shop);
  shop.Object->Update();
}

std::string Started(FaultyShop& shop) {
  return std::string(shop.Connection()->TransStarted() ? "started " : "none ") +
         (shop.Group()->TransStarted() ? "in the group " : "") + shop.Stored();
}

std::string Begin(FaultyShop& shop) {
  shop.Connection()->TransBegin();
  return {};
}
std::string Commit(FaultyShop& shop) {
  shop.Connection()->TransCommit();
  return {};
}
std::string RollBack(FaultyShop& shop) {
  shop.Connection()->TransRollback();
  return {};
}
std::string GroupBegin(FaultyShop& shop) {
  shop.Group()->TransBegin();
  return {};
}
std::string GroupCommit(FaultyShop& shop) {
  shop.Group()->TransCommit();
  return {};
}
std::string GroupRollBack(FaultyShop& shop) {
  shop.Group()->TransRollback();
  return {};
}

/// A transaction that could not be ended is taken back, also over a link that is gone.
void GiveUp(FaultyShop& shop) {
  if (shop.Connection()->TransStarted()) shop.Connection()->TransRollback();
  if (shop.Group()->TransStarted()) shop.Group()->TransRollback();
}

/// Without a transaction, what is written is there for everybody.
void WriteAtOnce(FaultyShop& shop) {
  ChangeOrder(shop);
  shop.Object->Update();
  EXPECT_EQ(shop.Base.File.Column("select Name from orders where Id = 1"), "Ann");
}

std::string DisconnectAndLook(FaultyShop& shop) {
  shop.Connection()->Disconnect();
  return IsConnected(shop) + " " + shop.Stored();
}

// ---- in the background

std::string ReadInBackground(FaultyShop& shop) {
  return All(*shop.Context->GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .AsyncFlag = true}), "Name");
}

void MakeAgent(FaultyShop& shop) {
  shop.Agent = Make<DatabaseAgent>();
  shop.Agent->Initialize(shop.Base.Design.Order, shop.Base.OrderAction("All"), {}, -1);
}

std::string BeginAndCancel(FaultyShop& shop) {
  shop.Agent->LoadPersistentProperties();
  shop.Agent->Cancel();
  return {};
}

const std::vector<Operation> kOperations{
    {"OneObject", nullptr, ReadOne, nullptr, kReadingOne},
    {"WholeCollection", nullptr, ReadAll, Held, kReading},
    {"CollectionInPages", nullptr, ReadInPages, nullptr, kReading},
    {"FollowingPages", GetPaged, ReadFollowingPages, nullptr, kReading},
    {"PagesThatWereLeftBehind", GetDispatched, ReadPagesAgain, nullptr, kReading},
    {"PagesBackwards", MakeBackwardsAgent, ReadBackwards, nullptr, kReading, false, true},
    {"FilteredRows", nullptr, ReadFiltered, nullptr, kReading},
    {"StatementWithParameters", nullptr, ReadByStatement, nullptr, kReading},
    {"ValueLongerThanAnnounced", nullptr, ReadLongerThanAnnounced, nullptr, kReading, false, true},
    {"Counting", GetPaged, Count, nullptr, kReading, false, true},
    {"LongValue", GetPicture, ReadLong, StateOfObject, kReading},
    {"RelatedObjects", GetOrder, ReadLines, HeldLines, kLoadingObjects},
    {"FurtherProperties", GetOrder, ReadDetail, HeldProperties, kLoadingProperties},
    {"Executing", nullptr, Execute, Stored, kRefused, true},
    {"Creating", nullptr, Create, Stored, kReading},
    {"CreatingWithMetaData", UseMetaData, Create, Stored, kReading},
    {"Inserting", MakeNewOrder, UpdateObject, ObjectAndStored, {errPersistence_Insert, errRDO_Connection}, true},
    {"Updating", ChangeOrder, UpdateObject, ObjectAndStored, {errPersistence_Update, errRDO_Connection}, true},
    {"Deleting", DeleteOrder, UpdateObject, ObjectAndStored, {errPersistence_Delete, errRDO_Connection}, true},
    {"UpdatingAll", ChangeOrderAndLines, UpdateAll, HalfWritten, {errPersistence_Update, errRDO_Connection}, true},
    {"Connecting", nullptr, Connect, IsConnected, kOpening},
    {"Disconnecting", Connected, Disconnect, nullptr, {}},
    {"DisconnectingTheGroup", Connected, DisconnectGroup, nullptr, {}},
    {"DisconnectingInATransaction", BeginAndChange, DisconnectAndLook, nullptr, {}},
    {"AskingForTransactions", nullptr, SupportsTransactions, nullptr, kOpening},
    {"Beginning", Connected, Begin, Started, {errVelmoria_Unknown}, true, false, WriteAtOnce},
    {"Committing", BeginAndChange, Commit, Started, {errVelmoria_Unknown}, true, false, GiveUp},
    {"RollingBack", BeginAndChange, RollBack, Started, {errVelmoria_Unknown}, true, false, GiveUp},
    {"BeginningInTheGroup", Connected, GroupBegin, Started, {errVelmoria_Unknown}, true, false, WriteAtOnce},
    {"CommittingTheGroup", GroupBeginAndChange, GroupCommit, Started, {errVelmoria_Unknown}, true, false, GiveUp},
    {"RollingTheGroupBack", GroupBeginAndChange, GroupRollBack, Started, {errVelmoria_Unknown}, true, false, GiveUp},
    {"OpeningInTheBackground", nullptr, ReadInBackground, nullptr, kReading},
    {"CancellingInTheBackground", MakeAgent, BeginAndCancel, nullptr, kReading},
};

class FaultsTest : public testing::TestWithParam<Operation> {};

TEST_P(FaultsTest, EveryCallMayFailOnceAndTheNextRequestWorks) {
  const int faults = FaultRounds<FaultyShop>(GetParam()).RunAll();
  EXPECT_GT(faults, 0);
  RecordProperty("faults", faults);
}

INSTANTIATE_TEST_SUITE_P(Sqlite, FaultsTest, testing::ValuesIn(kOperations),
                         [](const auto& tried) { return tried.param.Name; });

}  // namespace

}  // namespace velmoria::test

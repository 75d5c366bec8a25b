#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

// Works with everything that an apartment has of its own and gives back how many messages it holds then.
int WorkInOwnApartment(int worker) {
  const ScopedApartment apartment;
  const Framework framework;
  framework.Servers()->SetupItem({.Name = "Server" + std::to_string(worker)});
  framework.Profile()->SetupItem({"Worker", worker, dtLongInteger});
  for (int round = 0; round < 50; ++round) {
    try {
      static_cast<void>(framework.CreateIdentifier("Class" + std::to_string(round)));
    } catch (const Error&) { framework.Messages()->Clear(); }
    framework.CreateMessage({.Number = errItem_Class})->Details();
  }
  try {
    static_cast<void>(framework.CreateIdentifier("Missing"));
  } catch (const Error&) {}
  const bool alone = framework.Servers()->Count() == 1 && framework.Profile()->Count() == 1;
  return alone ? framework.Messages()->Count() : -1;
}

TEST(ApartmentTest, ThreadsWorkInApartmentsOfTheirOwn) {
  std::vector<int> counts(6, 0);
  std::vector<std::thread> threads;
  for (std::size_t worker = 0; worker < counts.size(); ++worker) {
    threads.emplace_back([&counts, worker] { counts[worker] = WorkInOwnApartment(static_cast<int>(worker)); });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(counts, std::vector<int>(6, 1));
}

TEST(ApartmentTest, EachThreadHasItsOwnState) {
  const ScopedApartment apartment;
  const auto* here = &Apartment();
  const ApartmentState* there = nullptr;
  std::thread([&] {
    const ScopedApartment other;
    there = &Apartment();
  }).join();
  EXPECT_EQ(&Apartment(), here);
  EXPECT_NE(there, here);
}

TEST(ApartmentTest, FirstUseStartsAndTheEndOfTheThreadWritesTheSettings) {
  const TemporaryFolder folder;
  const std::string former = std::getenv("VELMORIA_SETTINGS_DIR");
  setenv("VELMORIA_SETTINGS_DIR", folder.Path().c_str(), 1);
  std::thread([] {
    Framework().Profile()->SetupItem({"Colour", "blue", dtString});
    Framework().Messages()->SetLogFileName("there.log");
  }).join();
  setenv("VELMORIA_SETTINGS_DIR", former.c_str(), 1);
  const auto text = ReadText(folder.Path("Velmoria v1.0-0.settings"));
  EXPECT_NE(text.find("\n1Name=Colour\n1DataType=1\n1Value=blue\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\nLogFileName=there.log\n"), std::string::npos) << text;
}

TEST(ApartmentTest, NothingIsStartedByAskingForTheExchange) {
  std::thread([] {
    auto none = ExchangeApartment(nullptr);
    EXPECT_FALSE(none);
  }).join();
}

// Lives in a thread from before its first use of the library to behind its end.
struct LateAsker {
  ~LateAsker() {
    if (!Asks) return;
    *Asks = Apartment().StartedFlag && !Apartment().Messages && !Apartment().Servers;
    ExchangeApartment(nullptr);
  }
  bool* Asks = nullptr;
};

TEST(ApartmentTest, WhatAsksBehindTheEndOfItsThreadFindsAStateWithoutGlobals) {
  bool found = false;
  std::thread([&] {
    thread_local LateAsker late;
    late.Asks = &found;
    EXPECT_TRUE(Framework().Messages());
  }).join();
  EXPECT_TRUE(found);
}

TEST(ApartmentTest, ThreadMayEndWithoutTheStateThatItHad) {
  std::thread([] {
    EXPECT_TRUE(Framework().Servers());
    Apartment().End();
    EXPECT_TRUE(ExchangeApartment(nullptr));
  }).join();
}

TEST(ApartmentTest, EndedApartmentDoesNotStartAgain) {
  const ScopedApartment apartment;
  apartment.State().End();
  EXPECT_FALSE(Apartment().Messages);
  EXPECT_FALSE(Apartment().Servers);
}

TEST(ApartmentTest, ObjectsThatOutliveTheirApartmentDoNoHarm) {
  MessagesPtr messages;
  ServersPtr servers;
  {
    const ScopedApartment apartment;
    messages = apartment.State().Messages;
    servers = apartment.State().Servers;
    apartment.State().End();
    servers->SetupItem({.Name = "Late"});
    EXPECT_EQ(servers->Count(), 1);
    servers = nullptr;
    messages = nullptr;
  }
}

TEST(ApartmentTest, FailureInAnEndedApartmentIsRaisedWithItsOwnNumber) {
  const ScopedApartment apartment;
  const auto servers = apartment.State().Servers;
  apartment.State().End();
  try {
    static_cast<void>(servers->Item("x"));
    FAIL() << "nothing was raised";
  } catch (const Error& error) { EXPECT_EQ(error.CatalogueNumber(), 15074); }
}

TEST(ApartmentTest, MissingGlobalIsAnOrdinaryFailureWhereItIsNeeded) {
  const ScopedApartment apartment;
  const Framework framework;
  const auto context = framework.CreateBusinessContext();
  auto& state = apartment.State();
  state.Servers = nullptr;
  state.DefaultKeyFormat = nullptr;
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context->SetClassName("Order"); });
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { framework.CreateIdentifier("Order"); });
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { framework.CreateBusinessObjects(); });
}

TEST(ApartmentTest, WhatClearsMessagesDoesWithoutThem) {
  const ScopedApartment apartment;
  const Framework framework;
  const auto values = framework.CreateProperties();
  values->SetupItem({.Name = "Id", .Value = 7, .DataType = dtLongInteger});
  const auto parameters = values->Copy();
  values->Item("Id")->SetValue(8);
  apartment.State().Messages = nullptr;
  parameters->PrepareValues({.Properties = values});
  EXPECT_EQ(parameters->Item("Id")->Value(), Variant(8));
}

TEST(ApartmentTest, NestedScopeGivesTheFormerStateBack) {
  const ScopedApartment outer;
  auto* state = &Apartment();
  {
    const ScopedApartment inner;
    EXPECT_NE(&Apartment(), state);
  }
  EXPECT_EQ(&Apartment(), state);
}

TEST(ApartmentTest, NowIsTheTimeOfTheApartmentsClock) {
  const ScopedApartment apartment;
  EXPECT_EQ(Now(), Date::From(1998, 6, 1, 9, 14, 2));
  apartment.Clock().Time = Date::From(2001, 2, 3);
  EXPECT_EQ(Now(), Date::From(2001, 2, 3));
}

}  // namespace
}  // namespace velmoria::test

#include "velmoria/runtime/event.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace velmoria {
namespace {

class Owner {
 public:
  Event<Owner, const std::string&> Changed;
  CancelEvent<Owner, int> BeforeChange;

  void Change(const std::string& name) { Changed.Raise(name); }
  bool Ask(int value) { return BeforeChange.Raise(value); }
};

static_assert(sizeof(Event<Owner, int>) == sizeof(void*));

TEST(EventTest, ListenersAreCalledInTheOrderOfTheirComing) {
  Owner owner;
  std::string heard;
  owner.Changed += [&](const std::string& name) { heard += "1" + name; };
  owner.Changed += [&](const std::string& name) { heard += "2" + name; };
  owner.Change("a");
  EXPECT_EQ(heard, "1a2a");
}

TEST(EventTest, NobodyIsCalledAfterLeaving) {
  Owner owner;
  int calls = 0;
  const EventToken token = owner.Changed += [&](const std::string&) { ++calls; };
  EXPECT_TRUE(owner.Changed.HasListeners());
  owner.Changed -= token;
  owner.Changed -= token;
  EXPECT_FALSE(owner.Changed.HasListeners());
  owner.Change("a");
  EXPECT_EQ(calls, 0);
}

TEST(EventTest, ALeaverTakesNobodyElseAlong) {
  Owner owner;
  std::string heard;
  const EventToken first = owner.Changed += [&](const std::string&) { heard += "1"; };
  owner.Changed += [&](const std::string&) { heard += "2"; };
  owner.Changed -= first;
  owner.Changed += [&](const std::string&) { heard += "3"; };
  owner.Changed -= first;
  owner.Change("");
  EXPECT_EQ(heard, "23");
}

TEST(EventTest, AListenerMayLeaveDuringItsOwnCall) {
  Owner owner;
  int calls = 0;
  EventToken token;
  token = owner.Changed += [&](const std::string&) {
    ++calls;
    owner.Changed -= token;
  };
  owner.Change("a");
  owner.Change("b");
  EXPECT_EQ(calls, 1);
}

TEST(EventTest, WhoJoinsDuringACallHearsTheNextOne) {
  Owner owner;
  int late = 0;
  owner.Changed += [&](const std::string&) {
    if (late == 0) owner.Changed += [&](const std::string&) { ++late; };
  };
  owner.Change("a");
  EXPECT_EQ(late, 0);
  owner.Change("b");
  EXPECT_EQ(late, 1);
}

TEST(EventTest, WhatAListenerThrowsReachesTheRaiser) {
  Owner owner;
  owner.Changed += [](const std::string&) { throw std::runtime_error("no"); };
  EXPECT_THROW(owner.Change("a"), std::runtime_error);
}

TEST(EventTest, WhoComesBehindAListenerThatThrowsIsNotCalled) {
  Owner owner;
  int calls = 0;
  owner.Changed += [](const std::string&) { throw std::runtime_error("no"); };
  owner.Changed += [&](const std::string&) { ++calls; };
  EXPECT_THROW(owner.Change("a"), std::runtime_error);
  EXPECT_EQ(calls, 0);
}

TEST(EventTest, ALeaverWhoseTurnIsStillToComeHearsTheCallThatIsUnderWay) {
  Owner owner;
  int calls = 0;
  EventToken second;
  owner.Changed += [&](const std::string&) { owner.Changed -= second; };
  second = owner.Changed += [&](const std::string&) { ++calls; };
  owner.Change("a");
  owner.Change("b");
  EXPECT_EQ(calls, 1);
}

TEST(EventTest, AnEventMayBeRaisedInsideItself) {
  Owner owner;
  std::string heard;
  owner.Changed += [&](const std::string& name) {
    heard += name;
    if (name == "a") owner.Change("b");
  };
  owner.Change("a");
  EXPECT_EQ(heard, "ab");
}

TEST(EventTest, NobodysTokenTakesNobodyAlong) {
  Owner owner;
  owner.Changed -= EventToken{};
  int calls = 0;
  owner.Changed += [&](const std::string&) { ++calls; };
  owner.Changed -= EventToken{};
  owner.Change("a");
  EXPECT_EQ(calls, 1);
}

TEST(EventTest, NothingIsCancelledWhileNobodyListens) {
  Owner owner;
  EXPECT_FALSE(owner.Ask(1));
  EXPECT_FALSE(owner.BeforeChange.HasListeners());
}

TEST(EventTest, OneListenerCancelsForAll) {
  Owner owner;
  std::string heard;
  owner.BeforeChange += [&](int value, bool& Cancel) { Cancel = value > 10; };
  const EventToken second = owner.BeforeChange += [&](int, bool& Cancel) { heard += Cancel ? "y" : "n"; };
  EXPECT_TRUE(owner.Ask(11));
  EXPECT_FALSE(owner.Ask(10));
  EXPECT_EQ(heard, "yn");
  EXPECT_TRUE(owner.BeforeChange.HasListeners());
  owner.BeforeChange -= second;
  EXPECT_TRUE(owner.Ask(12));
  EXPECT_EQ(heard, "yn");
}

TEST(EventTest, AVetoIsNotTakenBackByALaterListener) {
  Owner owner;
  owner.BeforeChange += [](int value, bool& Cancel) { Cancel = value == 1; };
  owner.BeforeChange += [](int value, bool& Cancel) { Cancel = value == 2; };
  EXPECT_TRUE(owner.Ask(1));
  EXPECT_TRUE(owner.Ask(2));
  EXPECT_FALSE(owner.Ask(3));
}

}  // namespace
}  // namespace velmoria

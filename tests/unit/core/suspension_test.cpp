#include <utility>

#include "tests/unit/core/messages_fixture.h"
#include "velmoria/core/reporting.h"

namespace velmoria::test {
namespace {

class SuspensionTest : public MessagesTest {};

TEST_F(SuspensionTest, SuspendsForItsScope) {
  {
    Suspension quiet{"Class.Routine"};
    EXPECT_EQ(messages_.SuspendRoutine(), "Class.Routine");
  }
  EXPECT_EQ(messages_.SuspendRoutine(), "");
}

TEST_F(SuspensionTest, EndsOnUnwinding) {
  try {
    Suspension quiet{"Class.Routine"};
    throw 1;
  } catch (int) { EXPECT_EQ(messages_.SuspendRoutine(), ""); }
}

TEST_F(SuspensionTest, EndLiftsItBeforeTheScopeDoes) {
  Suspension quiet{"Class.Routine"};
  quiet.End();
  EXPECT_EQ(messages_.SuspendRoutine(), "");
  messages_.SetSuspendRoutine("Host");
  quiet.End();
  EXPECT_EQ(messages_.SuspendRoutine(), "Host");
}

TEST_F(SuspensionTest, InnerOneOfTheSameNameLeavesTheOuterInForce) {
  Suspension outer{"Class.Routine"};
  { Suspension inner{"Class.Routine"}; }
  EXPECT_EQ(messages_.SuspendRoutine(), "Class.Routine");
}

TEST_F(SuspensionTest, LeavesASuspensionOfTheHostInForce) {
  messages_.SetSuspendRoutine("Host");
  { Suspension quiet{"Class.Routine"}; }
  EXPECT_EQ(messages_.SuspendRoutine(), "Host");
}

TEST_F(SuspensionTest, DoesNotEndWhatTheHostStartedMeanwhile) {
  {
    Suspension quiet{"Class.Routine"};
    messages_.SetSuspendRoutine("");
    messages_.SetSuspendRoutine("Class.Routine");
  }
  EXPECT_EQ(messages_.SuspendRoutine(), "Class.Routine");
}

TEST_F(SuspensionTest, IsNothingWithoutMessages) {
  const auto messages = std::exchange(apartment_.State().Messages, nullptr);
  { Suspension quiet{"Class.Routine"}; }
  apartment_.State().Messages = messages;
  EXPECT_EQ(messages_.SuspendRoutine(), "");
}

}  // namespace
}  // namespace velmoria::test

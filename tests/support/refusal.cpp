#include "tests/support/refusal.h"

#include <gtest/gtest.h>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/message.h"
#include "velmoria/core/messages.h"
#include "velmoria/runtime/text.h"

namespace velmoria::test {

namespace {

void CheckHeld(const Message& held, const Refusal& expected) {
  EXPECT_EQ(held.Description(), expected.Text);
  EXPECT_EQ(held.ExtraText(), expected.ExtraText);
  EXPECT_EQ(held.TypeName() + "." + held.RoutineName(), expected.Place);
  EXPECT_EQ(held.SeverityFlags(), svfError);
  auto replaces = expected.Replaces;
  replaces.resize(4);
  EXPECT_EQ((std::vector<std::string>{held.Replace1(), held.Replace2(), held.Replace3(), held.Replace4()}), replaces);
}

void CheckThrown(const Error& error, const Refusal& expected) {
  EXPECT_EQ(error.CatalogueNumber(), static_cast<std::int32_t>(expected.Number)) << error.Description();
  EXPECT_NE(error.Description().find(expected.Text), std::string::npos) << error.Description();
  EXPECT_NE(error.Description().find(expected.ExtraText), std::string::npos) << error.Description();
}

}  // namespace

std::string CheckRefusal(const Refusal& expected, const std::optional<Error>& error, CodePlace place) {
  const testing::ScopedTrace trace(place.File, place.Line, expected.Text);
  auto& messages = *Apartment().Messages;
  std::string state;
  if (!error) {
    ADD_FAILURE() << "nothing was raised";
  } else {
    CheckThrown(*error, expected);
  }
  if (const auto held = messages.Item(NumberText(static_cast<std::int32_t>(expected.Number)))) {
    CheckHeld(*held, expected);
    state = held->StateDetails();
  } else {
    ADD_FAILURE() << "no such message\n" << messages.Details();
  }
  messages.Clear();
  return state;
}

bool WarnedOf(const std::string& words) {
  for (const auto& message : *Apartment().Messages)
    if (message->SeverityFlags() == svfWarning && message->Description().find(words) != std::string::npos) return true;
  return false;
}

}  // namespace velmoria::test

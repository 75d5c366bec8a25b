#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"

namespace velmoria::test {

using Values = std::vector<std::int32_t>;

/// The messages of a fresh apartment.
class MessagesTest : public testing::Test {
 protected:
  MessagePtr Record(std::int32_t number, zSeverityFlags severity, std::string text = "text") {
    return messages_.SetupItem({.Number = zErrors{number}, .Description = std::move(text), .SeverityFlags = severity});
  }
  Values Numbers() const {
    Values numbers;
    for (const auto& message : messages_) numbers.push_back(message->Number());
    return numbers;
  }

  ScopedApartment apartment_;
  Messages& messages_ = apartment_.Messages();
};

}  // namespace velmoria::test

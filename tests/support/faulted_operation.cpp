#include "tests/support/faulted_operation.h"

#include <algorithm>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/message.h"
#include "velmoria/core/messages.h"

namespace velmoria::test {

namespace {

// Without a handle there is nobody to ask for more.
constexpr const char* kNoReason = "The driver reported a failure and gave no reason.";

}  // namespace

void CheckFaultFailure(const Error& failure, const std::vector<zErrors>& allowed, FaultWay way) {
  auto& messages = *Apartment().Messages;
  const bool isAllowed = std::ranges::any_of(
      allowed, [&](zErrors number) { return failure.CatalogueNumber() == static_cast<std::int32_t>(number); });
  const bool endedEarly = way == FaultWay::NoData && IsRowMissing(failure);
  EXPECT_TRUE(isAllowed || endedEarly) << "raised " << failure.CatalogueNumber() << ": " << failure.Description();
  EXPECT_GE(messages.Count(), 1) << failure.Description();
  const bool toldWhy = std::any_of(messages.begin(), messages.end(), [](const auto& message) {
    const auto& text = message->Description();
    return text.find(FaultyOdbc::kText) != std::string::npos || text.find(kNoReason) != std::string::npos;
  });
  EXPECT_TRUE(toldWhy || way == FaultWay::NoData) << messages.Details();
  messages.Clear();
}

void CheckFaultBrought(const std::string& brought, const std::string& whole, FaultWay way) {
  if (way == FaultWay::NoData)
    EXPECT_TRUE(whole.starts_with(brought)) << "brought " << brought << ", not the beginning of " << whole;
  else
    EXPECT_EQ(brought, whole);
}

void CheckFaultHandles(const FaultyOdbc& driver) {
  EXPECT_EQ(driver.OpenHandles(), 0U);
  EXPECT_EQ(driver.Misuses(), "");
}

}  // namespace velmoria::test

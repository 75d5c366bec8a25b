#include "velmoria/core/host_description.h"

#include <memory>

#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/platform/posix/process_host_application.h"

namespace velmoria::test {
namespace {

class HostDescriptionTest : public testing::Test {
 public:
  ~HostDescriptionTest() override { DescribeHost(""); }

 protected:
  HostDescriptionTest() { apartment_.State().Platform.Host = std::make_shared<ProcessHostApplication>(); }
  std::string Title() {
    return apartment_.Messages().Details().substr(0, apartment_.Messages().Details().find("\r\n"));
  }

  ScopedApartment apartment_;
};

TEST_F(HostDescriptionTest, StandsInTheTitleOfTheReport) {
  DescribeHost("Sales", 3, 11, 7);
  EXPECT_EQ(Title(), "Velmoria v1.0-0h [Sales 3117]");
}

TEST_F(HostDescriptionTest, NameAloneHasVersionZero) {
  DescribeHost("Sales");
  EXPECT_EQ(Title(), "Velmoria v1.0-0h [Sales 000]");
}

TEST_F(HostDescriptionTest, EmptyNameIsThatOfTheExecutable) {
  DescribeHost("");
  EXPECT_EQ(Title(), "Velmoria v1.0-0h [unit_core 000]");
}

}  // namespace
}  // namespace velmoria::test

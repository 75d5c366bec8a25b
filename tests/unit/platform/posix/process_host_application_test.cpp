#include "velmoria/platform/posix/process_host_application.h"

#include <gtest/gtest.h>

namespace velmoria {
namespace {

class ProcessHostApplicationTest : public testing::Test {
 public:
  ~ProcessHostApplicationTest() override { ProcessHostApplication::Describe("", 0, 0, 0); }

 protected:
  ProcessHostApplication host_;
};

TEST_F(ProcessHostApplicationTest, IsNamedAfterItsExecutable) {
  EXPECT_EQ(host_.Name(), "unit_platform");
  EXPECT_EQ(host_.Major(), 0);
  EXPECT_EQ(host_.Minor(), 0);
  EXPECT_EQ(host_.Revision(), 0);
}

TEST_F(ProcessHostApplicationTest, HostMayDescribeItself) {
  ProcessHostApplication::Describe("Sales", 3, 11, 7);
  EXPECT_EQ(host_.Name(), "Sales");
  EXPECT_EQ(host_.Major(), 3);
  EXPECT_EQ(host_.Minor(), 11);
  EXPECT_EQ(host_.Revision(), 7);
}

TEST_F(ProcessHostApplicationTest, KnowsItsUser) { EXPECT_FALSE(host_.UserName().empty()); }

}  // namespace
}  // namespace velmoria

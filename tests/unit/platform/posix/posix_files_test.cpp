#include "velmoria/platform/posix/posix_files.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace velmoria::test {
namespace {

class PosixFilesTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  PosixFiles files_;
};

TEST_F(PosixFilesTest, AFileBearsTheLocalTimeOfItsLastChange) {
  const auto path = folder_.Path("sales.vsd");
  WriteText(path, "x");
  SetFileTime(path, Date::From(1998, 6, 1, 9, 14, 2));
  EXPECT_EQ(files_.DateModified(path), Date::From(1998, 6, 1, 9, 14, 2));
}

TEST_F(PosixFilesTest, WhatIsNoFileBearsNoTime) {
  EXPECT_FALSE(files_.DateModified(""));
  EXPECT_FALSE(files_.DateModified(folder_.Path("missing.vsd")));
  EXPECT_FALSE(files_.DateModified(folder_.Path()));
  EXPECT_FALSE(files_.DateModified("/dev/null/sales.vsd"));
}

}  // namespace
}  // namespace velmoria::test

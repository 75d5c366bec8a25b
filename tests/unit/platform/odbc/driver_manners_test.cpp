#include "velmoria/platform/odbc/driver_manners.h"

#include <string>

#include <gtest/gtest.h>

namespace velmoria::odbc {
namespace {

TEST(DriverMannersTest, DriverIsKnownByAPartOfItsFileName) {
  for (const std::string name : {"psqlodbcw.so", "psqlodbca.so"}) {
    EXPECT_EQ(DriverMannersOf(name).Dates.Misreads, Misreading::AsToday) << name;
    EXPECT_FALSE(DriverMannersOf(name).PreparesReturns) << name;
    EXPECT_TRUE(DriverMannersOf(name).OutputsComeAsRow) << name;
  }
  EXPECT_TRUE(DriverMannersOf("libmaodbc.so").RefusalKeepsThread);
  EXPECT_TRUE(DriverMannersOf("libmaodbc.so").OutputsComeAsRow);
  EXPECT_TRUE(DriverMannersOf("libsqlite3odbc-0.9998.so").StatementsServeAgain);
  EXPECT_TRUE(DriverMannersOf("libsqlite3odbc-0.9998.so").BeginEndsResults);
  EXPECT_GT(DriverMannersOf("libtdsodbc.so").MillisecondsToSend, 0);
}

TEST(DriverMannersTest, DriverThatIsNotKnownBehavesAsItShould) {
  for (const std::string name : {"", "libother.so", "psqlodb"}) {
    const auto& manners = DriverMannersOf(name);
    EXPECT_EQ(manners.Dates.Misreads, Misreading::None) << name;
    EXPECT_FALSE(manners.Dates.DatesAsText || manners.Dates.TimesAsText) << name;
    EXPECT_TRUE(manners.PreparesReturns) << name;
    EXPECT_FALSE(manners.StatementsServeAgain || manners.RefusalKeepsThread || manners.OutputsComeAsRow) << name;
    EXPECT_FALSE(manners.BeginEndsResults) << name;
    EXPECT_EQ(manners.MillisecondsToSend, 0) << name;
  }
}

}  // namespace
}  // namespace velmoria::odbc

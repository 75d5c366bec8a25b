#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/repository/data_file_impl.h"

namespace velmoria::test {
namespace {

class DataFileTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  TemporaryFolder folder_;
  DataFilePtr file_ = Make<DataFile>();
};

TEST_F(DataFileTest, AFileWithoutPlaceWasModifiedNow) {
  EXPECT_EQ(file_->DateModified(), apartment_.Clock().Time);
  file_->SetFileName(folder_.Path("missing.vsd"));
  apartment_.Clock().Advance(60);
  EXPECT_EQ(file_->DateModified(), apartment_.Clock().Time);
}

TEST_F(DataFileTest, AFileThatIsThereBearsItsOwnTimeAtEachCall) {
  const auto path = folder_.Path("sales.vsd");
  WriteText(path, "x");
  file_->SetFileName(path);
  for (const int year : {1997, 1998}) {
    SetFileTime(path, Date::From(year, 6, 1, 9, 14, 2));
    EXPECT_EQ(file_->DateModified(), Date::From(year, 6, 1, 9, 14, 2));
  }
}

TEST_F(DataFileTest, AMissingFileOfAServerIsReportedWithBothNames) {
  const auto path = folder_.Path("sales.vsd");
  file_->SetServerName("Sales");
  file_->SetFileName(path);
  ExpectRaised(zErrors{15047}, [&] { file_->RequireFile(); },
               {.Text = "Server: 'Sales'  Filename: '" + path + "'", .Count = 1});
  WriteText(path, "x");
  EXPECT_NO_THROW(file_->RequireFile());
}

TEST_F(DataFileTest, AMissingFileOfADatabaseIsReportedWithAnEmptyName) {
  file_->SetDatabaseName("Shop");
  file_->SetFileName("/nowhere/shop.vdb");
  ExpectRaised(zErrors{15046}, [&] { file_->RequireFile(); },
               {.Text = "Database: ''  Filename: '/nowhere/shop.vdb'", .Count = 1});
}

TEST_F(DataFileTest, AMissingFileOfNobodyIsReportedAsADatabases) {
  file_->SetFileName("/nowhere/sales.vsd");
  ExpectRaised(zErrors{15046}, [&] { file_->RequireFile(); }, {.Text = "Filename: '/nowhere/sales.vsd'"});
}

TEST_F(DataFileTest, DetailsTellWhoseFileItIsWithoutAQuoteBehindItsName) {
  file_->SetFileName("/data/sales.vsd");
  file_->SetServerName("Sales");
  EXPECT_EQ(file_->Details(),
            "Server Definition File for 'Sales'  Filename: '/data/sales.vsd  FileNumber: 0  Backup Suffix: 'vsz'");
  file_->SetIsNew(true);
  file_->SetDatabaseName("Shop");
  EXPECT_EQ(file_->Details(),
            "New Database Definition File for 'Shop'  Filename: '/data/sales.vsd  FileNumber: 0  Backup Suffix: 'vdz'");
}

TEST_F(DataFileTest, TheNameOfOneOwnerTakesThatOfTheOtherAway) {
  file_->SetDatabaseName("Shop");
  file_->SetServerName("Sales");
  EXPECT_NE(file_->Details().find("Server Definition File for 'Sales'"), std::string::npos);
  file_->SetDatabaseName("Shop");
  EXPECT_NE(file_->Details().find("Database Definition File for 'Shop'"), std::string::npos);
}

}  // namespace
}  // namespace velmoria::test

#include "velmoria/design/root_data.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/temporary_folder.h"

namespace velmoria::test {
namespace {

struct ServerRoot : ServerSample {
  static constexpr zErrors MissingInfo{15081};
  static constexpr zErrors CannotRead{15043};
  static ServersPtr Registered() { return Apartment().Servers; }
};

struct DatabaseRoot : DatabaseSample {
  static constexpr zErrors MissingInfo{15080};
  static constexpr zErrors CannotRead{15042};
  static DatabasesPtr Registered() { return Apartment().Databases; }
};

/// What holds for Servers and for Databases, each the root of a definition file.
template <class Root>
class RootDataTest : public testing::Test {
 protected:
  using Facade = typename Root::Kind::Facade;

  auto Add(const std::string& name, const std::string& fileName = {}) {
    return roots_->SetupItem({.Name = name, .FileName = fileName});
  }
  /// A file of 1997 that holds "kept".
  std::string FileOf1997() const {
    const auto path = folder_.Path("file");
    WriteText(path, "kept");
    SetFileTime(path, Date::From(1997, 5, 4));
    return path;
  }

  ScopedApartment apartment_;
  TemporaryFolder folder_;
  Ref<typename Root::Collection> roots_ = Root::Registered();
};

using Roots = testing::Types<ServerRoot, DatabaseRoot>;
TYPED_TEST_SUITE(RootDataTest, Roots);

TYPED_TEST(RootDataTest, WithoutNameAndFileThereIsNotEnoughInformation) {
  ExpectRaised(TypeParam::MissingInfo, [&] { this->Add(""); }, {.Text = "Name: ''  Filename: ''", .Count = 1});
  EXPECT_EQ(this->roots_->Count(), 0);
}

TYPED_TEST(RootDataTest, AMissingFileWithoutANameIsReportedAsADatabases) {
  ExpectRaised(zErrors{15046}, [&] { this->Add("", "/nowhere/file"); },
               {.Text = "Database: ''  Filename: '/nowhere/file'", .Count = 1});
  EXPECT_EQ(this->roots_->Count(), 0);
}

TYPED_TEST(RootDataTest, AnExistingFileWithoutANameIsNotReadAndChangesNothing) {
  const auto path = this->FileOf1997();
  const auto shown = std::string(TypeParam::Kind::Names.Facade) + ": ''  FileName: '" + path + "'";
  ExpectRaised(TypeParam::CannotRead, [&] { this->Add("", path); }, {.Text = shown, .Count = 1});
  EXPECT_EQ(this->roots_->Count(), 0);
  EXPECT_EQ(ReadText(path), "kept");
}

TYPED_TEST(RootDataTest, ANameMakesANewFileEvenWhereOneIs) {
  const auto path = this->FileOf1997();
  const auto root = this->Add("a", path);
  EXPECT_TRUE(root->Dirty());
  EXPECT_EQ(root->DateModified(), Date::From(1997, 5, 4));
  EXPECT_EQ(ReadText(path), "kept");
}

TYPED_TEST(RootDataTest, AFileNameGivenLaterDecidesWhenItWasModified) {
  const auto root = Make<typename TestFixture::Facade>();
  EXPECT_EQ(root->DateModified(), this->apartment_.Clock().Time);
  root->SetFileName(this->FileOf1997());
  EXPECT_EQ(root->DateModified(), Date::From(1997, 5, 4));
}

TYPED_TEST(RootDataTest, WithoutAFileItIsModifiedNow) {
  const auto root = this->Add("a");
  this->apartment_.Clock().Advance(3600);
  EXPECT_EQ(root->DateModified(), this->apartment_.Clock().Time);
  EXPECT_NE(root->DateModified(), root->DateCreated());
}

TYPED_TEST(RootDataTest, TheVersionIsThatOfDefinitionFiles) { EXPECT_EQ(this->Add("a")->Data()->Version(), "1.0-0e"); }

TYPED_TEST(RootDataTest, TheCollectionOfTheFrameworkIsRegisteredAndOthersAreNot) {
  EXPECT_TRUE(this->roots_->Registered());
  EXPECT_FALSE(Make<typename TypeParam::Collection>()->Registered());
}

TYPED_TEST(RootDataTest, ANameSetDirectlyLeavesTheOldKey) {
  const auto root = this->Add("a");
  root->SetName("b");
  EXPECT_EQ(root->Name(), "b");
  EXPECT_EQ(this->roots_->Item("a"), root);
  ExpectRaised(TypeParam::Raises.Finding, [&] { this->roots_->Item("b"); }, {.Text = "Index: 'b'"});
}

TYPED_TEST(RootDataTest, OneWithANameSetDirectlyIsRemovedByItsKey) {
  this->Add("a")->SetName("b");
  this->roots_->Remove("a");
  EXPECT_EQ(this->roots_->Count(), 0);
}

TYPED_TEST(RootDataTest, ACopyHasAFileOfItsOwnWithoutPlace) {
  const auto root = this->Add("a", "/data/file");
  EXPECT_EQ(root->Copy("b")->FileName(), "");
  EXPECT_EQ(root->FileName(), "/data/file");
}

TYPED_TEST(RootDataTest, ACopyNeedsANameFromSomewhereForTheFileIsNotCopied) {
  const auto nameless = Make<typename TestFixture::Facade>();
  nameless->SetFileName("/data/file");
  ExpectRaised(TypeParam::MissingInfo, [&] { nameless->Copy(); }, {.Text = "Name: ''  Filename: ''", .Count = 1});
  EXPECT_EQ(nameless->Copy("a")->Name(), "a");
}

}  // namespace
}  // namespace velmoria::test

#include "velmoria/runtime/error.h"

#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_failure.h"

namespace velmoria {
namespace {

TEST(ErrorTest, KeepsWhatItIsMadeOf) {
  const Error error(ErrorBase + 15002, "This property is locked", "velmoria.hlp", 12);
  EXPECT_EQ(error.Number(), ErrorBase + 15002);
  EXPECT_EQ(error.Description(), "This property is locked");
  EXPECT_EQ(error.HelpFile(), "velmoria.hlp");
  EXPECT_EQ(error.HelpContext(), 12);
  EXPECT_STREQ(error.what(), "This property is locked");
}

TEST(ErrorTest, CatalogueNumberIsKnownFromFirstToLastOnly) {
  EXPECT_EQ(Error(ErrorBase + 15000, "").CatalogueNumber(), 15000);
  EXPECT_EQ(Error(ErrorBase + 15180, "").CatalogueNumber(), 15180);
  EXPECT_EQ(Error(ErrorBase + 14999, "").CatalogueNumber(), 0);
  EXPECT_EQ(Error(ErrorBase + 15181, "").CatalogueNumber(), 0);
  EXPECT_EQ(Error(13, "").CatalogueNumber(), 0);
  EXPECT_EQ(Error(15000, "").CatalogueNumber(), 0);
}

TEST(ErrorTest, ErrorBaseIsTheDocumentedOne) { EXPECT_EQ(static_cast<std::uint32_t>(ErrorBase), 0x80040000U); }

TEST(ErrorTest, EachFailureHasItsUsualText) {
  const struct {
    int Number;
    const char* Text;
  } rows[] = {{5, "Invalid procedure call or argument"},
              {6, "Overflow"},
              {9, "Subscript out of range"},
              {11, "Division by zero"},
              {13, "Type mismatch"},
              {52, "Bad file name or number"},
              {53, "File not found"},
              {55, "File already open"},
              {57, "Device I/O error"},
              {58, "File already exists"},
              {61, "Disk full"},
              {62, "Input past end of file"},
              {70, "Permission denied"},
              {75, "Path/File access error"},
              {76, "Path not found"},
              {91, "Object not set"},
              {94, "Invalid use of Null"},
              {429, "Component can't create object"},
              {438, "Object has no such member"},
              {457, "This key is already in use in this collection"},
              {3021, "No current record"},
              {3022, "A row with this key exists already"},
              {3265, "Item not found in this collection"},
              {40002, "The database driver reported a failure"},
              {1, "Unknown failure"}};
  for (const auto& row : rows) EXPECT_STREQ(RuntimeFailureText(static_cast<RuntimeFailure>(row.Number)), row.Text);
}

TEST(ErrorTest, ACopyKeepsItsOwnText) {
  std::unique_ptr<Error> first = std::make_unique<Error>(13, "a text too long to be held inside");
  const Error copy(*first);
  first.reset();
  EXPECT_STREQ(copy.what(), "a text too long to be held inside");
  EXPECT_EQ(copy.HelpFile(), "");
  EXPECT_EQ(copy.HelpContext(), 0);
}

TEST(ErrorTest, NumbersAtTheEndsOfTheirTypeAreNoCatalogueNumbers) {
  EXPECT_EQ(Error(std::numeric_limits<std::int32_t>::max(), "").CatalogueNumber(), 0);
  EXPECT_EQ(Error(std::numeric_limits<std::int32_t>::min(), "").CatalogueNumber(), 0);
  EXPECT_EQ(Error(ErrorBase, "").CatalogueNumber(), 0);
}

TEST(ErrorTest, FailUsesTheUsualText) {
  ExpectRuntimeFailure(RuntimeFailure::FileNotFound, "File not found", [] { Fail(RuntimeFailure::FileNotFound); });
}

TEST(ErrorTest, FailTakesAnotherTextWhenGiven) {
  ExpectRuntimeFailure(RuntimeFailure::DriverFailure, "08001: no server",
                       [] { Fail(RuntimeFailure::DriverFailure, "08001: no server"); });
}

}  // namespace
}  // namespace velmoria

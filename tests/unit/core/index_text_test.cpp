#include <gtest/gtest.h>

#include "velmoria/core/index_text_impl.h"

namespace velmoria::test {
namespace {

TEST(IndexTextTest, ANumberShowsPlainATextInQuotesAnythingElseItsType) {
  EXPECT_EQ(IndexText(3), "3");
  EXPECT_EQ(IndexText("Load"), "'Load'");
  EXPECT_EQ(IndexText(Variant::Null()), "(Null)");
  EXPECT_EQ(IndexText(Ref<Object>()), "(Nothing)");
}

TEST(IndexTextTest, ABooleanIsANumberOnlyWhereItIsSaid) {
  EXPECT_EQ(IndexText(true), "(Boolean)");
  EXPECT_EQ(IndexText(true, AnyNumberOrBoolean), "True");
}

TEST(IndexTextTest, AClassWithOtherNumberTypesShowsTheRestByType) {
  EXPECT_EQ(IndexText(1.5, {VarType::Integer, VarType::Long}), "(Double)");
  EXPECT_EQ(IndexText(std::int16_t{2}, {VarType::Integer, VarType::Long}), "2");
}

TEST(IndexTextTest, TheQuotingFormPutsTheTypeInQuotes) {
  EXPECT_EQ(QuotingIndexText(3), "3");
  EXPECT_EQ(QuotingIndexText("Load"), "'Load'");
  EXPECT_EQ(QuotingIndexText(Variant::Null()), "'Null'");
}

TEST(IndexTextTest, APlaceThatIsNotGivenSaysWhy) {
  EXPECT_EQ(PlaceText(Variant::Missing()), "(Missing)");
  EXPECT_EQ(PlaceText(Variant()), "(Empty)");
  EXPECT_EQ(PlaceText(2), "2");
  EXPECT_EQ(PlaceText("Load"), "Load");
}

TEST(IndexTextTest, APlaceThatIsNoPlaceShowsItsType) {
  EXPECT_EQ(PlaceText(Variant::Null()), "(Null)");
  EXPECT_EQ(PlaceText(Ref<Object>()), "(Nothing)");
  EXPECT_EQ(PlaceText(Date{1}), "(Date)");
}

TEST(IndexTextTest, BothPlacesOfAnAdditionStandInQuotes) {
  const auto texts = AddTexts("Load", {.Before = 1});
  EXPECT_EQ(texts.Replace1, "Load");
  EXPECT_EQ(texts.Replace2, "'1'");
  EXPECT_EQ(texts.Replace3, "'(Missing)'");
}

}  // namespace
}  // namespace velmoria::test

#include "velmoria/runtime/variant.h"

#include <string>
#include <thread>
#include <type_traits>

#include <gtest/gtest.h>

namespace velmoria {
namespace {

class Counted : public Object {
 public:
  explicit Counted(int& alive) : alive_(alive) { ++alive_; }
  ~Counted() override { --alive_; }
  std::string_view ReportedType() const noexcept override { return "Counted"; }

 private:
  int& alive_;
};

class Other : public Object {};

static_assert(!std::is_constructible_v<Variant, void*>);
static_assert(!std::is_constructible_v<Variant, Counted*>);
static_assert(!std::is_constructible_v<Variant, std::nullptr_t>);
static_assert(!std::is_constructible_v<Variant, long long>);
static_assert(!std::is_constructible_v<Variant, unsigned int>);
static_assert(!std::is_constructible_v<Variant, char>);
static_assert(std::is_nothrow_move_constructible_v<Variant>);
static_assert(std::is_nothrow_copy_constructible_v<Variant>);

TEST(VariantTest, ATextWithoutAnAddressIsEmpty) {
  const Variant text{std::string_view()};
  EXPECT_TRUE(text.IsText());
  EXPECT_EQ(text.AsText(), "");
}

TEST(VariantTest, EachValueHasItsTypeCodeAndName) {
  int alive = 0;
  const struct {
    Variant Value;
    int Code;
    const char* Name;
  } rows[] = {{Variant(), 0, "Empty"},
              {Variant::Null(), 1, "Null"},
              {std::int16_t{1}, 2, "Integer"},
              {1, 3, "Long"},
              {1.5F, 4, "Single"},
              {1.5, 5, "Double"},
              {Currency{15000}, 6, "Currency"},
              {Date{1}, 7, "Date"},
              {"x", 8, "String"},
              {std::string("y"), 8, "String"},
              {Make<Counted>(alive), 9, "Counted"},
              {Make<Other>(), 9, "Object"},
              {Ref<Counted>(), 9, "Nothing"},
              {Variant::Missing(), 10, "Error"},
              {true, 11, "Boolean"},
              {Decimal::From(1.5), 14, "Decimal"},
              {Byte{1}, 17, "Byte"},
              {std::vector<Byte>{1}, 8209, "Byte()"},
              {Variant::Array(0, 1), 8204, "Variant()"},
              {Variant::Array(0, 1, VarType::Integer), 8194, "Integer()"},
              {Variant::Array(0, 1, VarType::Long), 8195, "Long()"},
              {Variant::Array(0, 1, VarType::Single), 8196, "Single()"},
              {Variant::Array(0, 1, VarType::Double), 8197, "Double()"},
              {Variant::Array(0, 1, VarType::Currency), 8198, "Currency()"},
              {Variant::Array(0, 1, VarType::Date), 8199, "Date()"},
              {Variant::Array(0, 1, VarType::String), 8200, "String()"},
              {Variant::Array(0, 1, VarType::Object), 8201, "Object()"},
              {Variant::Array(0, 1, VarType::Boolean), 8203, "Boolean()"},
              {Variant::Array(0, 1, VarType::Decimal), 8206, "Decimal()"},
              {Variant::Array2(1, 1), 8204, "Variant()"}};
  for (const auto& row : rows) {
    EXPECT_EQ(static_cast<int>(row.Value.Type()), row.Code) << row.Name;
    EXPECT_EQ(row.Value.TypeName(), row.Name);
  }
}

TEST(VariantTest, EmptyNullAndMissingAreToldApart) {
  EXPECT_TRUE(Variant().IsEmpty());
  EXPECT_TRUE(Variant::Null().IsNull());
  EXPECT_TRUE(Variant::Missing().IsMissing());
  EXPECT_FALSE(Variant().IsGiven());
  EXPECT_FALSE(Variant::Missing().IsGiven());
  EXPECT_TRUE(Variant::Null().IsGiven());
  EXPECT_TRUE(Variant("").IsGiven());
}

TEST(VariantTest, NumbersAreTheNumericTypesAndBoolean) {
  for (const Variant& number : {Variant(std::int16_t{1}), Variant(1), Variant(1.0F), Variant(1.0), Variant(Currency{1}),
                                Variant(Decimal{}), Variant(Byte{1}), Variant(false)}) {
    EXPECT_TRUE(number.IsNumber()) << number.TypeName();
  }
  for (const Variant& other : {Variant(), Variant::Null(), Variant::Missing(), Variant("1"), Variant(Date{1}),
                               Variant(Ref<Other>()), Variant::Array(0, 0, VarType::Integer)}) {
    EXPECT_FALSE(other.IsNumber()) << other.TypeName();
  }
}

TEST(VariantTest, TextsOfEveryLengthComeBack) {
  for (std::size_t length = 0; length <= 40; ++length) {
    const std::string text(length, static_cast<char>('a' + length % 26));
    const Variant value(text);
    Variant copy;
    copy = value;
    EXPECT_EQ(value.TextView(), text);
    EXPECT_EQ(copy.AsText(), text);
  }
}

TEST(VariantTest, TextsMayHoldZeroBytes) {
  const std::string text("a\0b", 3);
  EXPECT_EQ(Variant(text).AsText(), text);
}

TEST(VariantTest, CopiesOfALongTextShareIt) {
  const Variant value("a text too long to be held inside");
  Variant copy;
  copy = value;
  EXPECT_EQ(copy.TextView().data(), value.TextView().data());
}

TEST(VariantTest, OnlyAStringHasATextView) {
  EXPECT_EQ(Variant(12).TextView(), "");
  EXPECT_EQ(Variant::Array(0, 3).TextView(), "");
}

TEST(VariantTest, MovingLeavesEmptyBehind) {
  for (Variant value :
       {Variant("short"), Variant("a text too long to be held inside"), Variant(5), Variant::Array(1, 2)}) {
    const Variant kept = value;
    const Variant moved = std::move(value);
    EXPECT_EQ(moved, kept);
    EXPECT_TRUE(value.IsEmpty());  // NOLINT: what is left is the point
  }
}

TEST(VariantTest, AssignmentReplacesWhateverWasHeld) {
  int alive = 0;
  Variant value = Make<Counted>(alive);
  value = Variant("a text too long to be held inside");
  EXPECT_EQ(alive, 0);
  const Variant& same = value;
  value = same;
  EXPECT_EQ(value.AsText(), "a text too long to be held inside");
  value = 3.5;
  EXPECT_EQ(value.AsDouble(), 3.5);
  value = Variant::Null();
  EXPECT_TRUE(value.IsNull());
}

TEST(VariantTest, AnObjectLivesInEveryCopy) {
  int alive = 0;
  Variant value = Make<Counted>(alive);
  {
    const Variant copy = value;
    value = Variant();
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(copy.AsObject<Counted>().get(), copy.ObjectPointer());
  }
  EXPECT_EQ(alive, 0);
}

TEST(VariantTest, AnObjectLivesInTheArraysThatHoldIt) {
  int alive = 0;
  {
    Variant array = Variant::Array(0, 1, VarType::Object);
    array.SetElement(1, Make<Counted>(alive));
    const Variant copy = array;
    array = Variant();
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(copy.Element(1).TypeName(), "Counted");
  }
  EXPECT_EQ(alive, 0);
}

TEST(VariantTest, AssigningAValueToItselfKeepsIt) {
  for (Variant value : {Variant("a text too long to be held inside"), Variant::Array(1, 2), Variant("short")}) {
    const Variant kept = value;
    Variant& same = value;
    value = same;
    EXPECT_EQ(value, kept);
    value = std::move(same);
    EXPECT_EQ(value, kept);
  }
}

TEST(VariantTest, AnObjectOfAnotherClassGivesNone) {
  int alive = 0;
  EXPECT_FALSE(Variant(Make<Counted>(alive)).AsObject<Other>());
  EXPECT_FALSE(Variant(Ref<Counted>()).AsObject<Counted>());
  EXPECT_FALSE(Variant(7).AsObject<Counted>());
  EXPECT_EQ(Variant("x").ObjectPointer(), nullptr);
}

TEST(VariantTest, AMemberMayReachItsHolderWhileItEnds) {
  struct Watcher : Object {
    Variant* Holder = nullptr;
    bool* SawEmpty = nullptr;
    ~Watcher() override { *SawEmpty = Holder->IsEmpty(); }
  };
  Variant holder;
  bool sawEmpty = false;
  const auto watcher = Make<Watcher>();
  watcher->Holder = &holder;
  watcher->SawEmpty = &sawEmpty;
  holder = watcher;
  const_cast<Ref<Watcher>&>(watcher).reset();
  holder = Variant();
  EXPECT_TRUE(sawEmpty);
}

TEST(VariantTest, TextsAndArraysMayPassBetweenThreads) {
  Variant text("a text too long to be held inside");
  Variant array = Variant::ArrayOfValues({1, text});
  std::thread other([text, array] {
    for (int i = 0; i < 20000; ++i) {
      const Variant copies[] = {text, array};
      if (copies[0].TextView().empty()) FAIL();
    }
  });
  for (int i = 0; i < 20000; ++i) {
    const Variant copies[] = {text, array};
    ASSERT_FALSE(copies[0].TextView().empty());
  }
  other.join();
  EXPECT_EQ(array.Element(1), text);
}

}  // namespace
}  // namespace velmoria

#include "velmoria/runtime/object.h"

#include <thread>

#include <gtest/gtest.h>

#include "velmoria/runtime/variant.h"

namespace velmoria {
namespace {

class Counted : public virtual Object {
 public:
  explicit Counted(int& alive) : alive_(alive) { ++alive_; }
  ~Counted() override { --alive_; }
  std::string_view ReportedType() const noexcept override { return "Counted"; }

 private:
  int& alive_;
};

class Face : public virtual Object {};
class TwoFaced : public Face, public Counted {
 public:
  using Counted::Counted;
};

class Plain : public Object {};

TEST(ObjectTest, LivesAsLongAsSomebodyHoldsIt) {
  int alive = 0;
  auto first = Make<Counted>(alive);
  const Ref<Counted> second = first;
  first.reset();
  EXPECT_EQ(alive, 1);
  EXPECT_EQ(second->ReportedType(), "Counted");
}

TEST(ObjectTest, EndsWithTheLastHandle) {
  int alive = 0;
  Make<Counted>(alive);
  EXPECT_EQ(alive, 0);
}

TEST(ObjectTest, IsOneObjectBehindAllItsFaces) {
  int alive = 0;
  Ref<Face> face = Make<TwoFaced>(alive);
  const Ref<Counted> counted(dynamic_cast<Counted*>(face.get()));
  face.reset();
  EXPECT_EQ(alive, 1);
}

TEST(ObjectTest, ReportsItselfAsObjectUnlessItHasAName) { EXPECT_EQ(Make<Plain>()->ReportedType(), "Object"); }

TEST(ObjectDeathTest, AnotherThreadMayNotTouchAnObject) {
#if defined(NDEBUG) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "Does not apply: only a plain debug build asserts it";
#endif
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto object = Make<Plain>();
  EXPECT_DEATH(std::thread([&] { Variant(object).ObjectPointer(); }).join(), "ThisApartmentNumber");
}

TEST(ObjectTest, EachThreadIsAnApartmentWithANumberOfItsOwn) {
  const std::uint32_t mine = ThisApartmentNumber();
  std::uint32_t other = 0;
  std::thread([&] { other = ThisApartmentNumber(); }).join();
  EXPECT_NE(mine, 0U);
  EXPECT_NE(other, 0U);
  EXPECT_NE(mine, other);
  EXPECT_EQ(ThisApartmentNumber(), mine);
}

}  // namespace
}  // namespace velmoria

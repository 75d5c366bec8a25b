#include "velmoria/runtime/keyed_list.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_failure.h"

namespace velmoria {
namespace {

constexpr const char* kKeyInUse = "This key is already in use in this collection";

KeyedList<int> ThreeMembers() {
  KeyedList<int> list;
  list.Add(10, "One");
  list.Add(20, "Two");
  list.Add(30, "Three");
  return list;
}

std::string Shown(const KeyedList<int>& list) {
  std::string text;
  for (std::size_t position = 1; position <= list.Count(); ++position) {
    text += std::string(list.KeyAt(position)) + "=" + std::to_string(list.At(position)) + " ";
  }
  return text;
}

// Every member is found under its key at its position.
void ExpectConsistent(const KeyedList<int>& list) {
  for (std::size_t position = 1; position <= list.Count(); ++position) {
    if (list.KeyAt(position).empty()) continue;
    EXPECT_EQ(list.PositionOf(list.KeyAt(position)), position);
  }
}

TEST(KeyedListTest, KeepsInsertionOrderFromPositionOne) {
  const auto list = ThreeMembers();
  EXPECT_EQ(Shown(list), "One=10 Two=20 Three=30 ");
  EXPECT_EQ(list.Count(), 3U);
  EXPECT_FALSE(list.IsEmpty());
}

TEST(KeyedListTest, KeysAreComparedWithoutRegardToCase) {
  const auto list = ThreeMembers();
  EXPECT_EQ(*list.FindKey("tWO"), 20);
  EXPECT_EQ(list.PositionOf("THREE"), 3U);
  EXPECT_EQ(list.At(Variant("one")), 10);
}

TEST(KeyedListTest, GetGivesAnEmptyValueForWhatIsNotThere) {
  const auto list = ThreeMembers();
  EXPECT_EQ(list.Get("Two"), 20);
  EXPECT_EQ(list.Get(3), 30);
  EXPECT_EQ(list.Get("Four"), 0);
  EXPECT_EQ(list.Get(4), 0);
  EXPECT_EQ(list.Get(Variant()), 0);
}

TEST(KeyedListTest, LettersOfOtherAlphabetsAreFoldedToo) {
  KeyedList<int> list;
  list.Add(1, "Größe");
  list.Add(2, "Ναι");
  list.Add(3, "ДАТА");
  list.Add(4, "été");
  EXPECT_EQ(list.PositionOf("GRÖßE"), 1U);
  EXPECT_EQ(list.PositionOf("ΝΑΙ"), 2U);
  EXPECT_EQ(list.PositionOf("дата"), 3U);
  EXPECT_EQ(list.PositionOf("ÉTÉ"), 4U);
  EXPECT_EQ(list.PositionOf("ete"), 0U);
  ExpectRuntimeFailure(RuntimeFailure::KeyInUse, kKeyInUse, [&] { list.Add(5, "Été"); });
  EXPECT_TRUE(list.RemoveKey("größe"));
  ExpectConsistent(list);
}

TEST(KeyedListTest, KeysThatBeginAlikeAreDifferent) {
  KeyedList<int> list;
  list.Add(1, "Id");
  list.Add(2, "Id ");
  list.Add(3, "I");
  EXPECT_EQ(list.PositionOf("id"), 1U);
  EXPECT_EQ(list.PositionOf("ID "), 2U);
  EXPECT_EQ(list.PositionOf("i"), 3U);
}

TEST(KeyedListTest, AGuessChangesNoPosition) {
  KeyedList<int> list;
  for (int number = 1; number <= 9; ++number) list.Add(number, "Name" + std::to_string(number));
  list.Insert(4, 0);  // without a key
  for (std::size_t guess = 0; guess <= list.Count() + 1; ++guess) {
    EXPECT_EQ(list.PositionOf(Variant("NAME3"), guess), 3U) << guess;
    EXPECT_EQ(list.PositionOf(Variant("name4"), guess), 5U) << guess;
    EXPECT_EQ(list.PositionOf(Variant(""), guess), 0U) << guess;
    EXPECT_EQ(list.PositionOf(Variant("Name"), guess), 0U) << guess;
    EXPECT_EQ(list.PositionOf(Variant(4), guess), 4U) << guess;
  }
}

TEST(KeyedListTest, FindGivesNoneForWhatIsNotThere) {
  const auto list = ThreeMembers();
  EXPECT_EQ(list.FindAt(0), nullptr);
  EXPECT_EQ(list.FindAt(4), nullptr);
  EXPECT_EQ(list.FindAt(-1), nullptr);
  EXPECT_EQ(list.FindKey("Four"), nullptr);
  EXPECT_EQ(list.FindKey(""), nullptr);
  EXPECT_EQ(list.PositionOf("Four"), 0U);
  EXPECT_EQ(KeyedList<int>().FindKey("One"), nullptr);
}

TEST(KeyedListTest, ANumberOfAnyTypeIsAPosition) {
  const auto list = ThreeMembers();
  const Variant positions[] = {std::int16_t{2}, 2, Byte{2}, 2.0, 2.4F, 2.5, 1.6, Currency{20000}, Decimal::From(2.0)};
  for (const Variant& position : positions) {
    EXPECT_EQ(list.PositionOf(position), 2U) << position.TypeName();
    EXPECT_EQ(list.At(position), 20);
  }
}

TEST(KeyedListTest, AnIndexThatIsNeitherFindsNothing) {
  const auto list = ThreeMembers();
  const Variant indexes[] = {Variant(), Variant::Null(), Variant::Missing(),  Date{2},
                             true,      1e300,           std::vector<Byte>{2}};
  for (const Variant& index : indexes) {
    EXPECT_EQ(list.Find(index), nullptr) << index.TypeName();
    EXPECT_EQ(list.PositionOf(index), 0U);
  }
}

TEST(KeyedListTest, ATextOfDigitsIsAKeyNotAPosition) {
  auto list = ThreeMembers();
  EXPECT_EQ(list.Find(Variant("2")), nullptr);
  list.Add(40, "2");
  EXPECT_EQ(*list.Find(Variant("2")), 40);
}

TEST(KeyedListTest, AMissingPositionRaises9) {
  const auto list = ThreeMembers();
  ExpectSubscriptOutOfRange([&] { list.At(4); });
  ExpectSubscriptOutOfRange([&] { list.At(Variant(0)); });
  ExpectSubscriptOutOfRange([&] { list.KeyAt(4); });
}

TEST(KeyedListTest, AMissingKeyRaises5) {
  const auto list = ThreeMembers();
  ExpectInvalidArgument([&] { list.At(Variant("Four")); });
}

TEST(KeyedListTest, AnIndexThatIsNeitherRaises13) {
  const auto list = ThreeMembers();
  ExpectTypeMismatch([&] { list.At(Variant::Missing()); });
}

TEST(KeyedListTest, ADuplicateKeyRaises457AndChangesNothing) {
  auto list = ThreeMembers();
  ExpectRuntimeFailure(RuntimeFailure::KeyInUse, kKeyInUse, [&] { list.Add(99, "ONE"); });
  ExpectRuntimeFailure(RuntimeFailure::KeyInUse, kKeyInUse, [&] { list.Insert(1, 99, "two"); });
  ExpectRuntimeFailure(RuntimeFailure::KeyInUse, kKeyInUse, [&] { list.Rename(1, "THREE"); });
  EXPECT_EQ(Shown(list), "One=10 Two=20 Three=30 ");
  ExpectConsistent(list);
}

TEST(KeyedListTest, InsertPutsTheMemberAtThatPosition) {
  auto list = ThreeMembers();
  list.Insert(1, 5, "Zero");
  list.Insert(3, 15, "OneAndAHalf");
  list.Insert(6, 40, "Four");
  EXPECT_EQ(Shown(list), "Zero=5 One=10 OneAndAHalf=15 Two=20 Three=30 Four=40 ");
  ExpectConsistent(list);
}

TEST(KeyedListTest, InsertBeyondTheEndRaises9) {
  auto list = ThreeMembers();
  ExpectSubscriptOutOfRange([&] { list.Insert(5, 1, "x"); });
  ExpectSubscriptOutOfRange([&] { list.Insert(0, 1); });
  EXPECT_EQ(list.Count(), 3U);
  EXPECT_EQ(list.PositionOf("x"), 0U);
}

TEST(KeyedListTest, MembersMayHaveNoKey) {
  KeyedList<int> list;
  list.Add(1);
  list.Add(2, "");
  list.Insert(1, 3);
  EXPECT_EQ(Shown(list), "=3 =1 =2 ");
  EXPECT_EQ(list.PositionOf(""), 3U);
  ExpectRuntimeFailure(RuntimeFailure::KeyInUse, kKeyInUse, [&] { list.Add(4, ""); });
}

TEST(KeyedListTest, MembersWithoutAKeyComeAndGoBesideKeyedOnes) {
  KeyedList<int> list;
  list.Add(1, "a");
  list.Insert(1, 2);
  list.Add(3, "b");
  list.RemoveAt(1);
  EXPECT_EQ(Shown(list), "a=1 b=3 ");
  ExpectConsistent(list);
}

TEST(KeyedListTest, RemovalFromAnEmptyListFindsNothing) {
  KeyedList<int> list;
  EXPECT_FALSE(list.RemoveKey("a"));
  ExpectSubscriptOutOfRange([&] { list.RemoveAt(1); });
  ExpectSubscriptOutOfRange([&] { list.RemoveAt(0); });
}

TEST(KeyedListTest, RemovalClosesTheGap) {
  auto list = ThreeMembers();
  list.RemoveAt(1);
  EXPECT_EQ(Shown(list), "Two=20 Three=30 ");
  EXPECT_EQ(list.PositionOf("One"), 0U);
  ExpectConsistent(list);
  EXPECT_TRUE(list.RemoveKey("THREE"));
  EXPECT_FALSE(list.RemoveKey("THREE"));
  EXPECT_EQ(Shown(list), "Two=20 ");
  ExpectSubscriptOutOfRange([&] { list.RemoveAt(2); });
}

TEST(KeyedListTest, ARemovedKeyIsFreeAgain) {
  auto list = ThreeMembers();
  list.RemoveKey("Two");
  list.Add(21, "two");
  EXPECT_EQ(Shown(list), "One=10 Three=30 two=21 ");
  ExpectConsistent(list);
}

TEST(KeyedListTest, RenameKeepsThePosition) {
  auto list = ThreeMembers();
  list.Rename(2, "Second");
  EXPECT_EQ(Shown(list), "One=10 Second=20 Three=30 ");
  EXPECT_EQ(list.PositionOf("Two"), 0U);
  ExpectConsistent(list);
  ExpectSubscriptOutOfRange([&] { list.Rename(4, "x"); });
}

TEST(KeyedListTest, RenameToSameKeyInOtherCaseSucceeds) {
  auto list = ThreeMembers();
  list.Rename(2, "TWO");
  EXPECT_EQ(list.KeyAt(2), "TWO");
  EXPECT_EQ(list.PositionOf("two"), 2U);
}

TEST(KeyedListTest, RenameGivesAKeyToAMemberWithoutOne) {
  KeyedList<int> list;
  list.Add(1);
  list.Rename(1, "New");
  EXPECT_EQ(list.PositionOf("new"), 1U);
}

TEST(KeyedListTest, ClearForgetsMembersAndKeys) {
  auto list = ThreeMembers();
  list.Clear();
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.PositionOf("One"), 0U);
  list.Add(11, "One");
  EXPECT_EQ(Shown(list), "One=11 ");
}

TEST(KeyedListTest, TheEnumeratorWalksInOrder) {
  const auto list = ThreeMembers();
  std::string seen;
  for (const int member : list) seen += std::to_string(member) + " ";
  EXPECT_EQ(seen, "10 20 30 ");
  for (const int member : KeyedList<int>()) FAIL() << member;
}

TEST(KeyedListTest, TheEnumeratorStepsEitherWayAndReachesInside) {
  KeyedList<std::string> list;
  list.Add("ab", "1");
  list.Add("c", "2");
  auto next = list.begin();
  EXPECT_EQ(next->size(), 2U);
  EXPECT_EQ(*next++, "ab");
  EXPECT_EQ(*next, "c");
  EXPECT_EQ(++next, list.end());
}

TEST(KeyedListTest, MembersThatOnlyMoveAreWelcome) {
  KeyedList<std::unique_ptr<int>> list;
  list.Add(std::make_unique<int>(2), "b");
  list.Insert(1, std::make_unique<int>(1), "a");
  EXPECT_EQ(**list.FindKey("B"), 2);
  list.RemoveAt(1);
  EXPECT_EQ(**list.FindAt(1), 2);
}

TEST(KeyedListTest, AMemberMayLookAtTheListWhileItEnds) {
  struct Member {
    KeyedList<std::shared_ptr<Member>>* List;
    std::size_t* Seen;
    ~Member() { *Seen = List->Count() + 100 * List->PositionOf("b"); }
  };
  KeyedList<std::shared_ptr<Member>> list;
  std::size_t seen = 0;
  std::size_t ignored = 0;
  list.Add(std::make_shared<Member>(&list, &seen), "a");
  list.Add(std::make_shared<Member>(&list, &ignored), "b");
  list.RemoveAt(1);
  EXPECT_EQ(seen, 101U);
  list.Clear();
}

TEST(KeyedListTest, KeysAreFoundAndRefusedWhetherMembersAreFewOrMany) {
  KeyedList<int> list;
  for (int count = 1; count <= 12; ++count) {
    const std::string key = "Key" + std::to_string(count);
    if (count % 3 == 0) list.Add(-count);
    list.Insert(1, count, key);
    ExpectConsistent(list);
    EXPECT_EQ(list.FindKey("Missing"), nullptr);
    EXPECT_EQ(list.FindKey(""), nullptr);
    ExpectRuntimeFailure(RuntimeFailure::KeyInUse, kKeyInUse, [&] { list.Add(0, key); });
  }
  for (int count = 12; count >= 1; --count) {
    EXPECT_TRUE(list.RemoveKey("KEY" + std::to_string(count)));
    EXPECT_EQ(list.FindKey("Key" + std::to_string(count)), nullptr);
    ExpectConsistent(list);
  }
  EXPECT_EQ(Shown(list), "=-3 =-6 =-9 =-12 ");
}

TEST(KeyedListTest, AKeyGivenByRenameIsFoundWhetherMembersAreFewOrMany) {
  for (int count = 1; count <= 8; ++count) {
    KeyedList<int> list;
    for (int member = 1; member <= count; ++member) list.Add(member);
    list.Rename(1, "First");
    list.Rename(1, "Renamed");
    EXPECT_EQ(list.PositionOf("Renamed"), 1U);
    EXPECT_EQ(list.FindKey("First"), nullptr);
  }
}

TEST(KeyedListTest, ManyMembersStayFindableThroughManyChanges) {
  KeyedList<int> list;
  for (int i = 0; i < 2000; ++i) list.Add(i, "Key" + std::to_string(i));
  for (int i = 0; i < 2000; i += 3) list.RemoveKey("key" + std::to_string(i));
  for (int i = 0; i < 50; ++i) list.Insert(static_cast<std::size_t>(i) * 7 + 1, i, "Inserted" + std::to_string(i));
  for (int i = 0; i < 200; ++i) list.RemoveAt(list.Count());
  for (std::size_t position = 1; position <= 300; ++position)
    list.Rename(position, "Renamed" + std::to_string(position));
  EXPECT_EQ(list.Count(), 2000U - 667 + 50 - 200);
  ExpectConsistent(list);
  EXPECT_EQ(list.FindKey("Key0"), nullptr);
  EXPECT_EQ(list.FindKey("Inserted0"), nullptr);
}

}  // namespace
}  // namespace velmoria

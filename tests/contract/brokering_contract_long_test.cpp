// Long values over the real drivers: read when they are first touched, written by markers, and passed on once.

#include <fstream>

#include "tests/contract/brokering_contract.h"

namespace velmoria::test {
namespace {

class LongContract : public BrokeringContract {
 protected:
  void SetUp() override {
    BrokeringContract::SetUp();
    MakeKinds();
    AddClass("Kind", "kinds");
    auto l = Parameter("l", dtByteArray);
    l.SourceDataType = dtRDOLONGVARCHAR;
    AddAction("Kind", {.Name = "Write", .Text = "INSERT INTO {t}kinds (v, l, x) VALUES ('?', ?, ?)", .Type = stSQL},
              {l, Parameter("x", dtByteArray)});
    AddAction("Kind", {.Name = "Text", .Text = "SELECT * FROM {t}kinds ORDER BY id", .Type = stSQL});
  }
  /// A row with these in its long columns and a "?" in v.
  void Write(const Variant& text, const Variant& bytes) {
    const auto parameters = ActionOf("Kind", "Write")->CreateParameters();
    parameters->Item("l")->SetValue(text);
    parameters->Item("x")->SetValue(bytes);
    Framework{}.CreateBusinessContext()->Execute(
        {.ClassName = "Kind", .ActionName = "Write", .Parameters = parameters});
  }
  /// The ids of the rows that a text gives and a filter of this column leaves.
  static std::string Filtered(const char* column, const std::string& comparison, const Variant& value) {
    const auto filters = Framework{}.CreateProperties();
    filters->SetupItem(
        {.Name = column, .Value = value, .DataType = dtByteArray, .Operator = comparison, .Flags = pfInput});
    return Ids(AgentOf("Kind", "Text", filters)->GetRecordset(0, nullptr, false));
  }
  static Variant Bytes(const std::string& text) { return std::vector<Byte>(text.begin(), text.end()); }
};

/// What the process has in memory, or had at most since it was forgotten, in bytes.
std::int64_t Memory(const std::string& which) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    std::int64_t kilobytes = 0;
    if (word == which + ":" && status >> kilobytes) return kilobytes * 1024;
  }
  return 0;
}
void ForgetMostMemory() { std::ofstream("/proc/self/clear_refs") << "5"; }

TEST_P(LongContract, LongValueIsReadWhenItIsFirstTouchedAndThenKept) {
  Run("INSERT INTO {t}kinds (v, l) VALUES ('a', 'long a')");
  Run("INSERT INTO {t}kinds (v, l) VALUES ('b', 'long b')");
  const auto kinds = All("Kind");
  const auto read = Odbc().Executions();
  EXPECT_EQ(Value(kinds->Item(1), "v"), Variant("a"));
  EXPECT_EQ(Odbc().Executions(), read);
  EXPECT_EQ(Odbc().LongBytes(), 0);
  for (int time = 0; time < 2; ++time) EXPECT_EQ(Value(kinds->Item(2), "l"), Bytes("long b"));
  EXPECT_EQ(Odbc().Executions(), read + 1);
  EXPECT_EQ(Odbc().Texts().back(), Filled("SELECT * FROM {t}kinds WHERE id = 2"));
}

TEST_P(LongContract, NullAndEmptyLongValuesAreEmptyAndAShortOneIsWhole) {
  Run("INSERT INTO {t}kinds (v, l) VALUES ('a', NULL)");
  Run("INSERT INTO {t}kinds (v, l) VALUES ('b', '')");
  Run("INSERT INTO {t}kinds (v, l) VALUES ('c', 'x')");
  EXPECT_TRUE(Value(One("Kind", 1), "l").IsEmpty());
  EXPECT_TRUE(Value(One("Kind", 2), "l").IsEmpty());
  EXPECT_EQ(Value(One("Kind", 3), "l"), Bytes("x"));
}

TEST_P(LongContract, LongValueOfARowThatIsGoneIsEmpty) {
  Run("INSERT INTO {t}kinds (v, l) VALUES ('a', 'long a')");
  const auto kind = One("Kind", 1);
  Run("DELETE FROM {t}kinds");
  EXPECT_TRUE(Value(kind, "l").IsEmpty());
}

TEST_P(LongContract, LongValueOfATableThatIsGoneIsRefused) {
  Run("INSERT INTO {t}kinds (v, l) VALUES ('a', 'long a')");
  const auto kind = One("Kind", 1);
  Run("DROP TABLE {t}kinds");
  ExpectRaised(errRDO_Resultset, [&] { Value(kind, "l"); });
  EXPECT_EQ(Value(kind, "v"), Variant("a"));
}

TEST_P(LongContract, LongValueIsChangedWithTheOthersAndEmptied) {
  Run("INSERT INTO {t}kinds (v, l) VALUES ('a', 'long a')");
  const auto kind = One("Kind", 1);
  Set(kind, "v", "b");
  kind->Update();
  EXPECT_EQ(Odbc().Texts().back(), Filled("UPDATE {t}kinds SET v = 'b' WHERE id = 1"));
  Set(kind, "l", Bytes("other"));
  kind->Update();
  EXPECT_EQ(Value(One("Kind", 1), "l"), Bytes("other"));
  Set(kind, "l", Variant::Null());
  kind->Update();
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}kinds WHERE l IS NULL"), "1");
}

TEST_P(LongContract, BytesOfEveryKindAreWrittenByMarkers) {
  std::vector<Byte> bytes(70'000);
  for (std::size_t place = 0; place < bytes.size(); ++place) bytes[place] = static_cast<Byte>(place);
  const std::string text(300'000, 'y');
  Write(text, bytes);
  const auto kind = One("Kind", 1);
  EXPECT_EQ(Value(kind, "v"), Variant("?"));
  EXPECT_EQ(Value(kind, "x"), Variant(bytes));
  EXPECT_EQ(Value(kind, "l"), Bytes(text));
}

TEST_P(LongContract, FilterComparesLongTextAsTextAndLongBytesWithBytes) {
  const std::string text = std::string(70'000, 'y') + "\xC3\xA9";
  const std::string bytes = std::string(70'000, '\xFF') + '\0';
  Write(text, Bytes(bytes));
  Write("short", Bytes("\x01"));
  for (int more = 3; more <= 100; ++more) Run("INSERT INTO {t}kinds (v) VALUES ('more')");
  Write("short", Bytes("\x01"));
  EXPECT_EQ(Filtered("l", "=", text), "1");
  EXPECT_EQ(Filtered("l", "=", Bytes(text)), "1");
  EXPECT_EQ(Filtered("l", "=", "short"), "2 101");
  EXPECT_EQ(Filtered("l", ">", "short"), "1");
  EXPECT_EQ(Filtered("x", "=", Bytes(bytes)), "1");
  EXPECT_EQ(Filtered("x", "=", Bytes("\x01")), "2 101");
  for (const auto* column : {"l", "x"}) EXPECT_EQ(Filtered(column, "<>", Variant::Null()), "1 2 101") << column;
  ExpectRaised(errRDO_Resultset, [] { Filtered("x", "=", "short"); });
}

// A thread checker keeps several bytes of its own for each byte that is touched.
#if defined(__SANITIZE_THREAD__)
constexpr bool kMeasuresMemory = false;
#else
constexpr bool kMeasuresMemory = true;
#endif

TEST_P(LongContract, LongestValueIsPassedOnOnce) {
  if (!Driver().WhyNothingLong.empty()) GTEST_SKIP() << Driver().WhyNothingLong;
  const auto count = Profile().LongestCount;
  Run("INSERT INTO {t}kinds (v, l) VALUES ('a', " + Replaced(Profile().Repeated, "{count}", std::to_string(count)) +
      ")");
  const auto kind = One("Kind", 1);
  ForgetMostMemory();
  const auto before = Memory("VmRSS");
  const auto value = Value(kind, "l");
  const auto most = Memory("VmHWM") - before;
  EXPECT_EQ(value.Bytes().size(), static_cast<std::size_t>(count));
  // The length is asked for with the first piece, and every piece of a text ends in a zero.
  EXPECT_LT(Odbc().LongBytes(), count + count / 10 + 100'000);
  if (kMeasuresMemory) { EXPECT_LT(most, 6 * std::int64_t{count}) << "the driver's own copies included"; }
}

INSTANTIATE_TEST_SUITE_P(, LongContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test

#include "velmoria/platform/posix/settings_text.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace velmoria::test {
namespace {

using namespace std::string_literals;

constexpr const char* kHeading = "# Written by the program; a backslash starts an escape.\n";

std::string Value(const SettingsText& text, const char* key = "K") {
  const auto* value = text.Find("S", key);
  return value ? *value : "(none)";
}

struct PrintRow {
  std::string Text;
  std::string AsName;
  std::string AsValue;
};

TEST(SettingsTextTest, WhatNamesAndValuesCannotHoldIsEscaped) {
  for (const auto& row :
       {PrintRow{"", "", ""}, PrintRow{"plain text", "plain text", "plain text"},
        PrintRow{" a b ", "\\sa b\\s", "\\sa b\\s"}, PrintRow{" ", "\\s", "\\s"}, PrintRow{"a=b", "a\\=b", "a=b"},
        PrintRow{"[x]", "\\[x\\]", "[x]"}, PrintRow{"#;", "\\#\\;", "#;"}, PrintRow{"c:\\a", "c:\\\\a", "c:\\\\a"},
        PrintRow{"a\r\n\tb", "a\\r\\n\\tb", "a\\r\\n\\tb"},
        PrintRow{"\x01\x1b\x7f\0z"s, "\\x01\\x1b\\x7f\\x00z", "\\x01\\x1b\\x7f\\x00z"},
        PrintRow{"Größe 漢字 🚀", "Größe 漢字 🚀", "Größe 漢字 🚀"},
        PrintRow{"a\xff\xe6\xbc", "a\\xff\\xe6\\xbc", "a\\xff\\xe6\\xbc"}}) {
    SettingsText text;
    text.Set(row.Text, row.Text, row.Text);
    EXPECT_EQ(text.Print(), kHeading + ("\n[" + row.AsName) + "]\n" + row.AsName + "=" + row.AsValue + "\n");
    const SettingsText again(text.Print());
    ASSERT_TRUE(again.Find(row.Text, row.Text)) << row.AsName;
    EXPECT_EQ(*again.Find(row.Text, row.Text), row.Text);
    EXPECT_TRUE(again.DamagedLines().empty()) << row.AsName;
    EXPECT_EQ(again.Print(), text.Print());
  }
}

struct ReadRow {
  const char* Line;
  std::string Value;
};

TEST(SettingsTextTest, ValuesWrittenByHandAreReadAsTheyAreMeant) {
  for (const auto& row :
       {ReadRow{"K=v", "v"}, ReadRow{"  K  =  v  ", "v"}, ReadRow{"\tK\t=\tv\t", "v"}, ReadRow{"k=v", "v"},
        ReadRow{"K=", ""}, ReadRow{"K=   ", ""}, ReadRow{"K==v=", "=v="}, ReadRow{"K=\\s\\s", "  "},
        ReadRow{"K=c:\\VelmoriaMessages.log", "c:\\VelmoriaMessages.log"}, ReadRow{"K=a\\", "a\\"},
        ReadRow{"K=\\x4", "\\x4"}, ReadRow{"K=\\x4g", "\\x4g"}, ReadRow{"K=\\x4A\\x4a", "JJ"},
        ReadRow{"K=\\[\\]\\=\\#\\;\\\\", "[]=#;\\"}, ReadRow{"K=v # no comment", "v # no comment"}}) {
    const SettingsText text("[S]\n"s + row.Line + "\n");
    EXPECT_EQ(Value(text), row.Value) << row.Line;
    EXPECT_TRUE(text.DamagedLines().empty()) << row.Line;
  }
}

struct DamageRow {
  const char* Name;
  std::string Text;
  std::vector<std::size_t> Lines;
  const char* K;
  const char* L = "(none)";
};

TEST(SettingsTextTest, WhatCanBeReadOfADamagedTextIsRead) {
  for (const auto& row :
       {DamageRow{"nothing", "", {}, "(none)"},
        DamageRow{"blank lines", "\n  \n[S]\n\nK=v\n  ", {}, "v"},
        DamageRow{"foreign line ends", "\xEF\xBB\xBF[S]\r\nK=v\r\n; c\r\nL=\r\n", {}, "v", ""},
        DamageRow{"a line without key", "[S]\nK=v\ngarbage\nL=w\n", {3}, "v", "w"},
        DamageRow{"an escaped equals sign only", "[S]\nK\\=v\n", {2}, "(none)"},
        DamageRow{"keys before any section", "K=v\n[S]\nL=w\n", {1}, "(none)", "w"},
        DamageRow{"a key that stands twice", "[S]\nK=v\nk=other\nL=w\n", {3}, "v", "w"},
        DamageRow{"a section without end", "[S]\nK=v\n[T\nL=w\n", {3, 4}, "v"},
        DamageRow{"a section without begin", "[S]\nK=v\nT]\nL=w\n", {3, 4}, "v"},
        DamageRow{"a section with an escaped end", "[S]\nK=v\n[T\\]\nL=w\n", {3, 4}, "v"},
        DamageRow{"text behind a section", "[S] x\nK=v\n", {1}, "v"},
        DamageRow{"a section that is not UTF-8", "[S]\nK=v\n[T\xff]\nL=w\n", {3, 4}, "v"},
        DamageRow{"a value that is not UTF-8", "[S]\nK=Gr\xf6\xdf\x65\nL=w\n", {2}, "(none)", "w"},
        DamageRow{"a value with a NUL", "[S]\nK=a\0b\nL=w\n"s, {2}, "(none)", "w"},
        DamageRow{"a NUL for every byte", "[S]\nK=v\n"s + std::string(20, '\0') + "\nL=w\n", {3}, "v", "w"},
        DamageRow{"cut in a value", "[S]\nK=v\nL=wor", {3}, "v", "wor"},
        DamageRow{"cut in a key", "[S]\nK=v\nL", {3}, "v"},
        DamageRow{"cut in a character", "[S]\nK=v\nL=\xc3", {3}, "v"},
        DamageRow{"cut in a section", "[S]\nK=v\n[Sectio", {3}, "v"},
        DamageRow{"cut in a comment", "[S]\nK=v\n# comm", {3}, "v"},
        DamageRow{"line ends of one carriage return", "[S]\rK=v\r", {1}, "(none)"},
        DamageRow{"UTF-16", "\xff\xfe[\0S\0]\0\n\0K\0=\0v\0\n\0"s, {1, 2, 3}, "(none)"}}) {
    const SettingsText text(row.Text);
    EXPECT_EQ(text.DamagedLines(), row.Lines) << row.Name;
    EXPECT_EQ(Value(text), row.K) << row.Name;
    EXPECT_EQ(Value(text, "L"), row.L) << row.Name;
  }
}

TEST(SettingsTextTest, CommentsStayAtTheHeadOfTheirSection) {
  SettingsText text("# mine\n[S]\nK=v\n; behind\n  # inside \nL=w\n[T]\n#\xff\n");
  text.Set("S", "K", "x");
  EXPECT_EQ(text.Print(), kHeading + "# mine\n\n[S]\n; behind\n# inside\nK=x\nL=w\n\n[T]\n#\xff\n"s);
  EXPECT_EQ(SettingsText(text.Print()).Print(), text.Print());
}

TEST(SettingsTextTest, SectionThatStandsTwiceIsOne) {
  const SettingsText text("[S]\nK=v\n[T]\nK=t\n[s]\nL=w\n");
  EXPECT_EQ(text.Print(), kHeading + "\n[S]\nK=v\nL=w\n\n[T]\nK=t\n"s);
  EXPECT_TRUE(text.DamagedLines().empty());
}

TEST(SettingsTextTest, ReplacedSectionKeepsItsPlaceAndItsComments) {
  SettingsText text("[S]\n# mine\nK=v\n[T]\nK=t\n");
  text.Replace("s", {{"A", "1"}, {"B", "2"}, {"a", "3"}});
  EXPECT_EQ(text.Print(), kHeading + "\n[S]\n# mine\nA=3\nB=2\n\n[T]\nK=t\n"s);
}

TEST(SettingsTextTest, SectionReplacedByNothingStaysIfItWasThere) {
  SettingsText text("[S]\nK=v\n");
  text.Replace("S", {});
  text.Replace("T", {});
  EXPECT_EQ(text.Print(), kHeading + "\n[S]\n"s);
}

TEST(SettingsTextTest, DeletedSectionTakesItsCommentsAlong) {
  SettingsText text("[S]\n# mine\nK=v\n[T]\nK=t\n");
  text.Delete("s");
  text.Delete("Nowhere");
  EXPECT_EQ(text.Print(), kHeading + "\n[T]\nK=t\n"s);
}

TEST(SettingsTextTest, NamesAreComparedWithoutRegardToCaseInEveryAlphabet) {
  SettingsText text;
  text.Set("Größe", "Ключ", "one");
  text.Set("GRÖßE", "КЛЮЧ", "two");
  EXPECT_EQ(text.Print(), kHeading + "\n[Größe]\nКлюч=two\n"s);
}

TEST(SettingsTextTest, BytesThatAreNoTextAreDifferentNames) {
  SettingsText text;
  text.Set("S", "\xfe", "one");
  text.Set("S", "\xff", "two");
  EXPECT_EQ(Value(text, "\xfe"), "one");
  EXPECT_EQ(Value(text, "\xff"), "two");
}

}  // namespace
}  // namespace velmoria::test

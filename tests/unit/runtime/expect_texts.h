#pragma once

#include <span>
#include <string>

#include <gtest/gtest.h>

#include "velmoria/runtime/format.h"

namespace velmoria {

/// A value under a pattern, and the text that it gives.
struct FormatRow {
  Variant Value;
  const char* Pattern;
  const char* Text;
};

inline void ExpectTexts(std::span<const FormatRow> rows) {
  for (const FormatRow& row : rows) {
    EXPECT_EQ(FormatText(row.Value, row.Pattern), row.Text)
        << row.Value.TypeName() << " " << testing::PrintToString(row.Value.AsText()) << " under "
        << testing::PrintToString(row.Pattern);
  }
}

/// Values under one pattern.
struct ValueRow {
  Variant Value;
  const char* Text;
};

inline void ExpectTexts(const char* pattern, std::span<const ValueRow> rows) {
  for (const ValueRow& row : rows) {
    EXPECT_EQ(FormatText(row.Value, pattern), row.Text)
        << row.Value.TypeName() << " " << testing::PrintToString(row.Value.AsText()) << " under "
        << testing::PrintToString(pattern);
  }
}

/// One value under many patterns.
struct PatternRow {
  const char* Pattern;
  const char* Text;
};

inline void ExpectTexts(const Variant& value, std::span<const PatternRow> rows) {
  for (const PatternRow& row : rows) {
    EXPECT_EQ(FormatText(value, row.Pattern), row.Text)
        << testing::PrintToString(value.AsText()) << " under " << testing::PrintToString(row.Pattern);
  }
}

}  // namespace velmoria

#include <array>
#include <span>
#include <string_view>

#include "velmoria/core/type_codes.h"
#include "velmoria/data/sql_clauses_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"
#include "velmoria/runtime/utf8_impl.h"

namespace velmoria::sql {

namespace {

// Windows-1252 at 0x80 to 0x9F; everywhere else a code is its own character.
constexpr std::array<std::uint16_t, 32> kWindows1252At80 = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

void AppendCharacter(std::string& text, Byte code) {
  AppendUtf8(text, code >= 0x80 && code <= 0x9F ? kWindows1252At80[code - 0x80U] : code);
}

// A long value is not moved for what follows it.
void MakeRoom(std::string& text, std::size_t characters) {
  constexpr std::size_t kLong = 65536;
  constexpr std::size_t kBehind = 4096;
  if (characters >= kLong) text.reserve(text.size() + characters + kBehind);
}

// At most so many bytes of UTF-8.
std::size_t LengthOf(std::span<const Byte> codes) {
  std::size_t length = 0;
  for (const auto code : codes) length += code < 0x80 ? 1 : code < 0xA0 ? 3 : 2;
  return length;
}

void AppendText(std::string& text, std::string_view value) {
  MakeRoom(text, value.size());
  text += '\'';
  for (const char character : value) {
    if (character == '\'') text += '\'';
    text += character;
  }
  text += '\'';
}

void AppendBetween(std::string& text, char sign, std::string_view value) {
  text += sign;
  text.append(value);
  text += sign;
}

void AppendNumberOf(std::string& text, const Variant& value) {
  switch (value.Type()) {
    case VarType::Integer:
    case VarType::Long: return AppendNumber(text, static_cast<long long>(value.AsLong()));
    case VarType::Single: return AppendNumber(text, value.AsSingle());
    case VarType::Double: return AppendNumber(text, value.AsDouble());
    default: text += value.AsText();
  }
}

void AppendBoolean(std::string& text, const Variant& value, zEngines engine) {
  if (engine == engAccess)
    text += value.AsText();
  else
    text += value.AsBoolean() ? '1' : '0';
}

bool IsVariantArray(const Variant& value) { return value.Type() == ArrayOf(VarType::Variant); }

// Quotes are not doubled here, and an array of one element (upper bound 0) is written as an empty one.
void AppendBytes(std::string& text, const Variant& value) {
  text += '\'';
  if (value.IsByteArray()) {
    MakeRoom(text, LengthOf(value.Bytes()));
    for (const auto code : value.Bytes()) AppendCharacter(text, code);
  } else if (!IsVariantArray(value)) {
    text += value.AsText();
  } else if (value.UpperBound() >= 1) {
    for (auto index = value.LowerBound(); index <= value.UpperBound(); ++index)
      AppendCharacter(text, Variant(value.Element(index).AsLong()).AsByte());
  }
  text += '\'';
}

bool JoinsLines(zEngines engine) { return engine == engSQLServer || engine == engSybase; }

/// The place of a line's end behind a backslash.
std::size_t FindJoined(std::string_view text, std::size_t from) {
  for (auto at = text.find('\\', from); at != text.npos; at = text.find('\\', at + 1)) {
    const auto behind = text.substr(at + 1, 2);
    if (behind.starts_with('\n') || behind == "\r\n") return at + 1;
  }
  return text.npos;
}

// T-SQL takes a backslash at the end of a line for no part of the literal, nor the line's end, and has no way of
// writing the two but in literals of their own. What SQL Server joins is cut at 8,000 bytes unless one part is without
// limit.
void SplitJoinedLines(std::string& text, std::size_t start, zEngines engine) {
  constexpr std::size_t kMostJoined = 8000;
  auto place = FindJoined(text, start);
  if (place == text.npos) return;
  const auto literal = text.substr(start);
  text.resize(start);
  if (engine == engSQLServer && literal.size() > kMostJoined) text += "CAST('' AS varchar(max)) + ";
  std::size_t written = 0;
  for (place -= start; place != literal.npos; place = FindJoined(literal, place)) {
    text.append(literal, written, place - written).append("' + '");
    written = place;
  }
  text.append(literal, written);
}

}  // namespace

void AppendLiteral(std::string& text, const Variant& value, zDataTypes dataType, zEngines engine) {
  if (value.IsNull()) {
    text += "NULL";
    return;
  }
  const auto start = text.size();
  switch (dataType == dtVariant ? DataTypeForVarType(value.Type()) : dataType) {
    case dtString: AppendText(text, value.IsText() ? value.TextView() : std::string_view(value.AsText())); break;
    case dtLongInteger:
    case dtInteger:
    case dtCurrency:
    case dtSingle:
    case dtDouble:
    case dtDecimal:
    case dtByte: return AppendNumberOf(text, value);
    case dtDate: return AppendBetween(text, engine == engAccess ? '#' : '\'', value.AsText());
    case dtBoolean: return AppendBoolean(text, value, engine);
    case dtByteArray: AppendBytes(text, value); break;
    default: Fail(RuntimeFailure::TypeMismatch);  // no type can be told, or the code is none
  }
  if (JoinsLines(engine)) SplitJoinedLines(text, start, engine);
}

}  // namespace velmoria::sql

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "velmoria/runtime/utf8_impl.h"

namespace velmoria {

namespace {

// Letters First, First + Step ... Last fold to themselves plus Offset.
struct FoldRange {
  std::uint16_t First;
  std::uint16_t Last;
  std::uint8_t Step;
  std::int16_t Offset;
};

constexpr FoldRange kFoldRanges[] = {
    {0x00B5, 0x00B5, 1, 775},    {0x00C0, 0x00D6, 1, 32},     {0x00D8, 0x00DE, 1, 32},     {0x0100, 0x012E, 2, 1},
    {0x0132, 0x0136, 2, 1},      {0x0139, 0x0147, 2, 1},      {0x014A, 0x0176, 2, 1},      {0x0178, 0x0178, 1, -121},
    {0x0179, 0x017D, 2, 1},      {0x017F, 0x017F, 1, -268},   {0x0181, 0x0181, 1, 210},    {0x0182, 0x0184, 2, 1},
    {0x0186, 0x0186, 1, 206},    {0x0187, 0x0187, 1, 1},      {0x0189, 0x018A, 1, 205},    {0x018B, 0x018B, 1, 1},
    {0x018E, 0x018E, 1, 79},     {0x018F, 0x018F, 1, 202},    {0x0190, 0x0190, 1, 203},    {0x0191, 0x0191, 1, 1},
    {0x0193, 0x0193, 1, 205},    {0x0194, 0x0194, 1, 207},    {0x0196, 0x0196, 1, 211},    {0x0197, 0x0197, 1, 209},
    {0x0198, 0x0198, 1, 1},      {0x019C, 0x019C, 1, 211},    {0x019D, 0x019D, 1, 213},    {0x019F, 0x019F, 1, 214},
    {0x01A0, 0x01A4, 2, 1},      {0x01A6, 0x01A6, 1, 218},    {0x01A7, 0x01A7, 1, 1},      {0x01A9, 0x01A9, 1, 218},
    {0x01AC, 0x01AC, 1, 1},      {0x01AE, 0x01AE, 1, 218},    {0x01AF, 0x01AF, 1, 1},      {0x01B1, 0x01B2, 1, 217},
    {0x01B3, 0x01B5, 2, 1},      {0x01B7, 0x01B7, 1, 219},    {0x01B8, 0x01B8, 1, 1},      {0x01BC, 0x01BC, 1, 1},
    {0x01C4, 0x01C4, 1, 2},      {0x01C5, 0x01C5, 1, 1},      {0x01C7, 0x01C7, 1, 2},      {0x01C8, 0x01C8, 1, 1},
    {0x01CA, 0x01CA, 1, 2},      {0x01CB, 0x01DB, 2, 1},      {0x01DE, 0x01EE, 2, 1},      {0x01F1, 0x01F1, 1, 2},
    {0x01F2, 0x01F4, 2, 1},      {0x01F6, 0x01F6, 1, -97},    {0x01F7, 0x01F7, 1, -56},    {0x01F8, 0x021E, 2, 1},
    {0x0220, 0x0220, 1, -130},   {0x0222, 0x0232, 2, 1},      {0x023A, 0x023A, 1, 10795},  {0x023B, 0x023B, 1, 1},
    {0x023D, 0x023D, 1, -163},   {0x023E, 0x023E, 1, 10792},  {0x0241, 0x0241, 1, 1},      {0x0243, 0x0243, 1, -195},
    {0x0244, 0x0244, 1, 69},     {0x0245, 0x0245, 1, 71},     {0x0246, 0x024E, 2, 1},      {0x0345, 0x0345, 1, 116},
    {0x0370, 0x0372, 2, 1},      {0x0376, 0x0376, 1, 1},      {0x037F, 0x037F, 1, 116},    {0x0386, 0x0386, 1, 38},
    {0x0388, 0x038A, 1, 37},     {0x038C, 0x038C, 1, 64},     {0x038E, 0x038F, 1, 63},     {0x0391, 0x03A1, 1, 32},
    {0x03A3, 0x03AB, 1, 32},     {0x03C2, 0x03C2, 1, 1},      {0x03CF, 0x03CF, 1, 8},      {0x03D0, 0x03D0, 1, -30},
    {0x03D1, 0x03D1, 1, -25},    {0x03D5, 0x03D5, 1, -15},    {0x03D6, 0x03D6, 1, -22},    {0x03D8, 0x03EE, 2, 1},
    {0x03F0, 0x03F0, 1, -54},    {0x03F1, 0x03F1, 1, -48},    {0x03F4, 0x03F4, 1, -60},    {0x03F5, 0x03F5, 1, -64},
    {0x03F7, 0x03F7, 1, 1},      {0x03F9, 0x03F9, 1, -7},     {0x03FA, 0x03FA, 1, 1},      {0x03FD, 0x03FF, 1, -130},
    {0x0400, 0x040F, 1, 80},     {0x0410, 0x042F, 1, 32},     {0x0460, 0x0480, 2, 1},      {0x048A, 0x04BE, 2, 1},
    {0x04C0, 0x04C0, 1, 15},     {0x04C1, 0x04CD, 2, 1},      {0x04D0, 0x052E, 2, 1},      {0x1E00, 0x1E94, 2, 1},
    {0x1E9B, 0x1E9B, 1, -58},    {0x1E9E, 0x1E9E, 1, -7615},  {0x1EA0, 0x1EFE, 2, 1},      {0x1F08, 0x1F0F, 1, -8},
    {0x1F18, 0x1F1D, 1, -8},     {0x1F28, 0x1F2F, 1, -8},     {0x1F38, 0x1F3F, 1, -8},     {0x1F48, 0x1F4D, 1, -8},
    {0x1F59, 0x1F5F, 2, -8},     {0x1F68, 0x1F6F, 1, -8},     {0x1F88, 0x1F8F, 1, -8},     {0x1F98, 0x1F9F, 1, -8},
    {0x1FA8, 0x1FAF, 1, -8},     {0x1FB8, 0x1FB9, 1, -8},     {0x1FBA, 0x1FBB, 1, -74},    {0x1FBC, 0x1FBC, 1, -9},
    {0x1FBE, 0x1FBE, 1, -7173},  {0x1FC8, 0x1FCB, 1, -86},    {0x1FCC, 0x1FCC, 1, -9},     {0x1FD8, 0x1FD9, 1, -8},
    {0x1FDA, 0x1FDB, 1, -100},   {0x1FE8, 0x1FE9, 1, -8},     {0x1FEA, 0x1FEB, 1, -112},   {0x1FEC, 0x1FEC, 1, -7},
    {0x1FF8, 0x1FF9, 1, -128},   {0x1FFA, 0x1FFB, 1, -126},   {0x1FFC, 0x1FFC, 1, -9},     {0x2C60, 0x2C60, 1, 1},
    {0x2C62, 0x2C62, 1, -10743}, {0x2C63, 0x2C63, 1, -3814},  {0x2C64, 0x2C64, 1, -10727}, {0x2C67, 0x2C6B, 2, 1},
    {0x2C6D, 0x2C6D, 1, -10780}, {0x2C6E, 0x2C6E, 1, -10749}, {0x2C6F, 0x2C6F, 1, -10783}, {0x2C70, 0x2C70, 1, -10782},
    {0x2C72, 0x2C72, 1, 1},      {0x2C75, 0x2C75, 1, 1},      {0x2C7E, 0x2C7F, 1, -10815}, {0xA640, 0xA66C, 2, 1},
    {0xA680, 0xA69A, 2, 1},
};

// Variant forms of small letters: they fold to the plain letter and share its capital, but neither change to it in
// lower case nor are what the capital letter comes from.
constexpr char32_t kSmallVariants[] = {0x00B5, 0x017F, 0x0345, 0x03C2, 0x03D0, 0x03D1, 0x03D5,
                                       0x03D6, 0x03F0, 0x03F1, 0x03F5, 0x1E9B, 0x1FBE};
constexpr char32_t kCapitalSharpS = 0x1E9E;

bool IsSmallVariant(char32_t code) noexcept {
  return std::find(std::begin(kSmallVariants), std::end(kSmallVariants), code) != std::end(kSmallVariants);
}

bool IsContinuation(char c) noexcept { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

char32_t Offset(char32_t code, int offset) noexcept {
  return static_cast<char32_t>(static_cast<std::int32_t>(code) + offset);
}

}  // namespace

Utf8Character DecodeUtf8(std::string_view text) noexcept {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return {lead, 1};
  const Utf8Character stray{kStrayByte + lead, 1};
  const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < bytes) return stray;
  char32_t code = lead & (0x7FU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    if (!IsContinuation(text[i])) return stray;
    code = (code << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kLeast[bytes] || code > 0x10FFFF || surrogate) return stray;
  return {code, bytes};
}

void AppendUtf8(std::string& text, char32_t code) {
  const auto append = [&](char32_t byte) { text.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
  if (code < 0x80 || code >= kStrayByte) return append(code & 0xFFU);
  if (code < 0x800) {
    append(0xC0U | (code >> 6U));
  } else {
    if (code < 0x10000) {
      append(0xE0U | (code >> 12U));
    } else {
      append(0xF0U | (code >> 18U));
      append(0x80U | ((code >> 12U) & 0x3FU));
    }
    append(0x80U | ((code >> 6U) & 0x3FU));
  }
  append(0x80U | (code & 0x3FU));
}

char32_t FoldCharacter(char32_t code) noexcept {
  if (code < 0x80) return code >= 'A' && code <= 'Z' ? code + ('a' - 'A') : code;
  const auto range = std::lower_bound(std::begin(kFoldRanges), std::end(kFoldRanges), code,
                                      [](const FoldRange& row, char32_t sought) { return row.Last < sought; });
  if (range == std::end(kFoldRanges) || code < range->First || (code - range->First) % range->Step != 0) return code;
  return Offset(code, range->Offset);
}

char32_t LowerCharacter(char32_t code) noexcept { return IsSmallVariant(code) ? code : FoldCharacter(code); }

char32_t UpperCharacter(char32_t code) noexcept {
  if (code < 0x80) return code >= 'a' && code <= 'z' ? code - ('a' - 'A') : code;
  if (IsSmallVariant(code)) return UpperCharacter(FoldCharacter(code));
  for (const FoldRange& range : kFoldRanges) {
    const char32_t capital = Offset(code, -range.Offset);
    const bool within = capital >= range.First && capital <= range.Last && (capital - range.First) % range.Step == 0;
    if (within && capital != kCapitalSharpS && !IsSmallVariant(capital)) return capital;
  }
  return code;
}

}  // namespace velmoria

#include "velmoria/platform/posix/settings_text.h"

#include <algorithm>
#include <charconv>

#include "velmoria/runtime/text.h"
#include "velmoria/runtime/utf8_impl.h"

namespace velmoria {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kHeading = "# Written by the program; a backslash starts an escape.";
constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kNameSpecials = "=[]#;";
constexpr std::string_view kEscaped = "\n\r\t\\";
constexpr std::string_view kEscapes = "nrt\\";

void AppendHex(std::string& text, unsigned char byte) {
  constexpr std::string_view digits = "0123456789abcdef";
  text += "\\x";
  text += digits[byte / 16];
  text += digits[byte % 16];
}

void AppendEscaped(std::string& result, char letter, std::string_view specials) {
  const auto byte = static_cast<unsigned char>(letter);
  if (const auto known = kEscaped.find(letter); known != std::string_view::npos) {
    result += '\\';
    result += kEscapes[known];
  } else if (byte < 32 || byte == 127) {
    AppendHex(result, byte);
  } else {
    if (specials.find(letter) != std::string_view::npos) result += '\\';
    result += letter;
  }
}

std::string Escape(std::string_view text, std::string_view specials) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const auto character = DecodeUtf8(text.substr(at));
    const auto end = at + character.Bytes;
    if (text[at] == ' ' && (at == 0 || end == text.size())) {
      result += "\\s";
    } else if (character.Code >= kStrayByte) {
      AppendHex(result, static_cast<unsigned char>(text[at]));
    } else if (character.Bytes > 1) {
      result += text.substr(at, character.Bytes);
    } else {
      AppendEscaped(result, text[at], specials);
    }
    at = end;
  }
  return result;
}

// Appends what the escape at `at` (just behind the backslash) stands for and gives the place of its last character.
std::size_t AppendUnescaped(std::string& result, std::string_view text, std::size_t at) {
  const char letter = text[at];
  if (letter == 'x' && at + 2 < text.size()) {
    unsigned value = 0;
    const auto* from = text.data() + at + 1;
    if (std::from_chars(from, from + 2, value, 16).ptr == from + 2) {
      result += static_cast<char>(value);
      return at + 2;
    }
  }
  if (letter == 's') {
    result += ' ';
  } else if (const auto known = kEscapes.find(letter); known != std::string_view::npos) {
    result += kEscaped[known];
  } else {
    if (kNameSpecials.find(letter) == std::string_view::npos) result += '\\';
    result += letter;
  }
  return at;
}

std::string Unescape(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\\' && at + 1 < text.size()) {
      at = AppendUnescaped(result, text, at + 1);
    } else {
      result += text[at];
    }
  }
  return result;
}

std::size_t FindUnescaped(std::string_view text, char wanted) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\\') {
      ++at;
    } else if (text[at] == wanted) {
      return at;
    }
  }
  return std::string_view::npos;
}

std::string_view TakeLine(std::string_view& text) {
  const auto end = text.find('\n');
  auto line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

bool IsReadable(std::string_view line) {
  while (!line.empty()) {
    const auto character = DecodeUtf8(line);
    if (character.Code >= kStrayByte || character.Code == 0) return false;
    line.remove_prefix(character.Bytes);
  }
  return true;
}

auto FindEntry(auto& entries, std::string_view key) {
  return std::ranges::find_if(entries, [&](const auto& entry) { return EqualFolded(entry.first, key); });
}

}  // namespace

SettingsText::SettingsText(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  Section* current = nullptr;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const bool breaksOff = text.find('\n') == std::string_view::npos;
    const auto line = Trimmed(TakeLine(text));
    if (!ReadLine(line, current) || (breaksOff && !line.empty())) damagedLines_.push_back(number);
  }
}

bool SettingsText::ReadLine(std::string_view line, Section*& current) {
  if (line.empty() || line == kHeading) return true;
  if (line.starts_with('#') || line.starts_with(';')) {
    (current ? current->Comments : comments_).emplace_back(line);
    return true;
  }
  if (line.starts_with('[')) return ReadSection(line, current);
  const auto equals = FindUnescaped(line, '=');
  if (!IsReadable(line) || equals == std::string_view::npos) {
    if (line.ends_with(']')) current = nullptr;  // it may have been a section's
    return false;
  }
  if (!current) return false;
  auto key = Unescape(Trimmed(line.substr(0, equals)));
  if (FindEntry(current->Entries, key) != current->Entries.end()) return false;
  current->Entries.emplace_back(std::move(key), Unescape(Trimmed(line.substr(equals + 1))));
  return true;
}

bool SettingsText::ReadSection(std::string_view line, Section*& current) {
  const auto end = FindUnescaped(line, ']');
  current = nullptr;
  if (!IsReadable(line) || end == std::string_view::npos) return false;
  current = &SectionOf(Unescape(Trimmed(line.substr(1, end - 1))));
  return end + 1 == line.size();
}

std::string SettingsText::Print() const {
  std::string text(kHeading);
  text += '\n';
  for (const auto& comment : comments_) text += comment + "\n";
  for (const auto& section : sections_) {
    text += "\n[" + Escape(section.Name, kNameSpecials) + "]\n";
    for (const auto& comment : section.Comments) text += comment + "\n";
    for (const auto& [key, value] : section.Entries) {
      text += Escape(key, kNameSpecials) + "=" + Escape(value, {}) + "\n";
    }
  }
  return text;
}

const std::string* SettingsText::Find(std::string_view section, std::string_view key) const {
  const auto* found = FindSection(section);
  if (!found) return nullptr;
  const auto entry = FindEntry(found->Entries, key);
  return entry == found->Entries.end() ? nullptr : &entry->second;
}

void SettingsText::Set(std::string_view section, std::string_view key, std::string_view value) {
  auto& entries = SectionOf(section).Entries;
  if (const auto entry = FindEntry(entries, key); entry != entries.end()) {
    entry->second = value;
  } else {
    entries.emplace_back(key, value);
  }
}

void SettingsText::Delete(std::string_view section) {
  std::erase_if(sections_, [&](const Section& held) { return EqualFolded(held.Name, section); });
}

void SettingsText::Replace(std::string_view section, const SettingsStore::Entries& entries) {
  if (entries.empty() && !FindSection(section)) return;
  SectionOf(section).Entries.clear();
  for (const auto& [key, value] : entries) Set(section, key, value);
}

const SettingsText::Section* SettingsText::FindSection(std::string_view name) const {
  const auto found =
      std::ranges::find_if(sections_, [&](const Section& section) { return EqualFolded(section.Name, name); });
  return found == sections_.end() ? nullptr : &*found;
}

SettingsText::Section& SettingsText::SectionOf(std::string_view name) {
  if (const auto* found = FindSection(name)) return sections_[static_cast<std::size_t>(found - sections_.data())];
  return sections_.emplace_back(Section{.Name = std::string(name)});
}

}  // namespace velmoria

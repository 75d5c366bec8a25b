#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "velmoria/runtime/api.h"

namespace velmoria {

/// The number of characters (code points) of a UTF-8 text; a stray byte counts as one.
VELMORIA_API std::size_t CharacterCount(std::string_view text) noexcept;

/// Simple case folding of a UTF-8 text (Latin, Greek, Cyrillic), the same in every locale.
VELMORIA_API std::string FoldCase(std::string_view text);

/// Whether two texts are equal but for case; allocates nothing.
VELMORIA_API bool EqualFolded(std::string_view left, std::string_view right) noexcept;

/// A hash that agrees with EqualFolded; allocates nothing.
VELMORIA_API std::size_t HashFolded(std::string_view text) noexcept;

/// Whether `part` occurs in `text`, compared without regard to case.
VELMORIA_API bool ContainsFolded(std::string_view text, std::string_view part) noexcept;

/// Text between single quotes: 'text'.
VELMORIA_API std::string Quoted(std::string_view text);

/// The decimal text of a whole number.
VELMORIA_API std::string NumberText(long long value);

/// Appends the fewest digits that read back as the same value: without exponent from 0.0001 to below 1e15, else in the
/// shorter of both forms, "1e+20".
VELMORIA_API void AppendNumber(std::string& text, double value);
VELMORIA_API void AppendNumber(std::string& text, float value);
VELMORIA_API void AppendNumber(std::string& text, long long value);

}  // namespace velmoria

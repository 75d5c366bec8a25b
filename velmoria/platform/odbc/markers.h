#pragma once

#include <cstddef>
#include <string_view>

namespace velmoria::odbc {

/// The number of real parameter markers: a "?" inside quotes, brackets or a comment is none.
std::size_t CountMarkers(std::string_view sql) noexcept;

/// Whether anything but blanks follows a ";" that is not inside quotes, brackets or a comment.
bool HasSeveralStatements(std::string_view sql) noexcept;

}  // namespace velmoria::odbc

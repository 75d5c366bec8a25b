#pragma once

#include <string>
#include <string_view>

namespace velmoria::odbc {

/// A connect string, or a driver's text about one, for the eye: the value of every key that ends in PWD or PASSWORD, in
/// any case and at any depth of braces, reads "***". What looks like one is hidden rather than shown.
std::string WithoutPasswords(std::string_view text);

}  // namespace velmoria::odbc

#pragma once

#include <string>
#include <string_view>

namespace velmoria {

/// A connect string for the eye: the values of PWD= and PASSWORD= read "***".
std::string WithoutPassword(std::string_view connectionString);

}  // namespace velmoria

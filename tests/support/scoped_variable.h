#pragma once

#include <cstdlib>
#include <string>

namespace velmoria::test {

/// An environment variable with another value, or without one, for the length of a scope.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* former = std::getenv(name)) former_ = former, wasSet_ = true;
    value ? setenv(name, value, 1) : unsetenv(name);
  }
  ~ScopedVariable() { wasSet_ ? setenv(name_, former_.c_str(), 1) : unsetenv(name_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
  std::string former_;
  bool wasSet_ = false;
};

}  // namespace velmoria::test

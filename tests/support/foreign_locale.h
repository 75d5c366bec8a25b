#pragma once

#include <clocale>
#include <locale>
#include <stdexcept>
#include <string>

namespace velmoria::test {

/// Puts the whole process under another locale, by C's call or by C++'s, until it goes.
class ForeignLocale {
 public:
  ForeignLocale(const char* name, bool byStandardLibrary) {
    if (!byStandardLibrary) {
      isThere_ = std::setlocale(LC_ALL, name) != nullptr;
      return;
    }
    try {
      std::locale::global(std::locale(name));
      isThere_ = true;
    } catch (const std::runtime_error&) { isThere_ = false; }
  }
  ~ForeignLocale() {
    std::locale::global(former_);
    std::setlocale(LC_ALL, formerName_.c_str());
  }
  ForeignLocale(const ForeignLocale&) = delete;
  ForeignLocale& operator=(const ForeignLocale&) = delete;

  bool IsThere() const noexcept { return isThere_; }

 private:
  std::string formerName_ = std::setlocale(LC_ALL, nullptr);
  std::locale former_;
  bool isThere_ = false;
};

}  // namespace velmoria::test

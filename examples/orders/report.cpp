#include "report.h"

#include <cstdio>
#include <stdexcept>

#include "velmoria/properties/property.h"

void Title(const std::string& text) { std::printf("\n%s\n", text.c_str()); }

void Row(const std::string& label, const std::string& value) {
  std::string shown;
  for (const char character : value) {
    if (character == '\n')
      shown += "\n                  ";
    else if (character != '\r')
      shown += character;
  }
  std::printf("  %-14s  %s\n", label.c_str(), shown.c_str());
}

std::string Shown(const velmoria::PropertyPtr& property) { return property->DisplayValue().AsText(); }

void Prove(bool holds, const std::string& fact) {
  if (!holds) throw std::runtime_error("this should hold, and does not: " + fact);
  std::printf("  [ok] %s\n", fact.c_str());
}

#pragma once

#include "velmoria/velmoria.h"

class Order : public velmoria::BusinessObject {
 public:
  std::string Name() { return FindProperty("Name")->Value().AsText(); }
  void SetName(const std::string& value) { FindProperty("Name")->SetValue(value); }

  double Total() { return FindProperty("Total")->Value().AsDouble(); }
  void Discount(double percent) { FindProperty("Total")->SetValue(Total() * (100 - percent) / 100); }

  std::string Note() { return Properties("Detail")->Item("Note")->Value().AsText(); }
};

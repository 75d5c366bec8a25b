#pragma once

#include <stdexcept>

#include "velmoria/velmoria.h"

class Order : public velmoria::BusinessObject {
 public:
  std::string Name() { return FindProperty("Name")->Value().AsText(); }
  void SetName(const std::string& value) { FindProperty("Name")->SetValue(value); }

  double Total() { return FindProperty("Total")->Value().AsDouble(); }
  void Discount(double percent) { FindProperty("Total")->SetValue(Total() * (100 - percent) / 100); }

  std::string Note() { return Properties("Detail")->Item("Note")->Value().AsText(); }

  void Update() override {
    if (Total() < 0) throw std::domain_error("Nobody is paid for an order.");
    BusinessObject::Update();
  }
};

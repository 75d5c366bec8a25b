// Every figure is a ratio of two medians taken in turn in this one run; goals stand behind them.

#include <cstdlib>

#include "design_model.h"
#include "rows.h"

int main() {
  setenv("VELMORIA_SETTINGS_DIR", ".", 1);
  BenchDesignModel();
  BenchRows();
  return 0;
}

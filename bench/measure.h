#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <vector>

/// Wall-clock seconds of one run of the work.
inline double Seconds(auto&& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// One line: seconds, the ratio to the plain loop, and what it should be at most.
inline void Print(const char* what, double seconds, double plain, const char* goal) {
  std::printf("%-44s %8.3f s   ratio %5.2f   goal %s\n", what, seconds, seconds / plain, goal);
}

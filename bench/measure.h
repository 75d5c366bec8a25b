#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <vector>

#include <malloc.h>

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

/// A number from 1 to count for each step: they jump about, the same in every run.
constexpr int Jump(int step, int count) { return 1 + static_cast<int>(step * 37LL % count); }

/// The bytes in use on the heap.
inline std::size_t HeapBytes() { return mallinfo2().uordblks; }

/// One line: seconds, the ratio to the plain loop, and what it should be at most, or "-".
inline void Print(const char* what, double seconds, double plain, const char* goal) {
  std::printf("%-52s %9.4f s   ratio %5.2f   goal %s\n", what, seconds, seconds / plain, goal);
}

/// One line: bytes of each of many, the ratio to the plain ones, and what it should be at most, or "-".
inline void PrintBytes(const char* what, double bytes, double plain, const char* goal) {
  std::printf("%-52s %9.1f B   ratio %5.2f   goal %s\n", what, bytes, bytes / plain, goal);
}

#pragma once

#include <cstddef>
#include <vector>

/// What a piece of work took: by the clock on the wall, and of processors in this process, a server's not counted.
struct Taken {
  double Seconds = 0;
  double Processor = 0;
};

double WallClock();
double ProcessorClock();

Taken Measure(auto&& work) {
  const double wall = WallClock();
  const double processor = ProcessorClock();
  work();
  return {.Seconds = WallClock() - wall, .Processor = ProcessorClock() - processor};
}

/// The median of either clock by itself.
Taken Median(const std::vector<Taken>& rounds);

/// A number from 1 to count for each step: they jump about, the same in every run.
constexpr int Jump(int step, int count) { return 1 + static_cast<int>(step * 37LL % count); }

/// The bytes in use on the heap.
std::size_t HeapBytes();

/// What the whole process grew by at most, drivers included, while a copy of it did the work and ended. Unless the
/// process still holds memory to use again, that is what the work needs.
std::size_t BytesOfProcess(void (*work)(const void* argument), const void* argument);

/// One line: seconds, the ratio to the plain code by either clock, and what it should be at most, or "-".
void Print(const char* what, const std::vector<Taken>& rounds, const std::vector<Taken>& plain, const char* goal);

/// One line: bytes of each of many, the ratio to the plain ones, and what it should be at most, or "-".
void PrintBytes(const char* what, double bytes, double plain, const char* goal);

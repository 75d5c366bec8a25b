#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace velmoria::test {

/// So many numbers from a least one on.
struct NumberRange {
  std::size_t Least;
  std::size_t Count;
};

/// The raw numbers of a seeded engine, so that a seed means the same everywhere.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}
  std::size_t Below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }
  bool OneIn(std::size_t count) { return Below(count) == 0; }
  std::size_t In(NumberRange range) { return range.Least + Below(range.Count); }
  /// The length of a sequence. Most are short, for what matters takes few steps; some are long, for the states that
  /// many steps leave behind.
  std::size_t Length(NumberRange shortOnes, NumberRange longOnes) { return In(OneIn(16) ? longOnes : shortOnes); }
  template <class Choices>
  auto Of(const Choices& choices) {
    return choices[Below(choices.size())];
  }
  /// An entry of a table, as often as its Weight says.
  template <class Entry, std::size_t Size>
  const Entry& ByWeight(const Entry (&table)[Size]) {
    std::size_t total = 0;
    for (const auto& entry : table) total += entry.Weight;
    auto place = Below(total);
    const Entry* drawn = table;
    for (; place >= drawn->Weight; ++drawn) place -= drawn->Weight;
    return *drawn;
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace velmoria::test

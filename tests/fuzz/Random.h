#pragma once

#include <cstddef>
#include <random>
#include <vector>

namespace component_fuzz {

/// The same numbers from the same seed and round, so that one round can be run
/// again alone.
class Random {
  public:
    Random(unsigned seed, unsigned round) : engine_(seed * 2654435761u + round) {}

    // Not a distribution of the library: those differ from one to the next.
    std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : engine_() % limit; }
    bool OneIn(std::size_t n) { return Below(n) == 0; }
    template <class T>
    T& Of(std::vector<T>& list) {
        return list[Below(list.size())];
    }
    template <class T>
    const T& Of(const std::vector<T>& list) {
        return list[Below(list.size())];
    }

  private:
    std::mt19937 engine_;
};

} // namespace component_fuzz

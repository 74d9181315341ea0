#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace qndr::simulation {

/// Numbers that follow from a seed alone, alike on every platform and with every standard library.
class SeededRandom {
  public:
    explicit SeededRandom(std::uint64_t seed) : engine_(seed) {}

    std::uint64_t Bits() { return engine_(); }
    /// 0 to limit - 1; the limit is above 0.
    std::int64_t Below(std::int64_t limit) {
        return static_cast<std::int64_t>(Bits() % static_cast<std::uint64_t>(limit));
    }
    bool Chance(double probability) { return static_cast<double>(Bits() >> 11U) * 0x1p-53 < probability; }
    /// A GUID's text, without braces and in upper case.
    std::string Identifier();
    /// A generator of its own, so that what is drawn there does not shift what is drawn here.
    SeededRandom Branch() { return SeededRandom(Bits()); }

  private:
    std::mt19937_64 engine_;
};

} // namespace qndr::simulation

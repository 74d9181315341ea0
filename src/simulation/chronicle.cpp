#include "simulation/chronicle.h"

#include <cstddef>
#include <cstdio>

namespace qndr::simulation {
namespace {

constexpr std::size_t KeptEvents = 20'000;
constexpr std::uint64_t FingerprintPrime = 1099511628211U; // FNV-1a

} // namespace

void Chronicle::Note(const std::string& computer, const std::string& event) {
    char time[32];
    std::snprintf(time, sizeof time, "day %3lld %02lld:%02lld  ", static_cast<long long>(minutes_ / 1440),
                  static_cast<long long>(minutes_ / 60 % 24), static_cast<long long>(minutes_ % 60));
    std::string line = time + computer + ": " + event;
    for (const char character : line) {
        fingerprint_ = (fingerprint_ ^ static_cast<unsigned char>(character)) * FingerprintPrime;
    }
    last_.push_back(std::move(line));
    if (last_.size() > KeptEvents) {
        last_.pop_front();
    }
}

void Chronicle::NoteFault(const std::string& computer, const std::string& kind, const std::string& event) {
    ++faults_[kind];
    Note(computer, event);
}

} // namespace qndr::simulation

#include "call_times.h"

#include <ostream>

namespace qndr::bench {

void CallTimes::Start() {
    began_ = std::chrono::steady_clock::now();
    Turn("start");
}

void CallTimes::Stop() {
    Turn("start");
    current_ = nullptr;
}

bool CallTimes::Admits(Call call) {
    if (current_ != nullptr) {
        Turn(call.Name());
    }
    return true;
}

double CallTimes::Seconds() const {
    double seconds = 0;
    for (const auto& [call, sum] : sums_) {
        seconds += sum.seconds;
    }
    return seconds;
}

void CallTimes::Print(std::ostream& out) const {
    const char* separator = "{";
    for (const auto& [call, sum] : sums_) {
        out << separator << '"' << call << "\": [" << sum.seconds << ", " << sum.calls << ']';
        separator = ", ";
    }
    out << '}';
}

void CallTimes::Turn(std::string_view call) {
    const Moment now = std::chrono::steady_clock::now();
    if (current_ != nullptr) {
        current_->seconds += std::chrono::duration<double>(now - began_).count();
        ++current_->calls;
    }
    auto place = sums_.find(call);
    if (place == sums_.end()) {
        place = sums_.try_emplace(std::string(call)).first;
    }
    current_ = &place->second;
    began_ = now;
}

} // namespace qndr::bench

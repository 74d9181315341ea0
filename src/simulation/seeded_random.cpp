#include "simulation/seeded_random.h"

#include <cstddef>

namespace qndr::simulation {

std::string SeededRandom::Identifier() {
    constexpr const char* digits = "0123456789ABCDEF";
    std::string text = "00000000-0000-4000-8000-000000000000";
    for (std::size_t place = 0; place < text.size(); ++place) {
        if (text[place] != '-' && place != 14 && place != 19) {
            text[place] = digits[Below(16)];
        }
    }
    return text;
}

} // namespace qndr::simulation

#include "suite/computer/computer_trouble.h"

#include <algorithm>

namespace qndr::suite {

void ComputerTrouble::Clear() {
    *this = {};
}

void ComputerTrouble::Note(const std::string& text) {
    if (text_.empty()) {
        text_ = text;
    }
    Refuses();
}

bool ComputerTrouble::Refuses() {
    if (Stands() && !inHand_.empty() && !Holds(inHand_)) {
        held_.push_back(inHand_);
    }
    return Stands();
}

void ComputerTrouble::NoteStored() {
    inHand_.clear();
    hasStored_ = true;
}

bool ComputerTrouble::Holds(const std::string& path) const {
    return std::find(held_.begin(), held_.end(), path) != held_.end();
}

} // namespace qndr::suite

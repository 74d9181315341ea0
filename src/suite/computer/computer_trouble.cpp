#include "suite/computer/computer_trouble.h"

#include <algorithm>
#include <utility>

namespace qndr::suite {

void ComputerTrouble::Clear() {
    const std::set<std::string> lacking = std::move(lackingFirstData_);
    *this = {};
    lackingFirstData_ = lacking;
}

void ComputerTrouble::SetLacksFirstData(const std::string& database, bool lacks) {
    if (lacks) {
        lackingFirstData_.insert(database);
    } else {
        lackingFirstData_.erase(database);
    }
}

void ComputerTrouble::Note(const std::string& text) {
    if (text_.empty()) {
        text_ = text;
    }
    Refuses();
}

bool ComputerTrouble::Refuses() {
    if (Stands() && !inHand_.empty()) {
        held_.push_back(std::exchange(inHand_, ""));
    }
    return Stands();
}

void ComputerTrouble::NoteStored() {
    inHand_.clear();
    hasStored_ = true;
}

bool ComputerTrouble::Holds(const std::string& path) {
    const bool isHeld = std::find(held_.begin(), held_.end(), path) != held_.end();
    hasKeptBack_ = hasKeptBack_ || isHeld;
    return isHeld;
}

} // namespace qndr::suite

#include "simulation/known_losses.h"

#include <algorithm>
#include <string_view>
#include <tuple>

namespace qndr::simulation {
namespace {

auto Identity(const KnownLoss& loss) {
    return std::tie(loss.workstation, loss.epoch, loss.number, loss.file);
}

bool HasNumber(const KnownLoss& loss, const FileNumber& number) {
    return number.sender == loss.number->sender && number.sequence == loss.number->sequence &&
           (number.epoch == loss.number->epoch || (loss.laterNumberings && number.epoch > loss.number->epoch));
}

bool Concerns(const KnownLoss& loss, const std::string& name, const DroppedFile& file) {
    return file.workstation == loss.workstation &&
           (name == loss.file || (loss.number && HasNumber(loss, file.Number())) ||
            (loss.wholeNumbering && file.epoch >= loss.epoch));
}

} // namespace

void KnownLosses::Note(KnownLoss loss, const std::string& computer) {
    for (KnownLoss& known : losses_) {
        if (std::string_view(known.name) == loss.name && Identity(known) == Identity(loss)) {
            known.rows.merge(loss.rows);
            known.values.merge(loss.values);
            return;
        }
    }
    chronicle_.NoteLoss(loss.name);
    chronicle_.Note(computer, std::string("from now on something may be missing: ") + loss.name +
                                  (loss.file.empty() ? "" : ", " + loss.file));
    losses_.push_back(std::move(loss));
}

void KnownLosses::AddToNumbering(std::size_t workstation, const std::string& id) {
    for (KnownLoss& loss : losses_) {
        if (loss.workstation == workstation && loss.wholeNumbering && IsOpen(loss)) {
            loss.rows.insert(id);
        }
    }
}

/// A loss of the numbering in which the full data came is not mended by that data.
bool KnownLosses::IsOpen(const KnownLoss& loss) const {
    const auto sound = sound_.find(loss.workstation);
    return sound == sound_.end() || loss.epoch >= sound->second;
}

bool KnownLosses::Carried(const KnownLoss& loss, const std::string& text) const {
    return std::any_of(files_.All().begin(), files_.All().end(), [&](const auto& entry) {
        return Concerns(loss, entry.first, entry.second) && entry.second.Carries(text);
    });
}

bool KnownLosses::CarriedToMain(const KnownLoss& loss, const std::string& id) const {
    return std::any_of(files_.All().begin(), files_.All().end(), [&](const auto& entry) {
        return Concerns(loss, entry.first, entry.second) && entry.second.sender != 0 && entry.second.Carries(id);
    });
}

const char* KnownLosses::ExplainStep(std::size_t workstation) const {
    for (const KnownLoss& loss : losses_) {
        if (loss.workstation == workstation && loss.breaksStep && IsOpen(loss)) {
            return loss.name;
        }
    }
    return nullptr;
}

const char* KnownLosses::ExplainRow(std::size_t workstation, const std::string& id) const {
    for (const KnownLoss& loss : losses_) {
        if (loss.workstation == workstation && IsOpen(loss) && (loss.rows.contains(id) || Carried(loss, id))) {
            return loss.name;
        }
    }
    return nullptr;
}

const char* KnownLosses::ExplainValue(const std::string& value, const std::string& id) const {
    for (const KnownLoss& loss : losses_) {
        const bool losesOwn = loss.losesValues && (Carried(loss, value) || CarriedToMain(loss, id));
        if (loss.values.contains(value) || losesOwn) {
            return loss.name;
        }
    }
    return nullptr;
}

bool KnownLosses::ExplainsTwice(const std::string& id) const {
    return std::any_of(losses_.begin(), losses_.end(), [&](const KnownLoss& loss) {
        const std::string_view name = loss.name;
        return name == loss::Restored || (name == loss::OldNumbering && Carried(loss, id));
    });
}

} // namespace qndr::simulation

#include "simulation/known_losses.h"

#include <algorithm>
#include <string_view>
#include <tuple>

namespace qndr::simulation {
namespace {

auto Identity(const KnownLoss& loss) {
    return std::tie(loss.workstation, loss.epoch, loss.number, loss.file);
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

/// A loss of the numbering in which the full data came is not mended by that data.
bool KnownLosses::IsOpen(const KnownLoss& loss) const {
    const auto sound = sound_.find(loss.workstation);
    return sound == sound_.end() || loss.epoch >= sound->second;
}

bool KnownLosses::Carried(const KnownLoss& loss, const std::string& text) const {
    return std::any_of(files_.All().begin(), files_.All().end(), [&](const auto& entry) {
        const auto& [name, file] = entry;
        const bool concerns = name == loss.file || (loss.number && file.Number() == *loss.number) ||
                              (loss.wholeNumbering && file.epoch >= loss.epoch);
        return concerns && file.workstation == loss.workstation && file.Carries(text);
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

const char* KnownLosses::ExplainValue(const std::string& value) const {
    for (const KnownLoss& loss : losses_) {
        if (loss.values.contains(value) || (loss.losesValues && Carried(loss, value))) {
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

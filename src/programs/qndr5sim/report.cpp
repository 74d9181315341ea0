#include "programs/qndr5sim/report.h"

#include "text/json.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace qndr {
namespace {

using text::Json;
using Counts = std::map<std::string, std::int64_t>;

constexpr std::size_t EventsShown = 60;

void AddUp(const Counts& counts, Counts& sum) {
    for (const auto& [name, count] : counts) {
        sum[name] += count;
    }
}

void ShowCounts(std::ostream& out, const std::string& heading, const Counts& counts) {
    out << heading << (counts.empty() ? " none\n" : "\n");
    for (const auto& [name, count] : counts) {
        out << "  " << std::left << std::setw(32) << name << std::right << std::setw(10) << count << '\n';
    }
}

Json ToJson(const Counts& counts) {
    Json object = Json::Object();
    for (const auto& [name, count] : counts) {
        object.Set(name, count);
    }
    return object;
}

std::string Hexadecimal(std::uint64_t number) {
    std::ostringstream out;
    out << std::hex << std::setw(16) << std::setfill('0') << number;
    return out.str();
}

} // namespace

void SimulationReport::Add(const simulation::SimulationResult& result) {
    ++runs_;
    failedRuns_ += result.violation.empty() ? 0 : 1;
    sum_.passes += result.passes;
    sum_.files += result.files;
    sum_.bytes += result.bytes;
    sum_.edits += result.edits;
    sum_.conflicts += result.conflicts;
    sum_.resets += result.resets;
    AddUp(result.excused, sum_.excused);
    AddUp(result.lostValues, sum_.lostValues);
    AddUp(result.faults, sum_.faults);
    AddUp(result.losses, sum_.losses);
    sum_.fingerprint ^= result.fingerprint;
}

std::string SimulationReport::ToTable() const {
    std::ostringstream out;
    const std::pair<const char*, std::int64_t> lines[] = {{"runs", runs_},
                                                          {"passes", sum_.passes},
                                                          {"files dropped", sum_.files},
                                                          {"bytes", sum_.bytes},
                                                          {"edits", sum_.edits},
                                                          {"conflicts kept", sum_.conflicts},
                                                          {"pairings mended", sum_.resets}};
    for (const auto& [name, count] : lines) {
        out << std::left << std::setw(34) << name << std::right << std::setw(10) << count << '\n';
    }
    ShowCounts(out, "faults", sum_.faults);
    ShowCounts(out, "known losses", sum_.losses);
    ShowCounts(out, "pairings out of step and rows that differed, explained by", sum_.excused);
    ShowCounts(out, "values lost, explained by", sum_.lostValues);
    out << "fingerprint  " << Hexadecimal(sum_.fingerprint) << '\n';
    out << "verdict      "
        << (AllWell() ? "nothing was lost that no known loss explains, and all companies agree"
                      : std::to_string(failedRuns_) + " runs went wrong")
        << '\n';
    return out.str();
}

std::string SimulationReport::ToJson(std::uint64_t firstSeed) const {
    return Json::Object()
        .Set("seed", std::to_string(firstSeed))
        .Set("runs", runs_)
        .Set("failedRuns", failedRuns_)
        .Set("passes", sum_.passes)
        .Set("files", sum_.files)
        .Set("bytes", sum_.bytes)
        .Set("edits", sum_.edits)
        .Set("conflicts", sum_.conflicts)
        .Set("mended", sum_.resets)
        .Set("excused", qndr::ToJson(sum_.excused))
        .Set("lostValues", qndr::ToJson(sum_.lostValues))
        .Set("faults", qndr::ToJson(sum_.faults))
        .Set("losses", qndr::ToJson(sum_.losses))
        .Set("fingerprint", Hexadecimal(sum_.fingerprint))
        .ToText();
}

std::string DescribeFailure(const simulation::SimulationOptions& options,
                            const simulation::SimulationResult& result) {
    std::ostringstream out;
    out << "seed " << options.seed << " went wrong: " << result.violation << '\n';
    const std::size_t shown = std::min(EventsShown, result.lastEvents.size());
    out << "the last events:\n";
    for (auto event = result.lastEvents.end() - static_cast<std::ptrdiff_t>(shown);
         event != result.lastEvents.end(); ++event) {
        out << "  " << *event << '\n';
    }
    out << "kept: " << options.folder << '\n';
    return out.str();
}

} // namespace qndr

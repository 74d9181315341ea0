#include "golden/golden_run.h"

#include "agent/pipelines.h"
#include "text/editing.h"
#include "text/letter_case.h"

#include <sstream>

namespace qndr::testing {
namespace {

namespace fs = std::filesystem;

Step FindStep(const Scene& scene) {
    if (scene.routine != nullptr) {
        return scene.routine;
    }
    const std::string name = scene.name.substr(0, scene.name.find('_'));
    for (const auto& steps : {MainSteps(), RoamingSteps()}) {
        for (const PipelineStep& step : steps) {
            if (step.name == name) {
                return step.routine;
            }
        }
    }
    throw std::logic_error("no step " + name);
}

} // namespace

bool IsOfTheStep(Call call) {
    return !call.Name().starts_with("Directory");
}

GoldenRun::GoldenRun(const Scene& scene, const State& before)
    : scene_(scene), step_(FindStep(scene)), before_(before) {
    // Without a root folder what is retired goes to a folder below the present one.
    fs::current_path(folder.Path());
    gate.isOpen = true;
    // What is reported behind a failed write bears a new time.
    gate.Before(calls::Database::ExecuteNonQuery, [this] { time.Advance(10'000); });
    scene.prepare(*this);
    // A file whose data are in leaves this mark; without it the counter would tell of a refused one.
    engine->duringImport = [this, ofTheScene = engine->duringImport] {
        ofTheScene();
        Sql("UPDATE TakenFile SET Sender = (SELECT CASE CompanyType WHEN 1 THEN '" + RoamingID +
            "' ELSE '' END FROM Company)");
    };
    running_.Library = std::move(context.Library);
    running_.Engine = std::move(context.Engine);
    running_.SyncFolder = Path("Sync");
    running_.RoamingUniqueID = RoamingID;
    running_.OperatingMode = context.OperatingMode;
}

GoldenRun::~GoldenRun() {
    fs::current_path(fs::temp_directory_path());
}

void GoldenRun::Play(std::size_t number, ScriptedGate::Way way) {
    if (before_.empty()) {
        before_ = Look();
    }
    {
        const ObserveFailures observing(*this);
        gate.isOpen = false;
        gate.FailAt(number, way);
        step_(running_, &activity);
        gate.isOpen = true;
    }
    for (const std::string& line : open_.lines) {
        outcome_.push_back("log: " + Short(line));
    }
    for (const std::string& text : activity.texts) {
        outcome_.push_back("shown: " + Short(text));
    }
    for (const std::string& data : engine->imports) {
        outcome_.push_back("imported: " + Short(data));
    }
    for (const auto& entries : engine->exported) {
        outcome_.push_back("exported: " + std::to_string(entries.size()) + " entries");
        for (std::size_t index = 0; entries.size() <= 10 && index < entries.size(); ++index) {
            outcome_.push_back("    " + entries[index].first + ": " + entries[index].second);
        }
    }
    for (const std::int32_t order : engine->orders) {
        outcome_.push_back("order backed up: " + std::to_string(order));
    }
    const State after = Look();
    for (const auto& [what, value] : after) {
        const auto old = before_.find(what);
        if (old == before_.end()) {
            const std::string content = value.starts_with('/') ? ContentOf(value) : value;
            std::istringstream lines("came: " + what + (content.empty() ? "" : ": " + content));
            for (std::string line; std::getline(lines, line);) {
                outcome_.push_back(line);
            }
        } else if (old->second != value && !value.starts_with('/')) {
            outcome_.push_back(what + ": " + old->second + " -> " + value);
        }
    }
    for (const auto& [what, value] : before_) {
        if (!after.contains(what)) {
            outcome_.push_back("went: " + what);
        }
    }
}

Lines GoldenRun::Transcript() const {
    Lines lines;
    std::size_t call = 0;
    const auto writeCallsUpTo = [&](std::size_t end) {
        std::string text;
        std::string last;
        int times = 1;
        const auto write = [&](std::string_view name) {
            if (name == last) {
                ++times;
                return;
            }
            text += times == 1 ? "" : " x" + std::to_string(times);
            if (text.size() + name.size() > 112) {
                lines.push_back("  " + std::exchange(text, ""));
            }
            text.append(" ").append(name);
            last = name;
            times = 1;
        };
        for (; call < end; ++call) {
            if (IsOfTheStep(gate.Calls()[call])) {
                write(gate.Calls()[call].Name());
            }
        }
        text += times == 1 ? "" : " x" + std::to_string(times);
        if (!text.empty()) {
            lines.push_back("  " + text);
        }
    };
    for (std::size_t index = 0; index < outcome_.size(); ++index) {
        writeCallsUpTo(index < open_.callsBefore.size() ? open_.callsBefore[index] : gate.Calls().size());
        lines.push_back(outcome_[index]);
    }
    writeCallsUpTo(gate.Calls().size());
    return lines;
}

std::string GoldenRun::NameOfCall(std::size_t number) const {
    return std::string(CallAt(number).Name()) + " " + std::to_string(TimesUpTo(number));
}

std::ptrdiff_t GoldenRun::TimesUpTo(std::size_t number) const {
    const auto first = gate.Calls().begin();
    return std::count(first, first + static_cast<std::ptrdiff_t>(number), CallAt(number));
}

GoldenRun::State GoldenRun::Look() {
    gate.isOpen = true;
    State state;
    LookAtRows(state, "'Company'", "Company",
               {"SyncState", "LastAuditID", "NextSequenceToMain", "NextSequenceFromMain", "MainUniqueID",
                "ReferenceCode"});
    LookAtRows(state, "'Row ' || ID", "RoamingWorkstations",
               {"SyncState", "LastAuditID", "NextSequenceToRoaming", "NextSequenceFromRoaming", "LastReceivedFrom",
                "LastSentTo", "LastKnownAppVersion"});
    LookAtRows(state, "'Event ' || ID", "CompanyEvents", {"EventText", "EventNumber"});
    LookAtRows(state, "'Orders ' || UniqueID", "Orders", {"SyncState"});
    LookAtRows(state, "'PurchaseOrders ' || UniqueID", "PurchaseOrders", {"SyncState"});
    LookAtRows(state, "'Queue ' || OrderUniqueID", "OrderNumberSync", {"State", "ReferenceNumber", "OrderNumber"});
    LookAtRows(state, "'Queue ' || PurchaseOrderUniqueID", "PurchaseOrderNumberSync",
               {"State", "ReferenceNumber", "PONumber"});
    std::string counts = "SELECT ''";
    for (const std::string& table : counted) {
        counts += " || (SELECT count(*) FROM " + table + ") || ' '";
    }
    std::istringstream found(Value(counts));
    for (const std::string& table : counted) {
        found >> state["Rows of " + table];
    }
    state["Setting SyncHeartbeat"] =
        std::to_string(registry.GetLong(services::CurrentUserHive, settings::RootKey, settings::SyncHeartbeat, 0));
    LookAtFiles(state);
    return state;
}

void GoldenRun::LookAtRows(State& state, const std::string& rows, const std::string& table, const Lines& columns) {
    std::string values = "''";
    for (const std::string& column : columns) {
        values += " || " + rows + " || '." + column + "\t' || ifnull(" + column + ", 'nothing') || '\n'";
    }
    std::istringstream found(
        Company()
            .ExecuteScaler(services::Statement("SELECT group_concat(" + values + ", '') FROM " + table))
            .ToText());
    for (std::string line; std::getline(found, line);) {
        state[line.substr(0, line.find('\t'))] = Short(line.substr(line.find('\t') + 1));
    }
}

void GoldenRun::LookAtFiles(State& state) {
    for (const auto& entry : fs::recursive_directory_iterator(folder.Path())) {
        const std::string path = entry.path();
        if (entry.is_directory() ? path.starts_with(Path("Temp/")) : !path.starts_with(Path("Acme.db"))) {
            const bool isPacked = scene_.inFull && path.starts_with(Path("Temp/suz"));
            state[Short(path)] = isPacked || path.starts_with(Path("Sync/")) ? path : "";
        }
    }
}

std::string GoldenRun::ContentOf(const std::string& archive) {
    suite::LibZipArchive zip;
    if (zip.OpenZip(archive) == 0) {
        return text::ReplaceAll(ReadText(archive), "\r\n", " | ");
    }
    const test::TemporaryFolder extracted(test::QuickPlace());
    const std::string separator = scene_.inFull ? "\n    " : " ";
    std::string content;
    if (const auto entry = zip.GetEntryByName("id.dat"); entry && entry->Extract(extracted.Path()) == 1) {
        std::istringstream keys(text::ReplaceAll(extracted.Read("id.dat"), "\r", ""));
        for (std::string key; std::getline(keys, key);) {
            if (scene_.inFull || !(key.starts_with("FromType") || key.starts_with("FromC") ||
                                   key.starts_with("FromA") || key.starts_with("SentOn"))) {
                content += key + separator;
            }
        }
    }
    if (const auto entry = zip.GetEntryByName("sequence.dat"); entry && entry->Extract(extracted.Path()) == 1) {
        content += "and a list: " + extracted.Read("sequence.dat") + " ";
    }
    return Short(content + (zip.GetEntryByName("data.xml") ? "and data" : "and no data"));
}

std::string GoldenRun::Short(const std::string& text) const {
    std::string tidy = Tidy(text);
    HideRandom(tidy, "suz", 16, ".tmp");
    for (const auto& [id, name] :
         {std::pair{MainID, "{acme}"}, std::pair{RoamingID, "{one}"}, std::pair{OtherID, "{two}"}}) {
        tidy = text::ReplaceAll(text::ReplaceAll(tidy, id, name), text::ToLowerCase(id), name);
    }
    return tidy;
}

} // namespace qndr::testing

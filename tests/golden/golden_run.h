#pragma once

#include "services/gated/path_tools.h"
#include "services/gated/registry_tools.h"
#include "shared/failure_rule.h"
#include "support/agent_bench.h"

#include <map>
#include <set>

namespace qndr::testing {

class GoldenRun;

/// A step and what it finds: it is to do there all that it can do.
struct Scene {
    std::string name; ///< of the step; what is behind "_" tells several scenes of one step apart
    void (*prepare)(GoldenRun&);
    Step routine = nullptr; ///< null for the pipeline step of that name
    /// Shows everything, for a routine that several steps call. In the other scenes the calls that only such
    /// routines make are admitted, and what these say of their own failures is left out.
    bool inFull = false;
};

const std::vector<Scene>& Scenes();

/// Whether a call is the step's own: what lies beneath the folder library is seen through its calls.
bool IsOfTheStep(Call call);

/// Lets the log pass the gate: what it asks of the outside is not the step's.
class OpenForTheLog : public LogLines, public services::RegistryToolsWrapper {
  public:
    OpenForTheLog(services::RegistryTools& registryTools, ScriptedGate& gate)
        : RegistryToolsWrapper(registryTools, nullptr), gate_(gate) {}

    std::int32_t GetLong(std::int32_t hive, const std::string& key, const std::string& name,
                         std::int32_t fallback) override {
        gate_.isOpen = name == settings::DebugSyncAgent;
        return RegistryToolsWrapper::GetLong(hive, key, name, fallback);
    }
    void Append(const std::string& path, const std::string& text) override {
        LogLines::Append(path, text);
        gate_.isOpen = false;
        callsBefore.push_back(gate_.Calls().size());
    }
    std::vector<std::size_t> callsBefore; ///< each line

  private:
    ScriptedGate& gate_;
};

/// Lists a folder in the order of the names, and spares the log its folder.
struct SortingPathTools : services::PathToolsWrapper {
    SortingPathTools(services::PathTools& pathTools, const ScriptedGate& theGate)
        : PathToolsWrapper(pathTools, nullptr), gate(theGate) {}
    bool FolderExists(const std::string& path) override {
        return !gate.isOpen && PathToolsWrapper::FolderExists(path);
    }
    Lines FindFiles(const std::string& folder, const std::string& pattern, bool recurse) override {
        Lines files = PathToolsWrapper::FindFiles(folder, pattern, recurse);
        std::ranges::sort(files);
        return files;
    }
    const ScriptedGate& gate;
};

/// One run of a step in its scene, on a computer of its own.
class GoldenRun : public AgentBench, private FailureObserver {
  public:
    using State = std::map<std::string, std::string>;

    /// `before` is what such a run found, to be looked at only once.
    explicit GoldenRun(const Scene& scene, const State& before = {});
    ~GoldenRun() override;

    /// Runs the step with the call of that number failing, none for 0.
    void Play(std::size_t number, ScriptedGate::Way way);
    /// All that it logged and showed and what was different behind it.
    const Lines& Outcome() const { return outcome_; }
    /// The same with its calls between the lines of the log, each run of calls on lines that begin with a blank.
    Lines Transcript() const;
    /// "Database.ExecuteScaler 2" for the second call of that name.
    std::string NameOfCall(std::size_t number) const;
    Call CallAt(std::size_t number) const { return gate.Calls()[number - 1]; }
    /// How many such calls there were up to that one.
    std::ptrdiff_t TimesUpTo(std::size_t number) const;
    /// Whether the refused call raised, as one without a result does.
    bool RefusalRaised() const { return refusalRaised_; }
    std::size_t Calls() const { return gate.Calls().size(); }

    const State& Before() const { return before_; }

    /// The numbers of rows of these tables are looked at too.
    Lines counted;

  private:
    State Look();
    void LookAtRows(State& state, const std::string& rows, const std::string& table, const Lines& columns);
    void LookAtFiles(State& state);
    std::string ContentOf(const std::string& archive);
    std::string Short(const std::string& text) const;
    void TestBody() override {}
    void StatementAbandoned(const std::string& reason) override {
        refusalRaised_ = refusalRaised_ || reason.starts_with("refused");
    }

    const Scene& scene_;
    Step step_;
    OpenForTheLog open_{outside.Services().registryTools, gate};
    SortingPathTools sorting_{outside.Services().pathTools, gate};
    AgentContext running_{
        Replacing(outside.Services(), open_, outside.Services().timers, nullptr, &open_, &sorting_)};
    State before_;
    Lines outcome_;
    bool refusalRaised_ = false;
};

} // namespace qndr::testing

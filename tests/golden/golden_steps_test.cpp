#include "golden/golden_run.h"

#include "agent/pipelines.h"

#include <set>

namespace qndr::testing {
namespace {

using Way = ScriptedGate::Way;

/// What must be taken away from `good` and put into it to become `other`, in order.
Lines Differences(const Lines& good, const Lines& other) {
    std::vector<std::vector<int>> common(good.size() + 1, std::vector<int>(other.size() + 1));
    for (std::size_t i = good.size(); i-- > 0;) {
        for (std::size_t j = other.size(); j-- > 0;) {
            common[i][j] =
                good[i] == other[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
        }
    }
    Lines lines;
    int missing = 0; // in a row
    for (std::size_t i = 0, j = 0; i < good.size() || j < other.size();) {
        if (j == other.size() ||
            (i < good.size() && good[i] != other[j] && common[i + 1][j] >= common[i][j + 1])) {
            if (++missing > 2) {
                lines.pop_back();
            }
            lines.push_back(missing == 1 ? "    - " + good[i]
                                         : "      (and " + std::to_string(missing - 1) + " more)");
            ++i;
            continue;
        }
        missing = 0;
        if (i < good.size() && good[i] == other[j]) {
            ++i;
        } else {
            lines.push_back("    + " + other[j]);
        }
        ++j;
    }
    return lines;
}

/// Whether the call of that number is to fail. Of the entries of an export the first stands for all.
bool IsToFail(const GoldenRun& good, const Scene& scene, std::size_t number) {
    static const std::set<Call> sharedOnly{calls::ObjectFactory::CreateZipArchive,
                                           calls::ZipArchive::AppendFiles,
                                           calls::ZipArchive::WriteZipAndClose,
                                           calls::ZipArchive::CloseZip,
                                           calls::ZipArchive::GetEntryByName,
                                           calls::ZipEntry::Extract,
                                           calls::ObjectFactory::CreateFileManager,
                                           calls::FileManager::Initialize,
                                           calls::FileManager::GetRootFolderPath,
                                           calls::FileManager::PreTerminate,
                                           calls::ObjectFactory::CreateUpgrader,
                                           calls::Upgrader::LatestVersion,
                                           calls::Upgrader::PreTerminate,
                                           calls::IniTools::GetValue,
                                           calls::IniTools::SetValue,
                                           calls::SystemTools::GetIdentifierText,
                                           calls::FileTools::ToFileToken,
                                           calls::PathTools::SplitPath2,
                                           calls::ProgramFacts::Folder,
                                           calls::ProgramFacts::ExecutableName,
                                           calls::WaitableTimers::Create,
                                           calls::FileTools::GetFileBaseName,
                                           calls::FileTools::GetFileDate};
    const Call call = good.CallAt(number);
    return IsOfTheStep(call) && (scene.inFull || !sharedOnly.contains(call)) &&
           (call != calls::Engine::AddToExport || good.TimesUpTo(number) == 1);
}

/// What a routine of the sync files says of its own failure stands in the file of that routine. Elsewhere only
/// what the step makes of it is told.
Lines WithoutDetails(const Lines& lines) {
    static const Lines details{"log: Error: Unable to read the sync file",
                               "log: Error: Unable to process the sync file",
                               "log: Error: Unable to create a ",
                               "log: Managed deleting is disabled.",
                               "log: Unable to create the manage delete folder",
                               "log: Unable to move the sync file"};
    Lines kept;
    bool follows = false;
    for (const std::string& line : lines) {
        const bool isDetail =
            std::ranges::any_of(details, [&](const auto& start) { return line.starts_with(start); }) ||
            line.ends_with(" will not be read because it does not exist.");
        if (!isDetail && !(follows && line == "log: ")) {
            kept.push_back(line);
        }
        follows = isDetail;
    }
    return kept;
}

using Consequences = std::vector<std::pair<Lines, std::string>>;

/// Calls with the same consequence stand together, in the place of the first.
void Enter(Consequences& consequences, const Lines& differences, const std::string& failed) {
    const auto same = std::ranges::find(consequences, differences, &Consequences::value_type::first);
    if (same == consequences.end()) {
        consequences.emplace_back(differences, failed);
        return;
    }
    const std::size_t line = same->second.rfind('\n') + 1;
    same->second += (same->second.size() - line + failed.size() > 110 ? ",\n  " : ", ") + failed;
}

/// The good run, and behind it what is different when each of its calls is refused or raises in turn.
std::string Describe(const Scene& scene) {
    GoldenRun good(scene);
    good.Play(0, Way::Admit);
    Consequences consequences;
    for (std::size_t number = 1; number <= good.Calls(); ++number) {
        if (!IsToFail(good, scene, number)) {
            continue;
        }
        const std::string call = good.NameOfCall(number);
        const auto differencesOf = [&](Way way, bool& raised) {
            GoldenRun run(scene, good.Before());
            run.Play(number, way);
            raised = run.RefusalRaised();
            return Differences(good.Outcome(), scene.inFull ? run.Outcome() : WithoutDetails(run.Outcome()));
        };
        bool raised = false;
        const Lines refused = differencesOf(Way::Refuse, raised);
        Enter(consequences, refused, call);
        if (const Lines broken = raised ? refused : differencesOf(Way::Raise, raised); broken != refused) {
            Enter(consequences, broken, call + " raises");
        }
    }
    std::string text;
    for (const std::string& line : good.Transcript()) {
        text += line + "\n";
    }
    for (const auto& [differences, failed] : consequences) {
        text += "\n* " + failed + "\n" + (differences.empty() ? "    changes nothing\n" : "");
        for (const std::string& line : differences) {
            text += line + "\n";
        }
    }
    return text;
}

class GoldenSteps : public ::testing::TestWithParam<std::size_t> {};

TEST_P(GoldenSteps, DoWhatWasReadAndFoundRight) {
    const Scene& scene = Scenes()[GetParam()];
    const std::string path = QNDR_GOLDEN_FOLDER "/" + scene.name + ".txt";
    const std::string text = Describe(scene);
    if (std::getenv("QNDR_WRITE_GOLDEN") != nullptr) {
        WriteText(path, text);
    }
    EXPECT_EQ(text, ReadText(path)) << "when that is right: QNDR_WRITE_GOLDEN=1, and read the change";
}

INSTANTIATE_TEST_SUITE_P(EveryCall, GoldenSteps, ::testing::Range(std::size_t{0}, Scenes().size()),
                         [](const auto& scene) { return Scenes()[scene.param].name; });

TEST(GoldenScenes, AreThereForEveryStepOfThePipelines) {
    std::set<std::string> steps;
    for (const Scene& scene : Scenes()) {
        steps.insert(scene.name);
    }
    for (const auto& pipeline : {MainSteps(), RoamingSteps()}) {
        for (const PipelineStep& step : pipeline) {
            EXPECT_TRUE(steps.contains(step.name)) << step.name;
        }
    }
}

} // namespace
} // namespace qndr::testing

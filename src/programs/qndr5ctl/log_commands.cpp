#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/log_tail.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/output.h"
#include "services/failure.h"
#include "text/utf8_path.h"

#include <chrono>
#include <thread>

namespace qndr::control {

namespace {

struct EventsArguments {
    std::string file;
    bool json = false;
};

struct LogArguments {
    std::size_t lines = 40;
    bool follow = false;
    bool json = false;
};

constexpr auto PollInterval = std::chrono::milliseconds(500);

void Events(const ControlContext& context, const EventsArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    auto row =
        company.Database().Prepare("SELECT OccurredOn, EventNumber, EventText FROM CompanyEvents ORDER BY ID");
    Listing listing({{"Occurred (UTC)", "occurredOn"}, {"Number", "number"}, {"Event", "text"}});
    while (row.Step()) {
        listing.Add(
            {StoredDate(std::string(row.Text(0))), row.IsNull(1) ? Json() : Json(row.Integer(1)), row.Text(2)});
    }
    if (arguments.json) {
        context.out << listing.ToJson().ToText() << '\n';
    } else {
        listing.PrintTable(context.out, "This company has no events.");
    }
}

LogTail LogOf(const suite::Computer& computer) {
    // The agent's program name is qndr5rwsync, whichever of its programs runs.
    return {text::ToPath(computer.commonApplicationData) / "Velmoran" / "Logs", "qndr5rwsync"};
}

[[noreturn]] void Follow(const ControlContext& context, LogTail& log) {
    for (;;) {
        context.out << log.Poll() << std::flush;
        std::this_thread::sleep_for(PollInterval);
    }
}

void Log(const ControlContext& context, const LogArguments& arguments) {
    LogTail log = LogOf(context.computer);
    const std::vector<std::string> lines = log.LastLines(arguments.lines);
    if (log.NewestFile().empty() && !arguments.follow) {
        throw services::Failure("there is no sync log; 'qndr5ctl settings set DebugSyncAgent 1' turns it on");
    }
    if (arguments.json) {
        Json texts = Json::Array();
        for (const std::string& line : lines) {
            texts.Append(line);
        }
        Json result = Json::Object();
        result.Set("file", text::FromPath(log.NewestFile())).Set("lines", std::move(texts));
        context.out << result.ToText() << '\n';
        return;
    }
    for (const std::string& line : lines) {
        context.out << line << '\n';
    }
    if (arguments.follow) {
        Follow(context, log);
    }
}

} // namespace

void AddLogCommands(const CommandLine& program, const ControlContext& context) {
    const auto events =
        AddCommand<EventsArguments>(program, context, "events", "The events that a company recorded", Events);
    events.app.Add("FILE", events.arguments.file, "The company's .psd file").Required();
    events.app.AddJsonFlag(events.arguments.json);

    const auto log = AddCommand<LogArguments>(program, context, "log", "The sync log of this computer", Log);
    log.app.Add("--lines", log.arguments.lines, "How many of the last lines").ShowDefault().Between(1, 1'000'000);
    const Option follow = log.app.AddFlag("--follow", log.arguments.follow, "Go on with each new line");
    log.app.AddFlag("--json", log.arguments.json, "Write JSON for machines").Excludes(follow);
}

} // namespace qndr::control

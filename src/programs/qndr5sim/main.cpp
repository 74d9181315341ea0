#include "programs/qndr5sim/report.h"
#include "services/failure.h"

#include <CLI/CLI.hpp>
#include <sqlite3.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

namespace {

constexpr int kWentWrong = 1;
constexpr int kBadUsage = 2;

struct Arguments {
    qndr::simulation::SimulationOptions options;
    std::uint64_t seeds = 1;
    bool json = false;
};

void Declare(CLI::App& program, Arguments& arguments) {
    program.add_option("--seed", arguments.options.seed, "the first seed; a run follows from it alone (1)");
    program.add_option("--seeds", arguments.seeds, "how many seeds to run, one after the other (1)");
    program.add_option("--workstations", arguments.options.workstations, "laptops beside main (2)")
        ->check(CLI::Range(1, 20));
    program.add_option("--days", arguments.options.days, "days until the faults end (2)")
        ->check(CLI::Range(1, 3660));
    program
        .add_option("--faults", arguments.options.faults,
                    "only these, with commas, or none; otherwise each seed takes some")
        ->delimiter(',');
    program.add_flag("--standing", arguments.options.standing,
                     "the agents tell each other how they stand, and what goes wrong must mend by itself");
    program.add_flag("--json", arguments.json, "one line of JSON instead of the table");
}

/// A new folder of this run's own.
std::string MakeFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "qndr5-sim.XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) {
        throw qndr::services::Failure("no folder can be made below '" +
                                      std::filesystem::temp_directory_path().string() + "'");
    }
    return path;
}

int RunAll(const Arguments& arguments) {
    qndr::SimulationReport report;
    qndr::simulation::SimulationOptions options = arguments.options;
    if (!arguments.json) {
        std::cout << "seeds " << options.seed << " to " << options.seed + arguments.seeds - 1 << ", "
                  << options.workstations << " workstations, " << options.days
                  << " days, faults: " << (options.faults.empty() ? "some of all, by the seed" : "as named")
                  << std::endl;
    }
    for (std::uint64_t run = 0; run < arguments.seeds; ++run, ++options.seed) {
        options.folder = MakeFolder();
        // An agent that is not told its root folder files what it retires below the present one.
        std::filesystem::current_path(options.folder);
        const auto result = qndr::simulation::Simulation(options).Run();
        std::filesystem::current_path(std::filesystem::temp_directory_path());
        report.Add(result);
        if (result.violation.empty()) {
            std::filesystem::remove_all(options.folder);
        } else {
            std::ofstream events(options.folder + "/events.txt");
            for (const std::string& event : result.lastEvents) {
                events << event << '\n';
            }
            std::cerr << "faults: " << result.faultsInPlan << '\n' << qndr::DescribeFailure(options, result);
        }
        if (!arguments.json && run % 100 == 99) {
            std::cout << run + 1 << " runs" << std::endl;
        }
    }
    std::cout << (arguments.json ? report.ToJson(arguments.options.seed) + "\n" : report.ToTable());
    return report.AllWell() ? 0 : kWentWrong;
}

} // namespace

int main(int argc, char** argv) {
    // The application keeps each company open all the time, so that no pass has to read its schema anew. That is
    // most of what a pass would do.
    sqlite3_enable_shared_cache(1);
    Arguments arguments;
    CLI::App program(
        "Lets a main computer and laptops live through days in which everything goes wrong, from one seed.",
        "qndr5sim");
    Declare(program, arguments);
    try {
        program.parse(argc, argv);
        return RunAll(arguments);
    } catch (const CLI::ParseError& error) {
        const int code = program.exit(error);
        return code == 0 ? 0 : kBadUsage;
    } catch (const std::exception& error) {
        std::cerr << "qndr5sim: " << error.what() << '\n';
        return kWentWrong;
    }
}

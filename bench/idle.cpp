// The measurements of bench/idle: passes of a main company that knows many workstations and has nothing to do. One
// line of JSON for each number of workstations.

#include "dealer.h"
#include "suite/admin/company_creation.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <vector>

namespace {

using namespace qndr;

constexpr int kWarmUps = 3;

/// Workstations in running order that have been sent everything there is.
void AddWorkstations(const sql::Connection& main, int count) {
    auto insert =
        main.Prepare("INSERT INTO RoamingWorkstations (UniqueID, Name, ReferenceCode, SyncState, "
                     "LastAuditID, NextSequenceToRoaming, NextSequenceFromRoaming) "
                     "SELECT printf('10000000-0000-4000-8000-%012d', ?1), 'Laptop ' || ?1, ?1 % 255 + 1, "
                     "4, (SELECT COALESCE(MAX(ID), 0) FROM AuditLog), 1, 1");
    sql::Transaction transaction(main, sql::Transaction::Kind::Write);
    for (int number = 1; number <= count; ++number) {
        insert.Bind(1, std::int64_t{number});
        insert.Step();
        insert.Reset();
    }
    transaction.Commit();
}

void Measure(const std::string& folder, int workstations, int passes) {
    bench::DealerComputer main(folder, "main");
    main.SetUp(suite::MainCompanyType);
    AddWorkstations(*main.Open(), workstations);
    bench::CallTimes times;
    bench::RunningAgent agent(main, &times);
    for (int pass = 0; pass < kWarmUps; ++pass) {
        agent.Pass();
    }
    std::vector<double> seconds;
    for (int pass = 0; pass < passes; ++pass) {
        const double before = times.Seconds();
        times.Start();
        agent.Pass();
        times.Stop();
        seconds.push_back(times.Seconds() - before);
    }
    const std::filesystem::directory_iterator files(main.SyncFolder());
    if (std::any_of(begin(files), end(files),
                    [](const auto& file) { return file.path().extension() != ".rsf"; })) {
        throw std::runtime_error("a pass that had nothing to do has sent something");
    }
    const auto middle = seconds.begin() + passes / 2;
    std::nth_element(seconds.begin(), middle, seconds.end());
    std::cout << "{\"workstations\": " << workstations << ", \"passes\": " << passes << ", \"median\": " << *middle
              << ", \"calls\": ";
    times.Print(std::cout);
    std::cout << "}" << std::endl;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 3) {
        std::cerr << "usage: bench_idle FOLDER PASSES WORKSTATIONS...\n";
        return 2;
    }
    try {
        for (std::size_t i = 2; i < arguments.size(); ++i) {
            Measure(arguments[0] + "/" + arguments[i], std::stoi(arguments[i]), std::stoi(arguments[1]));
        }
    } catch (const std::exception& failure) {
        std::cerr << "bench_idle: " << failure.what() << '\n';
        return 1;
    }
    return 0;
}

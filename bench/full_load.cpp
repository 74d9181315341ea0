// The agent's part of bench/full-load: prepares a dealer, or runs one pass as a process of its own and reports its
// calls and peak memory as JSON.

#include "dealer.h"
#include "suite/admin/company_compare.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <vector>

namespace {

using namespace qndr;

/// A filled main company and a laptop that has sent its request.
void Prepare(const std::string& folder, std::int64_t exchangedRows) {
    bench::Dealer dealer(folder);
    dealer.SetUp(exchangedRows);
    dealer.laptop.RunPass();
    std::int64_t exchanged = 0;
    for (const auto& table :
         suite::CompareCompanies(*dealer.main.Open(), *dealer.laptop.Open(), suite::Scope::Exchanged)) {
        exchanged += table.onlyLeft;
    }
    std::cout << "{\"exchanged\": " << exchanged
              << ", \"databaseBytes\": " << std::filesystem::file_size(dealer.main.DatabaseFile()) << "}\n";
}

/// Peak resident memory of this process. Not from getrusage, which counts the peak of the program that started it.
double PeakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) {
            return std::stod(line.substr(6)) / 1024.0;
        }
    }
    throw std::runtime_error("no VmHWM in /proc/self/status");
}

void Pass(const std::string& folder, const std::string& name) {
    bench::DealerComputer computer(folder, name);
    bench::CallTimes times;
    computer.RunPass(&times);
    std::uintmax_t archive = 0;
    for (const auto& file : std::filesystem::directory_iterator(computer.SyncFolder())) {
        archive = std::max(archive, file.file_size());
    }
    std::cout << "{\"peakMB\": " << PeakMegabytes() << ", \"archiveBytes\": " << archive << ", \"calls\": ";
    times.Print(std::cout);
    std::cout << "}\n";
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 3 && arguments[0] == "prepare") {
            Prepare(arguments[1], std::stoll(arguments[2]));
        } else if (arguments.size() == 3 && arguments[0] == "pass") {
            Pass(arguments[1], arguments[2]);
        } else {
            std::cerr << "usage: bench_full_load prepare FOLDER ROWS | pass FOLDER main|laptop\n";
            return 2;
        }
    } catch (const std::exception& failure) {
        std::cerr << "bench_full_load: " << failure.what() << '\n';
        return 1;
    }
    return 0;
}

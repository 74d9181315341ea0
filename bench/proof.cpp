// The measurements of bench/proof: the digests of all rows of a main company. The last line of each run is JSON.

#include "dealer.h"
#include "suite/standing/row_digests.h"

#include <chrono>
#include <filesystem>
#include <iostream>

namespace {

using namespace qndr;

void Prepare(const std::string& folder, std::int64_t rows) {
    bench::Dealer dealer(folder);
    dealer.SetUp(rows);
    std::cout << dealer.main.DatabaseFile() << std::endl;
}

void Measure(const std::string& folder) {
    bench::Dealer dealer(folder);
    const auto company = dealer.main.Open();
    const auto begin = std::chrono::steady_clock::now();
    std::int64_t rows = 0;
    std::size_t bytes = 0;
    {
        const sql::Transaction reading(*company, sql::Transaction::Kind::Read);
        const std::vector<standing::TableDigests> tables = suite::DigestTables(*company);
        for (const standing::TableDigests& table : tables) {
            for (const standing::Bucket& bucket : table.buckets) {
                rows += bucket.rows;
            }
        }
        bytes = standing::ToText(tables).size();
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    std::cout << "{\"seconds\": " << seconds.count() << ", \"rows\": " << rows << ", \"bytes\": " << bytes << "}"
              << std::endl;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 3 && arguments[0] == "prepare") {
            Prepare(arguments[1], std::stoll(arguments[2]));
        } else if (arguments.size() == 2 && arguments[0] == "digest") {
            Measure(arguments[1]);
        } else {
            std::cerr << "usage: bench_proof prepare FOLDER ROWS | digest FOLDER\n";
            return 2;
        }
    } catch (const std::exception& failure) {
        std::cerr << "bench_proof: " << failure.what() << '\n';
        return 1;
    }
    return 0;
}

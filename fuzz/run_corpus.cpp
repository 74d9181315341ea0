// Runs one fuzzer over the files of its corpus and over a fixed number of mutations of each, the same ones in
// every run: a short look at what the fuzzers guard, for every build and any compiler. Usage: fuzz_<name> CORPUS
// MUTATIONS, or fuzz_<name> FILE to run one input
#include "support.h"

#include <algorithm>
#include <random>

namespace qndr::fuzz {
namespace {

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Runs the input. Whatever ends the program leaves it in the file.
void Run(const std::string& input, const std::filesystem::path& kept) {
    std::ofstream(kept, std::ios::binary) << input;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

std::string Mutated(std::string input, const std::string& donor, std::mt19937& random) {
    const auto below = [&](std::size_t limit) { return random() % std::max<std::size_t>(limit, 1); };
    for (std::size_t count = 1 + below(4); count > 0; --count) {
        const std::size_t at = below(input.size() + 1);
        const std::size_t length = below(16);
        switch (below(5)) {
        case 0:
            input.insert(at, 1, static_cast<char>(below(256)));
            break;
        case 1:
            input.erase(at, length);
            break;
        case 2:
            input.insert(at, donor, below(donor.size()), length);
            break;
        case 3:
            input.insert(at, input, below(input.size()), length);
            break;
        default:
            if (at < input.size()) {
                input[at] = static_cast<char>(input[at] ^ 1 << below(8));
            }
        }
    }
    return input;
}

int RunAll(const std::filesystem::path& corpus, unsigned long mutations) {
    std::vector<std::filesystem::path> files{std::filesystem::directory_iterator(corpus), {}};
    std::sort(files.begin(), files.end());
    if (files.empty()) {
        std::fprintf(stderr, "There are no files in '%s'.\n", corpus.c_str());
        return 1;
    }
    const std::filesystem::path kept = Scratch() / "input";
    std::printf("An input that ends this run stays in '%s'.\n", kept.c_str());
    std::fflush(stdout);
    std::mt19937 random(20261122);
    for (const auto& file : files) {
        const std::string seed = ReadFile(file);
        const std::string donor = ReadFile(files[random() % files.size()]);
        Run(seed, kept);
        for (unsigned long i = 0; i < mutations; ++i) {
            Run(Mutated(seed, donor, random), kept);
        }
    }
    return 0;
}

} // namespace
} // namespace qndr::fuzz

int main(int count, char** arguments) {
    using namespace qndr::fuzz;
    if (count == 3) {
        return RunAll(arguments[1], std::strtoul(arguments[2], nullptr, 10));
    }
    if (count != 2) {
        std::fprintf(stderr, "usage: %s CORPUS MUTATIONS | %s FILE\n", arguments[0], arguments[0]);
        return 2;
    }
    Run(ReadFile(arguments[1]), Scratch() / "input");
    return 0;
}

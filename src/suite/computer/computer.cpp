#include "suite/computer/computer.h"

#include "suite/computer/operating_system.h"

#include <cstdlib>
#include <filesystem>

namespace qndr::suite {
namespace {

std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

} // namespace

Computer Computer::FromEnvironment() {
    std::string name = Environment("QNDR_COMPUTER_NAME");
    if (name.empty()) {
        name = HostName();
    }
    const std::string home = Environment("QNDR_HOME");
    return home.empty() ? UsualPlaces(name) : InFolder(home, name);
}

Computer Computer::InFolder(const std::string& folder, const std::string& name) {
    std::filesystem::path root = std::filesystem::absolute(folder).lexically_normal();
    if (!root.has_filename()) {
        root = root.parent_path();
    }
    return {name, (root / "registry.db").string(), (root / "CommonAppData").string(), (root / "Local").string(),
            (root / "Temp").string()};
}

} // namespace qndr::suite

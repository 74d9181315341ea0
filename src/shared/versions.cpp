#include "shared/versions.h"

#include "shared/failure_rule.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace qndr {
namespace {

/// The high or the low half as a signed number: a part above 32767 prints as a negative one, on both ends alike.
std::string Half(std::uint32_t value, bool high) {
    return std::to_string(static_cast<std::int16_t>(static_cast<std::uint16_t>(high ? value >> 16U : value)));
}

} // namespace

std::string GetLatestVersion(const services::AgentServices& services) {
    std::string version = "(Unknown)";
    std::unique_ptr<services::Upgrader> upgrader;
    Attempt([&] { upgrader = services.objects.CreateUpgrader(); });
    if (upgrader == nullptr) {
        return version;
    }
    Attempt([&] { version = upgrader->LatestVersion(); });
    Attempt([&] { upgrader->PreTerminate(); });
    return version;
}

std::string GetApplicationVersion(const services::AgentServices& services) {
    std::string path;
    Attempt([&] { path = services.pathTools.FixPath(services.program.Folder(), true) + "qndr5.exe"; });
    if (Holds([&] { return !services.fileTools.FileExists(path); })) {
        return "";
    }
    return GetFileVersionText(services, path);
}

std::string GetFileVersionText(const services::AgentServices& services, const std::string& path) {
    std::optional<services::FixedFileVersion> version;
    Attempt([&] { version = services.fileVersions.GetFileVersion(path); });
    if (!version) {
        return "";
    }
    return Half(version->high, true) + "." + Half(version->high, false) + "." + Half(version->low, true) + "." +
           Half(version->low, false);
}

} // namespace qndr

#pragma once

#include "services/directory_calls.h"
#include "services/gated/forwarding.h"

namespace qndr::services {

class DirectoryListingWrapper : public Forwarding<DirectoryListing> {
  public:
    using Forwarding::Forwarding;

    std::optional<DirectoryEntry> Next() override {
        return Ask(calls::DirectoryListing::Next, Raises,
                   [](DirectoryListing& listing) { return listing.Next(); });
    }
};

/// Its listings are behind the gate too.
class DirectoryCallsWrapper : public Forwarding<DirectoryCalls> {
  public:
    using Forwarding::Forwarding;

    char Separator() const override {
        return Pass([](DirectoryCalls& system) { return system.Separator(); });
    }
    std::size_t MaximumPathLength() const override {
        return Pass([](DirectoryCalls& system) { return system.MaximumPathLength(); });
    }
    std::unique_ptr<DirectoryListing> List(const std::string& folder, const std::string& pattern) override {
        return Behind<DirectoryListingWrapper>(
            Ask(calls::DirectoryCalls::List, nullptr,
                [&](DirectoryCalls& system) { return system.List(folder, pattern); }),
            Gate());
    }
    std::optional<DirectoryEntry> Find(const std::string& path) override {
        return Ask(calls::DirectoryCalls::Find, std::nullopt,
                   [&](DirectoryCalls& system) { return system.Find(path); });
    }
    bool MakeDirectory(const std::string& path) override {
        return Ask(calls::DirectoryCalls::MakeDirectory, false,
                   [&](DirectoryCalls& system) { return system.MakeDirectory(path); });
    }
    bool RemoveEmptyDirectory(const std::string& path) override {
        return Ask(calls::DirectoryCalls::RemoveEmptyDirectory, false,
                   [&](DirectoryCalls& system) { return system.RemoveEmptyDirectory(path); });
    }
    std::string TemporaryPath() override {
        return Ask(calls::DirectoryCalls::TemporaryPath, Raises,
                   [](DirectoryCalls& system) { return system.TemporaryPath(); });
    }
    NetworkConnection FindNetworkConnection(const std::string& drive) override {
        return Ask(calls::DirectoryCalls::FindNetworkConnection, Raises,
                   [&](DirectoryCalls& system) { return system.FindNetworkConnection(drive); });
    }
    bool MatchesPattern(const std::string& name, const std::string& pattern) override {
        return Ask(calls::DirectoryCalls::MatchesPattern, false,
                   [&](DirectoryCalls& system) { return system.MatchesPattern(name, pattern); });
    }
    std::string CompactPath(const DeviceContext& device, const std::string& path, int width) override {
        return Ask(calls::DirectoryCalls::CompactPath, Raises,
                   [&](DirectoryCalls& system) { return system.CompactPath(device, path, width); });
    }
};

} // namespace qndr::services

#pragma once

#include "services/file_tools.h"
#include "services/platform.h"
#include "services/registry_tools.h"
#include "services/variant.h"

#include <map>
#include <string>
#include <utility>

namespace qndr::testing {

/// Settings in memory: all values as text, addressed by key and name exactly as they are given.
struct MemoryRegistry : services::RegistryTools {
    std::string GetString(std::int32_t, const std::string& key, const std::string& name,
                          const std::string& fallback) override {
        const auto found = values.find({key, name});
        return found == values.end() ? fallback : found->second;
    }
    std::int32_t GetLong(std::int32_t hive, const std::string& key, const std::string& name,
                         std::int32_t fallback) override {
        return Variant(GetString(hive, key, name, std::to_string(fallback))).ToLong();
    }
    void SetString(std::int32_t, const std::string& key, const std::string& name,
                   const std::string& value) override {
        values[{key, name}] = value;
    }
    void SetLong(std::int32_t hive, const std::string& key, const std::string& name, std::int32_t value) override {
        SetString(hive, key, name, std::to_string(value));
    }

    std::map<std::pair<std::string, std::string>, std::string> values;
};

/// A clock that stands.
struct FixedClock : services::Clock {
    Date Now() const override { return now; }
    services::TimeZoneInformation GetTimeZoneInformation() const override { return zone; }

    Date now = *ParseDate("2026-11-14 18:10:00");
    services::TimeZoneInformation zone;
};

/// Files in memory, by their full paths, with either separator; the log can be appended to them.
struct MemoryFiles : services::FileTools, services::TextAppender {
    bool FileIsPresent(const std::string& path) override { return files.contains(path); }
    bool FileExists(const std::string& path) override { return files.contains(path); }
    std::int64_t GetFileSize(const std::string& path) override {
        return static_cast<std::int64_t>(Existing(path).size());
    }
    std::string GetFileName(const std::string& path) override { return path.substr(path.find_last_of("\\/") + 1); }
    std::string GetFileBaseName(const std::string& path) override {
        const std::string name = GetFileName(path);
        return name.substr(0, name.rfind('.'));
    }
    bool FileHasAttribute(const std::string&, int) override { return false; }
    Date GetFileDate(const std::string& path) override {
        Existing(path);
        return date;
    }
    std::string CreateTemporaryFile(const std::string& folder, const std::string& prefix,
                                    const std::string& extension) override {
        const std::string path = folder + prefix + std::to_string(files.size()) + extension;
        return MayCreate(path) && files.emplace(path, "").second ? path : "";
    }
    bool DeleteFile(const std::string& path) override { return files.erase(path) == 1; }
    bool CopyFile(const std::string& source, const std::string& target, bool overwrite) override {
        if (!files.contains(source) || (files.contains(target) && !overwrite)) {
            return false;
        }
        files[target] = files[source];
        return true;
    }
    bool MoveFile(const std::string& source, const std::string& target, bool overwrite) override {
        return CopyFile(source, target, overwrite) && DeleteFile(source);
    }
    std::string ToFileToken(const std::string& text) override { return text; }
    void Append(const std::string& path, const std::string& text) override {
        if (!MayCreate(path)) {
            throw services::Failure("cannot append to '" + path + "'");
        }
        files[path] += text;
    }

    std::map<std::string, std::string> files;
    Date date = *ParseDate("2026-11-14 18:10:00"); ///< of every file
    bool writable = true;

  private:
    bool MayCreate(const std::string& path) const { return writable && !path.empty(); }
    const std::string& Existing(const std::string& path) const {
        const auto found = files.find(path);
        if (found == files.end()) {
            throw services::Failure("there is no file '" + path + "'");
        }
        return found->second;
    }
};

/// Messages that nobody sends; counts how often they were let through.
struct CountedMessages : services::MessagePump {
    void ProcessMessages() override { ++count; }
    int count = 0;
};

} // namespace qndr::testing

#include "suite/files/packed_texts.h"

#include "services/failure.h"

#include <zip.h>

#include <memory>

namespace qndr::suite {

namespace {

[[noreturn]] void Fail(zip_error_t* error) {
    throw services::Failure(std::string("an archive cannot be made: ") + zip_error_strerror(error));
}

void Add(zip_t* archive, const std::string& name, std::string_view content) {
    zip_source_t* const source = zip_source_buffer(archive, content.data(), content.size(), 0);
    if (source == nullptr || zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8) < 0) {
        zip_source_free(source);
        Fail(zip_get_error(archive));
    }
}

std::string BytesOf(zip_source_t* buffer) {
    zip_stat_t facts;
    if (zip_source_stat(buffer, &facts) != 0 || zip_source_open(buffer) != 0) {
        Fail(zip_source_error(buffer));
    }
    std::string bytes(facts.size, '\0');
    const zip_int64_t read = zip_source_read(buffer, bytes.data(), bytes.size());
    zip_source_close(buffer);
    if (read != static_cast<zip_int64_t>(bytes.size())) {
        Fail(zip_source_error(buffer));
    }
    return bytes;
}

} // namespace

std::string PackTexts(const std::vector<std::pair<std::string, std::string_view>>& entries) {
    zip_error_t error;
    zip_error_init(&error);
    const std::unique_ptr<zip_source_t, void (*)(zip_source_t*)> buffer(
        zip_source_buffer_create(nullptr, 0, 0, &error), zip_source_free);
    if (!buffer) {
        Fail(&error);
    }
    zip_source_keep(buffer.get()); // it outlives the archive
    std::unique_ptr<zip_t, void (*)(zip_t*)> archive(zip_open_from_source(buffer.get(), ZIP_TRUNCATE, &error),
                                                     zip_discard);
    if (!archive) {
        zip_source_free(buffer.get());
        Fail(&error);
    }
    for (const auto& [name, content] : entries) {
        Add(archive.get(), name, content);
    }
    if (zip_close(archive.get()) != 0) {
        Fail(zip_get_error(archive.get()));
    }
    static_cast<void>(archive.release());
    return BytesOf(buffer.get());
}

} // namespace qndr::suite

#include "suite/exchange/import_pipe.h"

#include <algorithm>

namespace qndr::suite {

ImportPipe::ImportPipe(ImportReader& reader) {
    for (ImportBatch& batch : batches_) {
        free_.push_back(&batch);
    }
    thread_ = std::thread([this, &reader] { ReadAll(reader); });
}

ImportPipe::~ImportPipe() {
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

const ImportBatch* ImportPipe::Next() {
    std::unique_lock lock(mutex_);
    if (inUse_ != nullptr) {
        if (inUse_->text.capacity() > bounds::LargeRecord) {
            std::string().swap(inUse_->text);
        }
        free_.push_back(inUse_);
        inUse_ = nullptr;
        changed_.notify_all();
    }
    changed_.wait(lock, [&] { return !full_.empty() || atEnd_; });
    if (!full_.empty()) {
        inUse_ = full_.front();
        full_.pop_front();
        return inUse_;
    }
    if (failure_) {
        std::rethrow_exception(failure_);
    }
    return nullptr;
}

ImportBatch* ImportPipe::WaitForFree() {
    std::unique_lock lock(mutex_);
    // Three large records at once would take three times the memory.
    const auto isLarge = [](const ImportBatch* batch) {
        return batch != nullptr && batch->text.size() > bounds::LargeRecord;
    };
    changed_.wait(lock, [&] {
        return stop_ || (!free_.empty() && !isLarge(inUse_) && std::none_of(full_.begin(), full_.end(), isLarge));
    });
    if (stop_) {
        return nullptr;
    }
    ImportBatch* const batch = free_.front();
    free_.pop_front();
    return batch;
}

void ImportPipe::ReadAll(ImportReader& reader) {
    std::exception_ptr failure;
    try {
        while (ImportBatch* const batch = WaitForFree()) {
            if (!reader.Read(*batch)) {
                break;
            }
            const std::lock_guard lock(mutex_);
            full_.push_back(batch);
            changed_.notify_all();
        }
    } catch (...) {
        failure = std::current_exception();
    }
    const std::lock_guard lock(mutex_);
    failure_ = failure;
    atEnd_ = true;
    changed_.notify_all();
}

} // namespace qndr::suite

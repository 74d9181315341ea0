#pragma once

#include "suite/exchange/import_reader.h"

#include <array>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>

namespace qndr::suite {

/// Reads a file on a thread of its own, a few batches ahead of whoever writes them to the database: the two take
/// about the same time. The caller's thread alone touches the database, and no thread outlives this object.
class ImportPipe {
  public:
    explicit ImportPipe(ImportReader& reader);
    ~ImportPipe();
    ImportPipe(const ImportPipe&) = delete;
    ImportPipe& operator=(const ImportPipe&) = delete;

    /// The next batch, valid until the next call; null at the end of the file. Raises what the reader raised.
    const ImportBatch* Next();

  private:
    void ReadAll(ImportReader& reader);
    ImportBatch* WaitForFree();

    std::array<ImportBatch, 3> batches_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<ImportBatch*> free_;
    std::deque<ImportBatch*> full_;
    ImportBatch* inUse_ = nullptr;
    bool atEnd_ = false;
    bool stop_ = false;
    std::exception_ptr failure_;
    std::thread thread_;
};

} // namespace qndr::suite

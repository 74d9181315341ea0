#pragma once

#include <set>
#include <string>
#include <vector>

namespace qndr::suite {

/// What is wrong with this computer while a company is open: its database is locked or damaged, the disk is full,
/// a file cannot be read. One for the whole suite of a process.
///
/// A fault of this computer must never cost a file. The steps count a file as done when its import has failed,
/// and most of them retire it whatever became of their numbers. So from the first fault on nothing is stored,
/// built, sent or retired for this company until it is closed: each service says no in the way in which it always
/// may, and the next pass finds everything as it was.
class ComputerTrouble {
  public:
    /// A company is opened, or closed: nothing is wrong.
    void Clear();

    /// `text` is one sentence without a full stop that tells what could not be done. The first one stays.
    void Note(const std::string& text);
    bool Stands() const { return !text_.empty(); }
    const std::string& Text() const { return text_; }
    /// For whoever would store something: true while the trouble stands. The sync file in hand is held then.
    bool Refuses();

    /// An archive is read. What fails from now on fails for it.
    void TakeInHand(const std::string& archive) { inHand_ = archive; }
    /// A file's data are in. Its number is not stored yet, so it stays in hand.
    void NoteImported() { hasStored_ = true; }
    /// A statement has done what was asked: what is in hand has been dealt with, or will be read again.
    void NoteStored();
    /// Whether anything was stored since the company was opened.
    bool HasStored() const { return hasStored_; }
    /// For whoever would retire a file: true when it must stay where it is.
    bool Holds(const std::string& path);
    /// Whether a step would have retired a file that is held.
    bool HasKeptBack() const { return hasKeptBack_; }

    /// A company that lacks data of its first exchange, and whose state does not tell so yet. Outlives Clear.
    void SetLacksFirstData(const std::string& database, bool lacks);
    bool LacksFirstData(const std::string& database) const { return lackingFirstData_.contains(database); }

  private:
    std::string text_;
    std::string inHand_;
    std::vector<std::string> held_;
    bool hasStored_ = false;
    bool hasKeptBack_ = false;
    std::set<std::string> lackingFirstData_;
};

} // namespace qndr::suite

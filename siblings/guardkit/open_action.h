// An action while it is open: its files, from its first part to its end.
#pragma once

#include "siblings/guardkit/journal_file.h"
#include "siblings/guardkit/journal_folder.h"
#include "siblings/guardkit/retention.h"

#include <optional>
#include <string>
#include <vector>

namespace smh {

// Makes nothing until its first part begins. The files stay open for it alone from then on, which says to
// everybody that its owner lives; the journal's lock is its parts' only. For one thread at a time.
class OpenAction {
 public:
  // `undoes` is the action that this one takes back, 0 for an ordinary one. Raises std::bad_alloc.
  explicit OpenAction(std::wstring title, std::uint32_t undoes = 0, std::vector<std::uint32_t> chosen = {});
  // What Finish has not ended counts as interrupted, unless nothing was recorded.
  ~OpenAction();
  OpenAction(const OpenAction&) = delete;
  OpenAction& operator=(const OpenAction&) = delete;

  // The journal's folder, from the first call on held until the end. Raises EOSError.
  const JournalFolder& Folder();
  // The action's number in the journal; 0 before its first part.
  std::uint32_t Id() const noexcept { return files_.empty() ? 0 : files_.front().Id(); }
  // Whether it is an undo.
  bool IsUndo() const noexcept { return undoes_ != 0; }

  // The file for the next part, which has begun in it; valid until the part's end. The number is filled in,
  // and the time when it is 0. For the owner of the journal's lock. Raises EOSError.
  JournalFile& BeginPart(PartHeader part);
  // Gives the part another header, as long as nothing of it was written.
  void RenamePart(PartHeader part);
  // Of the part that began last; see JournalFile::EndPart.
  void EndPart(const JournalFile::Ending& ending) noexcept;
  // Leaves it without an end, and with it the action, unless nothing was written of it.
  void AbandonPart() noexcept;

  // Ends the action and closes its files, and answers its number, 0 when nothing is left in them. With the
  // journal's lock or without.
  std::uint32_t Finish() noexcept;
  // Lets go of the oldest actions when there is too much. The caller holds the journal's lock; otherwise
  // without one, and not at all while others hold it for a second.
  void LetGoOfOldest(bool lockHeld) noexcept;

 private:
  void AddFile();
  std::uint32_t PartCount() const noexcept;
  JournalFile& File() noexcept { return files_.back(); }

  // Read at once: it may load a library.
  const Retention retention_ = ReadRetention();
  const std::wstring title_;
  const std::uint32_t undoes_;
  const std::vector<std::uint32_t> chosen_;
  std::optional<JournalFolder> folder_;
  std::wstring firstTitle_;
  std::vector<JournalFile> files_;
  // Whether a part came about; whether one was left without an end.
  bool hasDone_ = false;
  bool abandoned_ = false;
  bool finished_ = false;
};

}  // namespace smh

// The files of actions: "00000012.open" from the first part on, "00000012.journal" once the action has ended.
//
// What stands in them: format/journal_format.h. Failures raise EOSError unless it is said otherwise.
#pragma once

#include "infra/runtime/handle.h"
#include "siblings/guardkit/format/journal_format.h"
#include "siblings/guardkit/journal_folder.h"

#include <optional>
#include <set>
#include <vector>

namespace smh {

// Eight decimal digits.
inline constexpr std::uint32_t kGreatestJournalId = 99'999'999;

// What the folder's listing says about a file of the journal.
struct JournalName {
  std::uint32_t id = 0;
  bool closed = false;
  std::uint64_t size = 0;
  std::uint64_t written = 0;  // FILETIME
  bool isFolder = false;      // somebody's, of that name

  // The name without folder: eight decimal digits and the extension.
  std::wstring FileName() const;
};

// By id, whatever stands in the files. Other files in the folder are passed over.
std::vector<JournalName> ListJournals(const JournalFolder& folder);

// What can be told of a file that holds no journal.
enum class JournalRead {
  kRead,
  kGone,
  kBlank,       // no bytes, or zeros
  kHeld,        // by another program, or from us: it may be readable another time
  kUnreadable,  // a folder, what is too large, damaged in its header, or another action's
};
struct ReadJournalFile {
  JournalRead result = JournalRead::kUnreadable;
  JournalContents contents = {};
};
// What stands behind a torn record is left out. Needs no lock: a file that is being written is read as far as
// it got. Raises std::bad_alloc alone.
ReadJournalFile ReadJournal(const JournalFolder& folder, const JournalName& name);
// Whether nobody has an unfinished file open to write, nor keeps others from that: its owner is dead then.
bool IsLeftBehind(const JournalFolder& folder, const JournalName& name) noexcept;
// Whether the process that began an unfinished file still has it open to write: neither death nor the end of
// its thread leaves it so. Another program that holds the file of a dead one is not taken for it.
bool OwnerLives(const JournalFolder& folder, const CheckpointHeader& header) noexcept;

// Writes an end to a file whose owner died (JournalEnd::kClosed), and gives it its other name: the action is
// no longer among those that are named at every start. One that has an end gets the name only. The caller
// holds the journal's lock; a failure leaves it as it is.
void CloseJournal(const JournalFolder& folder, const JournalName& name) noexcept;

// A file of an action being written, by one thread, which holds the journal's lock while a part is open.
// Whatever could not be written whole is taken back, or the file takes no more records. Behind each record
// zeros keep room for those that have to follow: a disk that is full by then does not make a change that was
// done an interrupted one.
class JournalFile {
 public:
  // Makes the file; its header is on the disk when this returns, or no file is left.
  JournalFile(const JournalFolder& folder, const CheckpointHeader& header);

  // Its number, how many steps were appended so far, and how many bytes it has.
  std::uint32_t Id() const noexcept { return name_.id; }
  std::uint32_t StepCount() const noexcept { return steps_; }
  std::uint64_t Size() const noexcept { return size_; }
  // Parts of which something was written, and whether that is so of the one that began last.
  std::uint32_t PartCount() const noexcept { return parts_; }
  bool HasPartSteps() const noexcept { return !pending_ && parts_ != 0; }

  // The part that follows, which is written with its first step; until then its header may be given anew.
  void BeginPart(const PartHeader& part) { pending_ = part; }
  // Answers the step's number in the file, from 0; the record is on the disk when this returns.
  std::uint32_t AppendStep(const Step& step, const StepSource& source);
  // Notes the Win32 status that step `number` ended with. Without flushing: a mark that is lost only makes
  // the undo look closer.
  void AppendMark(std::uint32_t number, LSTATUS status) noexcept;
  struct Ending {
    // One without steps is written too.
    bool evenEmpty = false;
    // The change that the part was for did not come about.
    bool failed = false;
    // Nothing of it is left to undo: the part goes when its end cannot be written.
    bool evenWithout = false;
    // Steps whose marks do not count any more, because they were taken back.
    std::set<std::uint32_t> takenBack = {};
  };
  // False when the part's end could not be written: Finish leaves the action interrupted then.
  bool EndPart(const Ending& ending) noexcept;

  // Nothing of its only part is left, whose end could not be written: Finish deletes the file.
  bool IsWorthless() const noexcept { return unended_ && worthless_; }
  // Ends and closes the file; one without parts is deleted. Nothing else may be called afterwards. When the
  // end cannot be written the action counts as interrupted.
  void Finish(JournalEnd end, std::uint32_t continuedBy) noexcept;
  // The same without an end.
  void Abandon() noexcept;

 private:
  // With so many zeros behind it.
  void Append(ByteVector record, std::size_t room);
  // Makes zeros of everything behind that size: a torn record would hide what is written behind it.
  void CutTo(std::uint64_t size, std::size_t room) noexcept;
  bool Clear(std::uint64_t from, std::uint64_t to) noexcept;
  bool Seek(std::uint64_t to) noexcept;
  void Remove() noexcept;

  std::wstring folder_;
  JournalName name_;
  ScopedHandle file_;
  std::uint64_t size_ = 0;
  std::size_t room_ = 0;
  std::uint32_t steps_ = 0;
  std::uint32_t parts_ = 0;
  std::optional<PartHeader> pending_;
  // Where the open part begins, and how many steps stand in front of it.
  std::uint64_t partStart_ = 0;
  std::uint32_t partFirst_ = 0;
  bool broken_ = false;
  // A part's end is missing; nothing of the only part is left.
  bool unended_ = false;
  bool worthless_ = false;
};

}  // namespace smh

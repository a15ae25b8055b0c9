// The files of checkpoints: "00000012.open" from the begin on, "00000012.journal" once the checkpoint is
// finished.
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

// What the folder's listing says about a checkpoint.
struct JournalName {
  std::uint32_t id = 0;
  bool closed = false;
  std::uint64_t size = 0;

  // The name without folder: eight decimal digits and the extension.
  std::wstring FileName() const;
};

// By id, whatever stands in the files. Other files in the folder are passed over.
std::vector<JournalName> ListJournals(const JournalFolder& folder);
// None for a file that has gone, is no journal or is another checkpoint's. What stands behind a torn record
// is left out. Needs no lock: a checkpoint that is being written is read as far as it got.
std::optional<JournalContents> ReadJournal(const JournalFolder& folder, const JournalName& name);
// Takes an interrupted checkpoint out of those that are named at every start. The caller holds the journal's
// lock; a failure leaves it among them.
void CloseJournal(const JournalFolder& folder, std::uint32_t id) noexcept;

// A checkpoint being written, by one thread, which holds the journal's lock. Whatever could not be written
// whole is taken back, or the file takes no more records. Behind a step zeros keep room for its mark and the
// end: a disk that is full by then does not make a change that was done an interrupted one.
class JournalFile {
 public:
  // Makes the file; its header is on the disk when this returns, or no file is left.
  JournalFile(const JournalFolder& folder, const CheckpointHeader& header);

  // Its number, and how many steps were appended so far.
  std::uint32_t Id() const noexcept { return name_.id; }
  std::uint32_t StepCount() const noexcept { return steps_; }

  // Answers the step's number in the checkpoint, from 0; the record is on the disk when this returns.
  std::uint32_t AppendStep(const Step& step, const StepSource& source = {});
  // Notes the Win32 status that step `number` ended with. Without flushing: a mark that is lost only makes
  // the undo look closer.
  void AppendMark(std::uint32_t number, LSTATUS status) noexcept;
  struct Ending {
    // One without steps is kept too.
    bool evenEmpty = false;
    // The change that the checkpoint was for did not come about.
    bool failed = false;
    // Nothing of it is left to undo: the file goes when its end cannot be written.
    bool evenWithout = false;
    // Steps whose marks do not count any more, because they were taken back.
    std::set<std::uint32_t> takenBack = {};
  };
  // Ends and closes the file; one without steps is deleted. Nothing else may be called afterwards. When the
  // end cannot be written the checkpoint counts as interrupted.
  void Finish(const Ending& ending) noexcept;

 private:
  // With so many zeros behind it.
  void Append(ByteVector record, std::size_t room = 0);
  // A torn record would hide everything behind it. Keeps the room where there is any.
  void CutTo(std::uint64_t size) noexcept;
  bool Seek(std::uint64_t to) noexcept;

  std::wstring folder_;
  JournalName name_;
  ScopedHandle file_;
  std::uint64_t size_ = 0;
  std::uint32_t steps_ = 0;
  bool broken_ = false;
};

}  // namespace smh

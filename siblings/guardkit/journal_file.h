// The files of checkpoints: "00000012.open" from the begin on, "00000012.journal" once the checkpoint is
// finished.
#pragma once

#include "siblings/guardkit/journal_folder.h"
#include "siblings/guardkit/format/journal_format.h"
#include "infra/runtime/handle.h"

#include <optional>
#include <vector>

namespace smh {

// What the folder's listing says about a checkpoint.
struct JournalName {
  std::uint32_t id = 0;
  bool closed = false;
  std::uint64_t size = 0;

  std::wstring FileName() const;
};

// By id. Raises EOSError.
std::vector<JournalName> ListJournals(const JournalFolder& folder);
// None for a file that has gone or is no journal. Raises EOSError when it cannot be read.
std::optional<JournalContents> ReadJournal(const JournalFolder& folder, const JournalName& name);
// Takes an interrupted checkpoint out of those that are named at every start.
void CloseJournal(const JournalFolder& folder, std::uint32_t id) noexcept;

// A checkpoint being written. The caller holds the journal's lock. Whatever could not be written whole is
// taken back, or the file takes no more records.
class JournalFile {
 public:
  // Makes the file; its header is on the disk when this returns. Raises EOSError.
  JournalFile(const JournalFolder& folder, const CheckpointHeader& header);

  std::uint32_t Id() const noexcept { return name_.id; }
  std::uint32_t StepCount() const noexcept { return steps_; }

  // The step's number; the record is on the disk when this returns. Raises EOSError.
  std::uint32_t AppendStep(const Step& step);
  // Without flushing: a mark that is lost only makes the undo look closer.
  void AppendMark(std::uint32_t number, LSTATUS status) noexcept;
  // Ends and closes the file; one without steps is deleted unless `evenEmpty`. Nothing else may be called
  // afterwards.
  void Finish(bool evenEmpty = false) noexcept;

 private:
  void Append(const ByteVector& record);
  // A torn record would hide everything behind it.
  void CutTo(std::uint64_t size) noexcept;

  std::wstring folder_;
  JournalName name_;
  ScopedHandle file_;
  std::uint64_t size_ = 0;
  std::uint32_t steps_ = 0;
  bool broken_ = false;
};

}  // namespace smh

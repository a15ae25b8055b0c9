// The bytes of a journal: eight of signature, then records. A record is the payload's size and checksum, each
// four bytes, and the payload; its first byte says what it is. docs/undo.md describes every field.
//
// Records are only ever appended, so that whatever stops a writer leaves whole records and at most one torn
// one behind them.
#pragma once

#include "infra/runtime/byte_cursor.h"
#include "siblings/guardkit/format/journal_steps.h"

#include <optional>

namespace smh {

// A journal that grows beyond this is not read, and not written either.
inline constexpr std::uint64_t kLargestJournal = 64u << 20;

// What is appended to a journal. All raise std::bad_alloc; any thread.
//
// The beginning of a file: signature and header.
ByteVector EncodeBeginning(const CheckpointHeader& header);
// Steps are numbered from 0 in the order of the file. A source of no kind leaves no trace.
ByteVector EncodeStep(std::uint32_t number, const Step& step, const StepSource& source = {});
// `status` is a Win32 status; 0 marks the step as done. Only kTakenBack is a second mark of the same step.
inline constexpr std::uint32_t kTakenBack = 1223;  // ERROR_CANCELLED
ByteVector EncodeMark(std::uint32_t number, std::uint32_t status);
// `failed`: the change that the checkpoint was for did not come about.
ByteVector EncodeEnd(std::uint32_t stepCount, bool failed = false);

// What a file holds up to its first record that is torn, damaged, or not what the records before it allow.
// None when not even the header can be read. The contents own their texts and data. Raises std::bad_alloc;
// any thread.
std::optional<JournalContents> DecodeJournal(Bytes file);

}  // namespace smh

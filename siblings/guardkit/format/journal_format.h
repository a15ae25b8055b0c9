// The bytes of a journal: eight of signature, then records. A record is the payload's size and checksum and
// the checksum of these two, each four bytes, and the payload; its first byte says what it is. docs/undo.md
// describes every field.
//
// Records are only ever appended. Behind each the writer leaves zeros as room for what has to follow it, so
// that a file that ends anywhere else was cut, and anything but zeros there is a torn or damaged record.
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
// Parts are numbered on through the action's files; each begins where the one before it has ended or stopped.
ByteVector EncodePart(const PartHeader& part);
// Steps are numbered from 0 in the order of the file. A source of no kind leaves no trace.
ByteVector EncodeStep(std::uint32_t number, const Step& step, const StepSource& source = {});
// `status` is a Win32 status; 0 marks the step as done. Only kTakenBack is a second mark of the same step.
inline constexpr std::uint32_t kTakenBack = 1223;  // ERROR_CANCELLED
ByteVector EncodeMark(std::uint32_t number, std::uint32_t status);
// The part's, and the action's in this file; `stepCount` is that of the file by then, `continuedBy` the file
// that goes on, 0 for none.
ByteVector EncodePartEnd(std::uint32_t stepCount, bool failed);
ByteVector EncodeEnd(std::uint32_t stepCount, JournalEnd end, std::uint32_t continuedBy = 0);

// The zeros that are left behind such a record, at least: room for a step's mark, the part's end, the
// action's.
inline constexpr std::size_t kPrefixSize = 12;
inline constexpr std::size_t kRoomBehindPartEnd = kPrefixSize + 10;
inline constexpr std::size_t kRoomBehindBeginning = kRoomBehindPartEnd;
inline constexpr std::size_t kRoomBehindMark = kRoomBehindPartEnd + kPrefixSize + 6;
inline constexpr std::size_t kRoomBehindStep = kRoomBehindMark + kPrefixSize + 9;

// What a file holds up to its first record that is torn, damaged, or not what the records before it allow.
// None when not even the header can be read. The contents own their texts and data. Raises std::bad_alloc;
// any thread.
std::optional<JournalContents> DecodeJournal(Bytes file);

// Whether a file holds nothing at all: no bytes, or zeros. Any thread.
bool IsBlank(Bytes file) noexcept;

// A record of its own, prefix and payload, and the next one's payload; none at the end and where the record
// is torn or damaged. For other files of the journal's folder. Raise std::bad_alloc; any thread.
ByteVector FrameRecord(Bytes payload);
std::optional<Bytes> NextRecord(ByteCursor& file) noexcept;

}  // namespace smh

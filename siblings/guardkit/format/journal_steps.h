// What the journal knows of a change: the state before it and the state it leaves. Nothing here needs
// Windows.
//
// Texts are UTF-16 units, one per wchar_t on every platform. Keys go by their real place
// ("HKEY_USERS\S-1-5-21-... \Software\...", "HKEY_LOCAL_MACHINE\Software\Wow6432Node\..."): so a step names
// its registry view and its user, whatever view and user the process has that reads it.
//
// Everything here is a value that owns what it holds: any thread may have its own.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace smh {

using ByteVector = std::vector<std::byte>;
using ContentHash = std::array<std::byte, 32>;  // SHA-256

// A state that does not exist has no other fields.
struct ValueState {
  bool exists = false;
  std::uint32_t type = 0;
  ByteVector data;
  bool operator==(const ValueState&) const = default;
};

// A value of a key; `type` is a REG_ constant.
struct NamedValue {
  std::wstring name;
  std::uint32_t type = 0;
  ByteVector data;
  auto operator<=>(const NamedValue&) const = default;
};

// One key without its subkeys.
struct KeyState {
  bool exists = false;
  std::wstring className;
  ByteVector security;  // self-relative: owner, group, DACL
  std::vector<NamedValue> values;
  bool operator==(const KeyState&) const = default;
};

// One stream of a file, its content by size in bytes and hash.
struct StreamState {
  std::wstring name;  // empty for the content itself, ":name" for another stream
  std::uint64_t size = 0;
  ContentHash hash = {};
  bool operator==(const StreamState&) const = default;
};

// One file: FILE_ATTRIBUTE_ bits, times, security as in KeyState, and its streams, the content first.
struct FileState {
  bool exists = false;
  std::uint32_t attributes = 0;
  std::uint64_t created = 0;  // FILETIMEs
  std::uint64_t accessed = 0;
  std::uint64_t written = 0;
  ByteVector security;
  std::vector<StreamState> streams;
  bool operator==(const FileState&) const = default;
};

// A value written or deleted.
struct ValueStep {
  std::wstring key;
  std::wstring name;
  ValueState before;
  ValueState after;
  bool operator==(const ValueStep&) const = default;
};

// A key made (empty) or deleted.
struct KeyStep {
  std::wstring key;
  KeyState before;
  KeyState after;
  bool operator==(const KeyStep&) const = default;
};

// A file made, replaced or deleted. What `before` holds lies in the blob store.
struct FileStep {
  std::wstring path;
  FileState before;
  FileState after;
  bool operator==(const FileStep&) const = default;
};

// A file renamed within its volume; its content is nowhere but in the file.
struct MoveStep {
  std::wstring from;
  std::wstring to;
  FileState file;
  bool operator==(const MoveStep&) const = default;
};

using Step = std::variant<ValueStep, KeyStep, FileStep, MoveStep>;

// Whether a step wrote a value, made a key, or made or replaced a file.
inline bool IsWriting(const Step& step) noexcept {
  if (const auto* const value = std::get_if<ValueStep>(&step)) return value->after.exists;
  if (const auto* const key = std::get_if<KeyStep>(&step)) return key->after.exists;
  const auto* const file = std::get_if<FileStep>(&step);
  return file != nullptr && file->after.exists;
}

// What the journal says about a step's call.
enum class StepMark {
  kNone,    // begun; whether it happened has to be looked up
  kDone,    // it happened
  kFailed,  // the system answered that it did not, or it was taken back; what is there decides all the same
};

// What a step has written a copy of. While that stands the copy may go; otherwise it is all that is left.
struct StepSource {
  enum class Kind : std::uint8_t { kNone, kValue, kKey, kFile };
  Kind kind = Kind::kNone;
  std::wstring place;         // a key, or a file's path
  std::wstring name;          // of a value
  std::uint32_t content = 0;  // what it held: the sum of its state, see state_content.h
  bool operator==(const StepSource&) const = default;
};

// A step as the journal has it.
struct RecordedStep {
  Step step;
  StepMark mark = StepMark::kNone;
  std::uint32_t status = 0;  // a Win32 status, of a failed one
  StepSource source = {};
  bool operator==(const RecordedStep&) const = default;
};

// What the journal says of an action besides its parts. Times are UTC.
struct CheckpointHeader {
  std::uint32_t id = 0;
  std::uint32_t undoes = 0;  // the action that this one takes back; 0 for none
  std::uint64_t time = 0;    // FILETIME
  std::uint32_t process = 0;
  std::uint64_t processStarted = 0;  // FILETIME
  std::wstring user;                 // SID
  std::wstring title;
  std::uint32_t continues = 0;  // the id of the action's first file when this is a further one; else 0
  std::vector<std::uint32_t> chosen = {};  // the parts that an undo of some only takes back; else none
  bool operator==(const CheckpointHeader&) const = default;
};

// What the journal says of a part besides its steps.
struct PartHeader {
  std::uint32_t number = 1;        // in its action, from 1
  std::uint32_t undoesAction = 0;  // the part that this one takes back: its action and number; 0 for none
  std::uint32_t undoesPart = 0;
  std::uint64_t time = 0;  // FILETIME
  std::wstring title = {};
  bool operator==(const PartHeader&) const = default;
};

enum class PartEnd : std::uint8_t {
  kDone = 0,
  kFailed = 1,  // the change did not come about; what stands of its steps can be undone
  kNone = 2,    // never written: its owner died in it, or is at work in it
};

// A change of an action: one checkpoint.
struct JournalPart {
  PartHeader header;
  std::size_t firstStep = 0;  // in JournalContents::steps
  std::size_t stepCount = 0;
  PartEnd end = PartEnd::kNone;
  bool operator==(const JournalPart&) const = default;
};

// How an action ended. Fixed in the format, but for kNone.
enum class JournalEnd : std::uint8_t {
  kDone = 0,
  kFailed = 1,  // no part of it came about
  kClosed = 2,  // its owner died; it was undone since, or nothing of it stood
  kNone = 3,
};

// One file of the journal, or all files of one action, as far as they could be read.
struct JournalContents {
  CheckpointHeader header;
  std::vector<RecordedStep> steps;
  // Whether the owner wrote the end: without it he died, or is still at work.
  bool finished = false;
  // Whether that end says that the change did not come about. What stands of its steps can be undone.
  bool failed = false;
  // In the order of the steps; a file of the first two versions has one.
  std::vector<JournalPart> parts = {};
  JournalEnd end = JournalEnd::kNone;
  // The file that continues this one, as the end says; 0 for none.
  std::uint32_t continuedBy = 0;
  // Of the format. The first two have one part, and close a file of a dead owner by its name alone.
  std::uint8_t version = 3;
  // Whether everything that was written is here: behind the last record there is what a writer leaves there.
  bool whole = false;
  // The bytes of the file up to the last record that could be read.
  std::uint64_t size = 0;
  bool operator==(const JournalContents&) const = default;
};

}  // namespace smh

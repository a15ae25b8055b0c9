#include "siblings/guardkit/journal_file.h"

#include "infra/files/file_facts.h"
#include "infra/files/file_reading.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/text.h"

#include <algorithm>
#include <cwchar>

namespace smh {

namespace {

constexpr wchar_t kOpenExtension[] = L".open";
constexpr wchar_t kClosedExtension[] = L".journal";
constexpr std::size_t kIdDigits = 8;

std::optional<JournalName> ParseName(const WIN32_FIND_DATAW& found) {
  const std::wstring_view name = found.cFileName;
  const std::wstring_view digits = name.substr(0, std::min(kIdDigits, name.size()));
  const std::wstring_view extension = name.substr(digits.size());
  if (digits.size() != kIdDigits || digits.find_first_not_of(L"0123456789") != std::wstring_view::npos) {
    return std::nullopt;
  }
  const bool closed = SameText(extension, kClosedExtension);
  if (!closed && !SameText(extension, kOpenExtension)) return std::nullopt;
  JournalName result;
  for (const wchar_t digit : digits) result.id = result.id * 10 + static_cast<std::uint32_t>(digit - L'0');
  result.closed = closed;
  result.size = SizeIn(found);
  return result;
}

// For what follows a step at least: its mark and the end, each with size and checksum.
constexpr std::size_t kRoomBehindStep = (8 + 9) + (8 + 6);

// A name that stays open is no harm: the end in the file counts.
void RenameToClosed(const std::wstring& folder, std::uint32_t id) noexcept {
  const JournalName open{.id = id, .closed = false};
  const JournalName closed{.id = id, .closed = true};
  MoveFileExW((folder + open.FileName()).c_str(), (folder + closed.FileName()).c_str(),
              MOVEFILE_WRITE_THROUGH);
}

}  // namespace

std::wstring JournalName::FileName() const {
  std::wstring digits = std::to_wstring(id);
  digits.insert(0, kIdDigits - std::min(kIdDigits, digits.size()), L'0');
  return digits + (closed ? kClosedExtension : kOpenExtension);
}

std::vector<JournalName> ListJournals(const JournalFolder& folder) {
  std::vector<JournalName> names;
  WIN32_FIND_DATAW found;
  const ScopedFind find(FindFirstFileW(folder.File(L"*").c_str(), &found));
  if (!find) RaiseLastOSError();
  do {
    if (const std::optional<JournalName> name = ParseName(found)) names.push_back(*name);
  } while (FindNextFileW(find.Get(), &found) != FALSE);
  if (GetLastError() != ERROR_NO_MORE_FILES) RaiseLastOSError();
  std::ranges::sort(names, {}, &JournalName::id);
  return names;
}

std::optional<JournalContents> ReadJournal(const JournalFolder& folder, const JournalName& name) {
  const ScopedHandle file(CreateFileW(folder.File(name.FileName()).c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) {
    if (GetLastError() == ERROR_FILE_NOT_FOUND) return std::nullopt;
    RaiseLastOSError();
  }
  std::optional<JournalContents> contents = DecodeJournal(ReadOpenFile(file.Get(), kLargestJournal));
  return contents && contents->header.id == name.id ? std::move(contents) : std::nullopt;
}

void CloseJournal(const JournalFolder& folder, std::uint32_t id) noexcept {
  RenameToClosed(folder.Path(), id);
}

JournalFile::JournalFile(const JournalFolder& folder, const CheckpointHeader& header)
    : folder_(folder.Path()), name_{.id = header.id} {
  // Others may read and rename it, nobody else may write.
  file_.Reset(CreateFileW((folder_ + name_.FileName()).c_str(), GENERIC_WRITE | DELETE,
                          FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                          nullptr));
  if (!file_) RaiseLastOSError();
  try {
    Append(EncodeBeginning(header));
    if (FlushFileBuffers(file_.Get()) == FALSE) RaiseLastOSError();
  } catch (...) {
    Finish({});
    throw;
  }
}

void JournalFile::Append(ByteVector record, std::size_t room) {
  if (broken_) RaiseOSError(ERROR_WRITE_FAULT);
  const std::uint64_t end = size_ + record.size();
  if (end > kLargestJournal) RaiseOSError(ERROR_FILE_TOO_LARGE);
  record.resize(record.size() + room);
  DWORD written = 0;
  const BOOL succeeded =
      WriteFile(file_.Get(), record.data(), static_cast<DWORD>(record.size()), &written, nullptr);
  if (succeeded != FALSE && written == record.size()) {
    size_ = end;
    broken_ = room != 0 && !Seek(end);
    return;
  }
  const DWORD error = succeeded != FALSE ? ERROR_DISK_FULL : GetLastError();
  CutTo(size_);
  RaiseOSError(error);
}

void JournalFile::CutTo(std::uint64_t size) noexcept {
  broken_ = !Seek(size) || SetEndOfFile(file_.Get()) == FALSE;
  if (broken_) return;
  size_ = size;
  if (steps_ == 0) return;
  if (Seek(size + kRoomBehindStep)) SetEndOfFile(file_.Get());
  broken_ = !Seek(size);
}

bool JournalFile::Seek(std::uint64_t to) noexcept {
  LARGE_INTEGER place;
  place.QuadPart = static_cast<LONGLONG>(to);
  return SetFilePointerEx(file_.Get(), place, nullptr, FILE_BEGIN) != FALSE;
}

std::uint32_t JournalFile::AppendStep(const Step& step, const StepSource& source) {
  const std::uint64_t before = size_;
  Append(EncodeStep(steps_, step, source), kRoomBehindStep);
  if (FlushFileBuffers(file_.Get()) == FALSE) {
    const DWORD error = GetLastError();
    CutTo(before);
    RaiseOSError(error);
  }
  return steps_++;
}

void JournalFile::AppendMark(std::uint32_t number, LSTATUS status) noexcept {
  try {
    Append(EncodeMark(number, static_cast<std::uint32_t>(status)));
  } catch (...) {
    // Without the mark the undo looks whether the step happened.
  }
}

void JournalFile::Finish(const Ending& ending) noexcept {
  if (steps_ == 0 && !ending.evenEmpty) {
    file_.Reset();
    DeleteFileW((folder_ + name_.FileName()).c_str());
    return;
  }
  try {
    // In one piece: with its end, and without these, the checkpoint would promise what does not stand.
    ByteVector end;
    const auto add = [&end](const ByteVector& record) {
      end.insert(end.end(), record.begin(), record.end());
    };
    for (const std::uint32_t step : ending.takenBack) add(EncodeMark(step, kTakenBack));
    add(EncodeEnd(steps_, ending.failed));
    Append(end);
    FlushFileBuffers(file_.Get());
    file_.Reset();
    RenameToClosed(folder_, name_.id);
  } catch (...) {
    // Without its end the checkpoint counts as interrupted: everything in it can still be undone.
    file_.Reset();
    if (ending.evenWithout) DeleteFileW((folder_ + name_.FileName()).c_str());
  }
}

}  // namespace smh

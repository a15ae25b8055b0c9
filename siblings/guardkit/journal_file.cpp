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
  result.written = NumberOf(found.ftLastWriteTime);
  result.isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return result;
}

// Others may read, rename and delete meanwhile.
constexpr DWORD kSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

ScopedHandle OpenFile(const std::wstring& path, DWORD access, DWORD sharing) noexcept {
  return ScopedHandle(
      CreateFileW(path.c_str(), access, sharing, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Also when that cannot be told.
bool ProcessRuns(std::uint32_t id, std::uint64_t started) noexcept {
  const ScopedHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, id));
  if (!process) return GetLastError() == ERROR_ACCESS_DENIED;
  FILETIME start;
  FILETIME ignored[3];
  if (GetProcessTimes(process.Get(), &start, &ignored[0], &ignored[1], &ignored[2]) == FALSE) return true;
  return NumberOf(start) == started && WaitForSingleObject(process.Get(), 0) != WAIT_OBJECT_0;
}

bool WriteAll(HANDLE file, Bytes bytes) noexcept {
  DWORD written = 0;
  return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE &&
         written == bytes.size();
}

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

ReadJournalFile ReadJournal(const JournalFolder& folder, const JournalName& name) {
  const ScopedHandle file = OpenFile(folder.File(name.FileName()), GENERIC_READ, kSharing);
  if (!file) {
    const DWORD error = GetLastError();
    return {error == ERROR_FILE_NOT_FOUND ? JournalRead::kGone : JournalRead::kHeld};
  }
  try {
    const std::vector<std::byte> bytes = ReadOpenFile(file.Get(), kLargestJournal);
    if (IsBlank(bytes)) return {JournalRead::kBlank};
    std::optional<JournalContents> contents = DecodeJournal(bytes);
    if (!contents || contents->header.id != name.id) return {};
    return {JournalRead::kRead, *std::move(contents)};
  } catch (const EOSError& error) {
    return {error.Code() == ERROR_FILE_TOO_LARGE ? JournalRead::kUnreadable : JournalRead::kHeld};
  }
}

bool IsLeftBehind(const JournalFolder& folder, const JournalName& name) noexcept {
  try {
    return static_cast<bool>(OpenFile(folder.File(name.FileName()), GENERIC_WRITE, kSharing));
  } catch (...) {
    return false;
  }
}

bool OwnerLives(const JournalFolder& folder, const CheckpointHeader& header) noexcept {
  try {
    const JournalName name{.id = header.id};
    if (OpenFile(folder.File(name.FileName()), GENERIC_WRITE, kSharing)) return false;
    return GetLastError() == ERROR_SHARING_VIOLATION && ProcessRuns(header.process, header.processStarted);
  } catch (...) {
    return true;
  }
}

void CloseJournal(const JournalFolder& folder, const JournalName& name) noexcept {
  try {
    const ReadJournalFile read = ReadJournal(folder, name);
    if (read.result != JournalRead::kRead || !read.contents.whole) return;
    if (read.contents.end == JournalEnd::kNone && read.contents.version == 3) {
      const ScopedHandle file =
          OpenFile(folder.File(name.FileName()), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE);
      LARGE_INTEGER place;
      place.QuadPart = static_cast<LONGLONG>(read.contents.size);
      const ByteVector end =
          EncodeEnd(static_cast<std::uint32_t>(read.contents.steps.size()), JournalEnd::kClosed);
      if (!file || SetFilePointerEx(file.Get(), place, nullptr, FILE_BEGIN) == FALSE) return;
      if (!WriteAll(file.Get(), end) || FlushFileBuffers(file.Get()) == FALSE) return;
    }
    if (!name.closed) RenameToClosed(folder.Path(), name.id);
  } catch (...) {
    // It stays among those that are named.
  }
}

JournalFile::JournalFile(const JournalFolder& folder, const CheckpointHeader& header)
    : folder_(folder.Path()), name_{.id = header.id} {
  // Others may read and rename it, nobody else may write.
  file_.Reset(CreateFileW((folder_ + name_.FileName()).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                          FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                          nullptr));
  if (!file_) RaiseLastOSError();
  try {
    Append(EncodeBeginning(header), kRoomBehindBeginning);
    if (FlushFileBuffers(file_.Get()) == FALSE) RaiseLastOSError();
  } catch (...) {
    Remove();
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
    room_ = room;
    broken_ = room != 0 && !Seek(end);
    return;
  }
  const DWORD error = succeeded != FALSE ? ERROR_DISK_FULL : GetLastError();
  CutTo(size_, room_);
  RaiseOSError(error);
}

void JournalFile::CutTo(std::uint64_t size, std::size_t room) noexcept {
  const std::optional<std::uint64_t> end = SizeOfOpenFile(file_.Get());
  // The zeros first: a file that is shorter than its room was cut by somebody.
  broken_ = !end || !Clear(size, *end);
  if (!broken_ && *end > size + room && Seek(size + room)) SetEndOfFile(file_.Get());
  broken_ = !Seek(size) || broken_;
  size_ = size;
  room_ = room;
}

bool JournalFile::Clear(std::uint64_t from, std::uint64_t to) noexcept {
  std::byte bytes[4096];
  while (from < to) {
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(to - from, sizeof(bytes)));
    DWORD read = 0;
    if (!Seek(from) || ReadFile(file_.Get(), bytes, static_cast<DWORD>(size), &read, nullptr) == FALSE ||
        read != size) {
      return false;
    }
    if (!IsBlank(std::span(bytes).first(size))) {
      std::ranges::fill(bytes, std::byte{0});
      if (!Seek(from) || !WriteAll(file_.Get(), std::span(bytes).first(size))) return false;
    }
    from += size;
  }
  return true;
}

bool JournalFile::Seek(std::uint64_t to) noexcept {
  LARGE_INTEGER place;
  place.QuadPart = static_cast<LONGLONG>(to);
  return SetFilePointerEx(file_.Get(), place, nullptr, FILE_BEGIN) != FALSE;
}

std::uint32_t JournalFile::AppendStep(const Step& step, const StepSource& source) {
  const std::uint64_t before = size_;
  const std::size_t roomBefore = room_;
  ByteVector record = EncodeStep(steps_, step, source);
  if (pending_) {
    const ByteVector part = EncodePart(*pending_);
    record.insert(record.begin(), part.begin(), part.end());
  }
  Append(std::move(record), kRoomBehindStep);
  if (FlushFileBuffers(file_.Get()) == FALSE) {
    const DWORD error = GetLastError();
    CutTo(before, roomBefore);
    RaiseOSError(error);
  }
  if (pending_) {
    pending_.reset();
    partStart_ = before;
    partFirst_ = steps_;
    ++parts_;
  }
  return steps_++;
}

void JournalFile::AppendMark(std::uint32_t number, LSTATUS status) noexcept {
  try {
    Append(EncodeMark(number, static_cast<std::uint32_t>(status)), kRoomBehindMark);
  } catch (...) {
    // Without the mark the undo looks whether the step happened.
  }
}

bool JournalFile::EndPart(const Ending& ending) noexcept {
  const bool isEmpty = pending_.has_value();
  if (isEmpty && !ending.evenEmpty) {
    pending_.reset();
    return true;
  }
  try {
    // In one piece: with its end, and without these, the part would promise what does not stand.
    ByteVector end;
    const auto add = [&end](const ByteVector& record) {
      end.insert(end.end(), record.begin(), record.end());
    };
    if (isEmpty) add(EncodePart(*pending_));
    for (const std::uint32_t step : ending.takenBack) add(EncodeMark(step, kTakenBack));
    add(EncodePartEnd(steps_, ending.failed));
    Append(end, kRoomBehindPartEnd);
    if (isEmpty) ++parts_;
    pending_.reset();
    return true;
  } catch (...) {
    pending_.reset();
  }
  unended_ = true;
  if (isEmpty || !ending.evenWithout) return false;
  worthless_ = parts_ == 1;
  CutTo(partStart_, kRoomBehindPartEnd);
  if (broken_) return false;
  unended_ = false;
  steps_ = partFirst_;
  --parts_;
  return true;
}

void JournalFile::Finish(JournalEnd end, std::uint32_t continuedBy) noexcept {
  if (parts_ == 0 || IsWorthless()) return Remove();
  if (unended_) return Abandon();
  try {
    Append(EncodeEnd(steps_, end, continuedBy), 0);
    SetEndOfFile(file_.Get());
    FlushFileBuffers(file_.Get());
    file_.Reset();
    RenameToClosed(folder_, name_.id);
  } catch (...) {
    // Without its end the action counts as interrupted: everything in it can still be undone.
    file_.Reset();
  }
}

void JournalFile::Abandon() noexcept {
  if (parts_ == 0) return Remove();
  file_.Reset();
}

void JournalFile::Remove() noexcept {
  file_.Reset();
  DeleteFileW((folder_ + name_.FileName()).c_str());
}

}  // namespace smh

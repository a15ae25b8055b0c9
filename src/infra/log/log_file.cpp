#include "infra/log/log_file.h"

#include "infra/files/own_file.h"
#include "infra/runtime/handle.h"

#include <algorithm>
#include <cwchar>

namespace smh {

namespace {

constexpr std::wstring_view kByteOrderMark = L"\xFEFF";

// Access to files that goes on when the thread's is cancelled, as the stop of a reader does every tenth of a
// second; a disk that does not answer is given up all the same.
class StubbornAccess {
 public:
  // Whether `access`, which answers like the system's functions, succeeded.
  template <typename Access>
  bool Try(Access&& access) noexcept {
    for (;;) {
      if (access()) return true;
      if (GetLastError() != ERROR_OPERATION_ABORTED || cancelled_++ == kMostCancelled) return false;
    }
  }

 private:
  static constexpr int kMostCancelled = 20;

  int cancelled_ = 0;
};

// Appends to the file at `end`, which moves on.
bool Write(StubbornAccess& disk, HANDLE file, DWORD& end, std::wstring_view text) noexcept {
  const auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  DWORD written = 0;
  const bool good = disk.Try([&] {
    OVERLAPPED place = {};
    place.Offset = end;
    return WriteFile(file, text.data(), bytes, &written, &place) != FALSE;
  });
  end += bytes;
  return good && written == bytes;
}

bool WriteText(StubbornAccess& disk, HANDLE file, const LogText& text) noexcept {
  DWORD end = 0;
  bool good = Write(disk, file, end, kByteOrderMark);
  for (std::size_t i = 0; good && i < text.PartCount(); ++i) good = Write(disk, file, end, text.Part(i));
  return good;
}

// A file of that name is removed, and of a link the name alone.
ScopedHandle MakeFile(StubbornAccess& disk, const std::wstring& path) noexcept {
  ScopedHandle file;
  const auto make = [&] {
    file = OpenOwnFile(path, GENERIC_WRITE, FILE_SHARE_READ, CREATE_NEW);
    return static_cast<bool>(file);
  };
  if (disk.Try(make)) return file;
  if (disk.Try([&] { return DeleteFileW(path.c_str()) != FALSE; })) disk.Try(make);
  return file;
}

bool WriteOver(StubbornAccess& disk, const std::wstring& path, const LogText& text) noexcept {
  ScopedHandle file;
  return disk.Try([&] {
    file = OpenOwnFile(path, GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS);
    return file && SetEndOfFile(file.Get()) != FALSE;
  }) && WriteText(disk, file.Get(), text);
}

std::size_t LinesIn(std::wstring_view text) noexcept {
  return static_cast<std::size_t>(std::ranges::count(text, L'\n'));
}

}  // namespace

void LogText::AddLine(std::wstring_view line) {
  Put(line);
  Put(L"\r\n");
}

void LogText::Clear() noexcept {
  blocks_.clear();
  start_ = 0;
  gone_ = 0;
  note_[0] = L'\0';
}

std::wstring_view LogText::Part(std::size_t index) const noexcept {
  if (index == 0) return note_;
  const BlockOfUnits& block = *blocks_[index - 1];
  const std::size_t from = index == 1 ? start_ : 0;
  return {block.units + from, block.used - from};
}

void LogText::Put(std::wstring_view text) {
  while (!text.empty()) {
    if (Room() == 0) {
      if (blocks_.size() == kMostBlocks) DropOldestBlock();
      blocks_.push_back(std::make_unique_for_overwrite<BlockOfUnits>());
    }
    BlockOfUnits& block = *blocks_.back();
    const std::size_t count = std::min(Room(), text.size());
    std::copy_n(text.data(), count, block.units + block.used);
    block.used += count;
    text.remove_prefix(count);
  }
}

// And the rest of its last line, which the next blocks hold.
void LogText::DropOldestBlock() noexcept {
  std::size_t lines = LinesIn(Part(1));
  std::size_t end = std::wstring_view::npos;
  while (end == std::wstring_view::npos && blocks_.size() > 1) {
    blocks_.erase(blocks_.begin());
    start_ = 0;
    end = Part(1).find(L'\n');
  }
  if (end != std::wstring_view::npos) {
    start_ = end + 1;
    ++lines;
  }
  gone_ += static_cast<unsigned>(lines);
  std::swprintf(note_, std::size(note_), L"(%u older lines are not kept.)\r\n", gone_);
}

bool WriteLogFile(LogFileNames& names, const LogText& text) noexcept {
  const HeldFolders folders(names.file, names.base);
  if (!folders.AreHeld()) return false;
  StubbornAccess disk;
  if (ScopedHandle file = MakeFile(disk, names.unfinished)) {
    const bool isWhole = WriteText(disk, file.Get(), text);
    file.Reset();
    const bool isPlaced = isWhole && disk.Try([&] {
      return MoveFileExW(names.unfinished.c_str(), names.file.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE;
    });
    if (isPlaced) return true;
    DeleteFileW(names.unfinished.c_str());
    // What the old file says is more than what there was no room for.
    if (!isWhole) return false;
  }
  return WriteOver(disk, names.file, text);
}

}  // namespace smh

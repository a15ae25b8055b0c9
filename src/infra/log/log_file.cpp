#include "infra/log/log_file.h"

#include "infra/files/folder_access.h"
#include "infra/runtime/handle.h"

#include <algorithm>

namespace smh {

namespace {

bool Write(HANDLE file, std::wstring_view text) noexcept {
  DWORD written = 0;
  const auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  return WriteFile(file, text.data(), bytes, &written, nullptr) && written == bytes;
}

bool WriteText(const std::wstring& path, const LogText& text) noexcept {
  const ScopedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return false;
  bool good = Write(file.Get(), L"\xFEFF");
  for (std::size_t i = 0; good && i < text.BlockCount(); ++i) good = Write(file.Get(), text.Block(i));
  return good;
}

}  // namespace

void LogText::AddLine(std::wstring_view line) {
  Put(line);
  Put(L"\r\n");
}

void LogText::Put(std::wstring_view text) {
  while (!text.empty()) {
    if (Room() == 0) blocks_.push_back(std::make_unique_for_overwrite<BlockOfUnits>());
    BlockOfUnits& block = *blocks_.back();
    const std::size_t count = std::min(Room(), text.size());
    std::copy_n(text.data(), count, block.units + block.used);
    block.used += count;
    text.remove_prefix(count);
  }
}

bool WriteLogFile(LogFileNames& names, const LogText& text) noexcept {
  MakeFolders(names.file);
  if (WriteText(names.unfinished, text) &&
      MoveFileExW(names.unfinished.c_str(), names.file.c_str(), MOVEFILE_REPLACE_EXISTING)) {
    return true;
  }
  DeleteFileW(names.unfinished.c_str());
  return WriteText(names.file, text);
}

}  // namespace smh

#include "infra/log/log_file.h"

#include "infra/runtime/handle.h"

#include <string_view>

namespace smh {

namespace {

bool Write(HANDLE file, std::wstring_view text) noexcept {
  DWORD written = 0;
  const auto bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  return WriteFile(file, text.data(), bytes, &written, nullptr) && written == bytes;
}

// Cuts the path at each of its backslashes in turn; failures show when the file is made.
void MakeFolders(std::wstring& path) noexcept {
  for (std::size_t at = path.find(L'\\'); at != std::wstring::npos; at = path.find(L'\\', at + 1)) {
    path[at] = L'\0';
    CreateDirectoryW(path.c_str(), nullptr);
    path[at] = L'\\';
  }
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

#include "infra/log_file.h"

#include "infra/handle.h"

#include <algorithm>
#include <string_view>

namespace smh {

namespace {

// Gathers units and writes them in blocks; after a failed write it does nothing more.
class BlockWriter {
 public:
  explicit BlockWriter(HANDLE file) noexcept : file_(file) {}

  void Put(std::wstring_view text) noexcept {
    while (!text.empty()) {
      if (used_ == kUnits) Flush();
      const std::size_t count = std::min(kUnits - used_, text.size());
      std::copy_n(text.data(), count, units_ + used_);
      used_ += count;
      text.remove_prefix(count);
    }
  }
  bool Finish() noexcept {
    Flush();
    return good_;
  }

 private:
  static constexpr std::size_t kUnits = 2048;

  void Flush() noexcept {
    DWORD written = 0;
    const auto bytes = static_cast<DWORD>(used_ * sizeof(wchar_t));
    good_ = good_ && WriteFile(file_, units_, bytes, &written, nullptr) && written == bytes;
    used_ = 0;
  }

  HANDLE file_;
  bool good_ = true;
  std::size_t used_ = 0;
  wchar_t units_[kUnits];
};

// Cuts the path at each of its backslashes in turn; failures show when the file is made.
void MakeFolders(std::wstring& path) noexcept {
  for (std::size_t at = path.find(L'\\'); at != std::wstring::npos; at = path.find(L'\\', at + 1)) {
    path[at] = L'\0';
    CreateDirectoryW(path.c_str(), nullptr);
    path[at] = L'\\';
  }
}

bool WriteLines(const std::wstring& path, std::span<const std::wstring> lines) noexcept {
  const ScopedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return false;
  BlockWriter writer(file.Get());
  writer.Put(L"\xFEFF");
  for (const std::wstring& line : lines) {
    writer.Put(line);
    writer.Put(L"\r\n");
  }
  return writer.Finish();
}

}  // namespace

bool WriteLogFile(LogFileNames& names, std::span<const std::wstring> lines) noexcept {
  MakeFolders(names.file);
  if (WriteLines(names.unfinished, lines) &&
      MoveFileExW(names.unfinished.c_str(), names.file.c_str(), MOVEFILE_REPLACE_EXISTING)) {
    return true;
  }
  DeleteFileW(names.unfinished.c_str());
  return WriteLines(names.file, lines);
}

}  // namespace smh

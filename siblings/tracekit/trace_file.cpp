#include "siblings/tracekit/trace_file.h"

#include "infra/files/folder_access.h"
#include "infra/runtime/exceptions.h"
#include "siblings/common/data_folder.h"

#include <string>

namespace smh {

namespace {

constexpr wchar_t kByteOrderMark = L'\xFEFF';

// One write at the file's end: the lines of several processes do not mix.
void Write(HANDLE file, std::wstring_view text) {
  const DWORD size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  DWORD written = 0;
  if (WriteFile(file, text.data(), size, &written, nullptr) == FALSE) RaiseLastOSError();
}

ScopedHandle OpenTraceFile() {
  const std::wstring dataFolder = DataFolder();
  if (dataFolder.empty()) RaiseOSError(ERROR_PATH_NOT_FOUND);
  std::wstring folder = dataFolder + L"Logs\\";
  MakeFolders(folder);
  const DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  ScopedHandle file(CreateFileW((folder + L"debug.log").c_str(), FILE_APPEND_DATA, sharing, nullptr,
                                OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  const DWORD opened = GetLastError();
  if (!file) RaiseOSError(opened);
  if (opened != ERROR_ALREADY_EXISTS) Write(file.Get(), {&kByteOrderMark, 1});
  return file;
}

}  // namespace

void TraceFile::Append(std::wstring_view line) {
  const std::wstring text = std::wstring(line).append(L"\r\n");
  const ScopedLock guard(lock_);
  if (!file_) file_ = OpenTraceFile();
  Write(file_.Get(), text);
}

}  // namespace smh

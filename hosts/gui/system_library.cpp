#include "hosts/gui/system_library.h"

#include <string>

namespace smh {

ScopedModule LoadSystemLibrary(const wchar_t* file) {
  wchar_t folder[MAX_PATH] = L"";
  const UINT units = GetSystemDirectoryW(folder, ARRAYSIZE(folder));
  if (units == 0 || units >= ARRAYSIZE(folder)) return ScopedModule();
  const std::wstring path = std::wstring(folder, units) + L"\\" + file;
  return ScopedModule(LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
}

}  // namespace smh

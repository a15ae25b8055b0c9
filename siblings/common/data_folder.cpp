#include "siblings/common/data_folder.h"

#include <windows.h>
#include <shlobj.h>

#include "siblings/common/product.h"
#include "infra/runtime/text.h"

namespace smh {

std::wstring ShellFolder(int csidl) {
  wchar_t folder[MAX_PATH] = {};
  if (SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, folder) != S_OK) return {};
  return WithoutTrailingBackslash(folder);
}

std::wstring DataFolder() {
  return ProductFolder(CSIDL_APPDATA);
}

std::wstring ProductFolder(int csidl) {
  std::wstring folder = ShellFolder(csidl);
  if (folder.empty()) return folder;
  for (const std::wstring_view level : {kVendorName, kProductName}) folder.append(1, L'\\').append(level);
  return folder.append(1, L'\\');
}

void MakeFolders(const std::wstring& folder) {
  for (std::size_t end = folder.find(L'\\'); end != std::wstring::npos; end = folder.find(L'\\', end + 1)) {
    CreateDirectoryW(folder.substr(0, end).c_str(), nullptr);
  }
}

}  // namespace smh

#include "siblings/common/product.h"

#include "infra/files/file_facts.h"

#include <windows.h>
#include <shlobj.h>

namespace smh {

std::wstring DataFolder() {
  return ProductFolder(CSIDL_APPDATA);
}

std::wstring ProductFolder(int csidl) {
  std::wstring folder = ShellFolder(csidl);
  if (folder.empty()) return folder;
  for (const std::wstring_view level : {kVendorName, kProductName}) folder.append(1, L'\\').append(level);
  return folder.append(1, L'\\');
}

}  // namespace smh

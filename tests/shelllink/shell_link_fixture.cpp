#include "shelllink/shell_link_fixture.h"

#include "core/uDllGlobals.h"
#include "infra/uInterfacesRoutines.h"
#include "shelllink/desktop_folder.h"
#include "shelllink/link_file.h"

#include <objbase.h>

namespace smh::test {

void ShellLinkTest::SetUpTestSuite() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  StartLibraryList();
  StartDllGlobals();
  StartShellLink();
}

void ShellLinkTest::TearDownTestSuite() {
  StopShellLink();
  StopDllGlobals();
  StopLibraryList();
  CoUninitialize();
}

std::wstring ShellLinkTest::WriteLink(const BuiltLink& link, std::wstring_view name) const {
  return folder.Write(name, link.Text());
}

std::wstring RefusalOf(const std::wstring& path) {
  try {
    TShellLinkInfo info(path);
  } catch (const TShellLinkInfoException& exception) {
    return exception.Message();
  }
  return {};
}

DWORD OpenErrorOf(const std::wstring& path) {
  try {
    TShellLinkInfo info(path);
  } catch (const EFOpenError& error) {
    return error.Code();
  }
  return 0;
}

}  // namespace smh::test

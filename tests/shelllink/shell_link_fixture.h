// Links in a folder of the test's own, and the parts of the module that reading them needs.
#pragma once

#include "infra/siblings/uInterfacesRoutines.h"
#include "samples/link_builder.h"
#include "shelllink/desktop_folder.h"
#include "shelllink/link_file.h"
#include "shelllink/uShellLinkInfo.h"
#include "tests/support/file_fixture.h"

#include <objbase.h>
#include <gtest/gtest.h>

namespace smh::test {

class ShellLinkTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    g_siblings.Start();
    g_desktopFolder.Start();
  }
  static void TearDownTestSuite() {
    g_desktopFolder.Stop();
    g_siblings.Stop();
    CoUninitialize();
  }

  // Answers the file's path.
  std::wstring WriteLink(const BuiltLink& link, std::wstring_view name = L"x.lnk") const {
    return folder.Write(name, link.Text());
  }
  std::wstring WriteLink(const LinkBuilder& link, std::wstring_view name = L"x.lnk") const {
    return WriteLink(link.Build(), name);
  }
  std::wstring TargetOf(const BuiltLink& link) const { return TShellLinkInfo(WriteLink(link)).Target(); }
  std::wstring TargetOf(const LinkBuilder& link) const { return TargetOf(link.Build()); }

  TemporaryFolder folder;
};

}  // namespace smh::test

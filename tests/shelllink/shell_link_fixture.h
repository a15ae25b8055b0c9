// Links in a folder of the test's own, and the parts of the module that reading them needs.
#pragma once

#include "native/link_builder.h"
#include "shelllink/uShellLinkInfo.h"
#include "support/file_fixture.h"

#include <gtest/gtest.h>

namespace smh::test {

class ShellLinkTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite();
  static void TearDownTestSuite();

  // Answers the file's path.
  std::wstring WriteLink(const BuiltLink& link, std::wstring_view name = L"x.lnk") const;
  std::wstring WriteLink(const LinkBuilder& link, std::wstring_view name = L"x.lnk") const {
    return WriteLink(link.Build(), name);
  }
  std::wstring TargetOf(const BuiltLink& link) const { return TShellLinkInfo(WriteLink(link)).Target(); }
  std::wstring TargetOf(const LinkBuilder& link) const { return TargetOf(link.Build()); }

  TemporaryFolder folder;
};

// The message of the refusal; empty when the link is accepted.
std::wstring RefusalOf(const std::wstring& path);
// The system's code of a failure to open; 0 when the file opens.
DWORD OpenErrorOf(const std::wstring& path);

}  // namespace smh::test

// Who may have touched a file or folder: the decision.
#include "infra/files/folder_access.h"
#include "tests/locations/folders/descriptor.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace smh::test {
namespace {

namespace fs = std::filesystem;

TEST(FolderAccess, OnlySystemAndAdministratorsMayOwnAndChange) {
  struct Row {
    const wchar_t* sddl;
    bool trusted;
  };
  const Row rows[] = {
      {L"O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FRFX;;;BU)", true},
      {L"O:SYD:(A;;FA;;;SY)(A;;FR;;;WD)", true},
      {L"O:BAD:", true},
      // The system's installer, and another service.
      {L"O:S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464D:(A;;FA;;;BA)", true},
      {L"O:S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478465D:(A;;FA;;;BA)", false},
      {L"O:S-1-5-80-956008885D:(A;;FA;;;BA)", false},
      {L"O:BUD:(A;;FA;;;BA)", false},
      {L"O:S-1-5-21-1-2-3-1001D:(A;;FA;;;BA)", false},
      {L"O:BAD:(A;;FA;;;BA)(A;;FW;;;BU)", false},
      {L"O:BAD:(A;;FA;;;WD)", false},
      {L"O:BAD:(A;;FA;;;S-1-5-21-1-2-3-1001)", false},
      // Single rights: add files, add folders, delete children, delete, change rights, take ownership.
      {L"O:BAD:(A;;0x2;;;BU)", false},
      {L"O:BAD:(A;;0x4;;;BU)", false},
      {L"O:BAD:(A;;0x40;;;BU)", false},
      {L"O:BAD:(A;;SD;;;BU)", false},
      {L"O:BAD:(A;;WD;;;BU)", false},
      {L"O:BAD:(A;;WO;;;BU)", false},
      {L"O:BAD:(A;;GW;;;BU)", false},
      {L"O:BAD:(A;;GA;;;BU)", false},
      {L"O:BAD:(A;;GRGX;;;BU)", true},
      // Entries for children, and what is denied.
      {L"O:BAD:(A;OICIIO;FA;;;CO)(A;;FA;;;SY)", true},
      {L"O:BAD:(A;OICI;FA;;;CO)", false},
      {L"O:BAD:(D;;FA;;;BU)(A;;FR;;;BU)", true},
      // A deny entry takes nothing back here: what is allowed besides counts.
      {L"O:BAD:(D;;FW;;;BU)(A;;FW;;;BU)", false},
  };
  for (const Row& row : rows) {
    const Descriptor descriptor(row.sddl);
    EXPECT_EQ(IsTrusted(descriptor.owner, descriptor.dacl), row.trusted) << fs::path(row.sddl);
  }
}

// The folder of the backup journal is nobody else's business.
TEST(FolderAccess, AnyRightMayBeOneTooMany) {
  const Descriptor own(L"O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)");
  EXPECT_TRUE(IsTrusted(own.owner, own.dacl, kAnyRight));
  for (const wchar_t* sddl : {L"O:BAD:P(A;OICI;FA;;;BA)(A;;FR;;;BU)",
                              L"O:BAD:P(A;OICI;FA;;;BA)(A;;0x80;;;AU)", L"O:BUD:P(A;OICI;FA;;;BA)"}) {
    const Descriptor others(sddl);
    EXPECT_FALSE(IsTrusted(others.owner, others.dacl, kAnyRight)) << fs::path(sddl);
  }
}

// Of a folder above: who may only add files does not get to replace what is there.
TEST(FolderAccess, AFolderAboveMayTakeFilesButNotLoseFolders) {
  const std::pair<const wchar_t*, bool> rows[] = {
      {L"O:SYD:(A;;FA;;;SY)(A;OICIIO;FA;;;CO)(A;CI;0x116;;;BU)(A;;FRFX;;;BU)", true},
      {L"O:BUD:(A;;FA;;;SY)", false},
      {L"O:SYD:(A;;0x40;;;BU)", false},
      {L"O:SYD:(A;;SD;;;BU)", false},
      {L"O:SYD:(A;;WD;;;AU)", false},
      {L"O:SYD:(A;;WO;;;WD)", false},
      {L"O:SYD:(A;;GA;;;BU)", false},
  };
  for (const auto& [sddl, trusted] : rows) {
    const Descriptor descriptor(sddl);
    EXPECT_EQ(IsTrusted(descriptor.owner, descriptor.dacl, kReplaceRights), trusted) << fs::path(sddl);
  }
}

TEST(FolderAccess, WithoutOwnerOrListNobodyIsTrusted) {
  const Descriptor descriptor(L"O:BAD:(A;;FA;;;BA)");
  EXPECT_FALSE(IsTrusted(nullptr, descriptor.dacl));
  EXPECT_FALSE(IsTrusted(descriptor.owner, nullptr)) << "lets everyone in";
}

TEST(FolderAccess, EntriesOfOtherKindsAndDamagedListsAreNotTrusted) {
  struct Row {
    BYTE type;
    bool trusted;
  };
  const Row rows[] = {
      {ACCESS_ALLOWED_ACE_TYPE, true},           {ACCESS_ALLOWED_OBJECT_ACE_TYPE, false},
      {ACCESS_ALLOWED_CALLBACK_ACE_TYPE, false}, {ACCESS_ALLOWED_CALLBACK_OBJECT_ACE_TYPE, false},
      {ACCESS_ALLOWED_COMPOUND_ACE_TYPE, false}, {ACCESS_DENIED_OBJECT_ACE_TYPE, true},
      {ACCESS_DENIED_CALLBACK_ACE_TYPE, true},   {0x40, false},
  };
  for (const Row& row : rows) {
    const Descriptor descriptor(L"O:BAD:(A;;FA;;;BA)");
    descriptor.FirstEntry()->AceType = row.type;
    EXPECT_EQ(IsTrusted(descriptor.owner, descriptor.dacl), row.trusted) << int(row.type);
  }

  // What lies behind the list says that it is an entry without length, which denies.
  const Descriptor more(L"O:BAD:(A;;FA;;;BA)(D;;FA;;;BA)");
  more.dacl->AclSize = static_cast<WORD>(sizeof(ACL) + more.FirstEntry()->AceSize);
  void* behind = nullptr;
  ASSERT_TRUE(GetAce(more.dacl, 1, &behind));
  static_cast<ACE_HEADER*>(behind)->AceSize = 0;
  EXPECT_FALSE(IsTrusted(more.owner, more.dacl)) << "an entry behind the end";
  const Descriptor cut(L"O:BAD:(A;;FA;;;BA)(A;;FA;;;SY)");
  cut.dacl->AclSize = static_cast<WORD>(cut.dacl->AclSize - 4);
  EXPECT_FALSE(IsTrusted(cut.owner, cut.dacl));
  const Descriptor small(L"O:BAD:(A;;FA;;;BA)");
  small.FirstEntry()->AceSize = sizeof(ACE_HEADER);
  EXPECT_FALSE(IsTrusted(small.owner, small.dacl));
  const Descriptor shortSid(L"O:BAD:(A;;FA;;;BA)");
  shortSid.FirstEntry()->AceSize -= 4;
  EXPECT_FALSE(IsTrusted(shortSid.owner, shortSid.dacl)) << "the SID ends outside its entry";
}

}  // namespace
}  // namespace smh::test

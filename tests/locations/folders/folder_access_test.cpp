// Who may have touched what the common Startup folder starts.
#include "infra/files/folder_access.h"
#include "tests/locations/folders/folder_fixture.h"
#include "tests/support/import_patch.h"

#include <aclapi.h>
#include <gmock/gmock.h>
#include <sddl.h>

namespace smh::test {
namespace {

namespace fs = std::filesystem;

struct Descriptor {
  explicit Descriptor(const wchar_t* sddl) {
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(sddl, SDDL_REVISION_1, &memory, nullptr)) {
      throw std::runtime_error("not a security descriptor");
    }
    BOOL ignored;
    GetSecurityDescriptorOwner(memory, &owner, &ignored);
    GetSecurityDescriptorDacl(memory, &ignored, &dacl, &ignored);
  }
  ~Descriptor() { LocalFree(memory); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  ACE_HEADER* FirstEntry() const {
    void* entry = nullptr;
    GetAce(dacl, 0, &entry);
    return static_cast<ACE_HEADER*>(entry);
  }

  PSECURITY_DESCRIPTOR memory = nullptr;
  PSID owner = nullptr;
  PACL dacl = nullptr;
};

TEST(FolderAccess, OnlySystemAndAdministratorsMayOwnAndChange) {
  struct Row {
    const wchar_t* sddl;
    bool trusted;
  };
  const Row rows[] = {
      {L"O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FRFX;;;BU)", true},
      {L"O:SYD:(A;;FA;;;SY)(A;;FR;;;WD)", true},
      {L"O:BAD:", true},
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

  const Descriptor more(L"O:BAD:(A;;FA;;;BA)");
  ++more.dacl->AceCount;
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

// The test platform keeps neither owners nor lists of files, so the test says who has which.
class CommonAccess : public FolderTest {
 protected:
  CommonAccess() {
    untrusted_.clear();
    inherited_.clear();
  }

  // What an ordinary user owns from now on: file or folder, without trailing backslash.
  static void LetUserOwn(const std::wstring& path) { untrusted_ = path; }
  static const std::vector<std::wstring>& Inherited() { return inherited_; }

 private:
  static DWORD WINAPI GetSecurity(wchar_t* path, SE_OBJECT_TYPE, SECURITY_INFORMATION, PSID* owner, PSID*,
                                  PACL* dacl, PACL*, PSECURITY_DESCRIPTOR* memory) {
    const bool isUsers = path == untrusted_;
    Descriptor descriptor(isUsers ? L"O:BUD:(A;;FA;;;BU)" : L"O:BAD:(A;;FA;;;BA)");
    *owner = descriptor.owner;
    *dacl = descriptor.dacl;
    *memory = std::exchange(descriptor.memory, nullptr);
    return ERROR_SUCCESS;
  }
  static DWORD WINAPI SetSecurity(wchar_t* path, SE_OBJECT_TYPE, SECURITY_INFORMATION information, PSID, PSID,
                                  PACL dacl, PACL) {
    if ((information & UNPROTECTED_DACL_SECURITY_INFORMATION) != 0 && dacl->AceCount == 0) {
      inherited_.emplace_back(path);
    }
    return ERROR_SUCCESS;
  }

  static inline std::wstring untrusted_;
  static inline std::vector<std::wstring> inherited_;
  const ImportPatch get_{"GetNamedSecurityInfoW", &GetSecurity};
  const ImportPatch set_{"SetNamedSecurityInfoW", &SetSecurity};
};

TEST_F(CommonAccess, EnablingWhatAUserMayHavePutThereIsRefused) {
  const std::wstring file = PutShortcut(common.disabled + L"Tray.lnk");
  const ItemRef item = LoadAndFind(CommonFolder(), file);
  for (const std::wstring& path : {file, common.disabled.substr(0, common.disabled.size() - 1)}) {
    LetUserOwn(path);
    EXPECT_EQ(ErrorOf([&] { CommonFolder().EnableItem(item); }), DWORD(ERROR_ACCESS_DENIED));
    EXPECT_TRUE(Exists(file));
    EXPECT_FALSE(item->IsEnabled());
  }
  EXPECT_THAT(FilesIn(common.startup), ::testing::IsEmpty());
  EXPECT_TRUE(LogHas(L"Error enable item \"" + file + L"\" in location \"sulFolderCommon\"."));

  LetUserOwn(L"");
  CommonFolder().EnableItem(item);
  EXPECT_TRUE(Exists(common.startup + L"Tray.lnk"));
  EXPECT_THAT(Inherited(), ::testing::ElementsAre(common.startup + L"Tray.lnk"));
}

TEST_F(CommonAccess, WhatMovesIntoTheCommonFolderTakesItsAccessAndTheUsersFolderAsksNobody) {
  const ItemRef moved = LoadAndFind(UserFolder(), PutShortcut(user.startup + L"Moved.lnk"));
  UserFolder().MoveItem(moved, sulFolderCommon);
  CommonFolder().AddItem(L"Added", Program());
  EXPECT_THAT(Inherited(),
              ::testing::ElementsAre(common.startup + L"Moved.lnk", common.startup + L"Added.lnk"));

  const std::wstring file = PutShortcut(user.disabled + L"Own.lnk");
  LetUserOwn(file);
  UserFolder().EnableItem(LoadAndFind(UserFolder(), file));
  EXPECT_TRUE(Exists(user.startup + L"Own.lnk"));
  EXPECT_EQ(Inherited().size(), 2u);
}

}  // namespace
}  // namespace smh::test

// Who may have touched what the common Startup folder starts.
#include "infra/files/folder_access.h"
#include "infra/runtime/text.h"
#include "tests/locations/folders/descriptor.h"
#include "tests/locations/folders/folder_fixture.h"
#include "tests/support/import_patch.h"

#include <aclapi.h>
#include <gmock/gmock.h>

#include <functional>
#include <map>

namespace smh::test {
namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kAdministrators = L"O:BAD:(A;;FA;;;BA)";
constexpr const wchar_t* kUsers = L"O:BUD:(A;;FA;;;BU)";

// Who has which file and folder, by full path: the test platform keeps neither owners nor lists. Setting
// works, is refused, or answers success without an effect.
class AccessBook {
 public:
  enum class Setting { kWorks, kRefused, kPretended };

  void Let(const std::wstring& path, const wchar_t* sddl) { entries_[Key(path)] = sddl; }
  std::wstring Of(const std::wstring& path) const {
    const auto entry = entries_.find(Key(path));
    return entry == entries_.end() ? others : entry->second;
  }
  DWORD Read(const std::wstring& path, PSID* owner, PACL* dacl, PSECURITY_DESCRIPTOR* memory) {
    if (onRead) onRead(path);
    Descriptor descriptor(Of(path).c_str());
    *owner = descriptor.owner;
    *dacl = descriptor.dacl;
    *memory = std::exchange(descriptor.memory, nullptr);
    return ERROR_SUCCESS;
  }
  DWORD Set(const std::wstring& path, SECURITY_INFORMATION what, PSID owner, PACL dacl) {
    set.push_back(path);
    if (setting == Setting::kRefused) return ERROR_ACCESS_DENIED;
    const bool isWhole = (what & OWNER_SECURITY_INFORMATION) != 0 && (what & DACL_SECURITY_INFORMATION) != 0;
    const bool inherits = (what & UNPROTECTED_DACL_SECURITY_INFORMATION) != 0 && dacl->AceCount == 0;
    const bool isProtected = (what & PROTECTED_DACL_SECURITY_INFORMATION) != 0 && IsTrusted(owner, dacl);
    if (setting == Setting::kWorks && isWhole && IsTrustedSid(owner) && (inherits || isProtected)) {
      Let(path, kAdministrators);
    }
    return ERROR_SUCCESS;
  }

  // What is nobody's in particular.
  std::wstring others = kAdministrators;
  Setting setting = Setting::kWorks;
  std::vector<std::wstring> set;
  std::function<void(const std::wstring& path)> onRead;

 private:
  static std::wstring Key(std::wstring path) {
    if (path.size() > 3 && path.ends_with(L'\\')) path.pop_back();
    CharUpperBuffW(path.data(), static_cast<DWORD>(path.size()));
    return path;
  }

  std::map<std::wstring, std::wstring> entries_;
};

class CommonAccess : public BothWays<FolderTest> {
 protected:
  CommonAccess() { book_ = {}; }
  ~CommonAccess() override { book_ = {}; }

  static AccessBook& Book() { return book_; }
  // Of a folder and those above it up to the drive.
  static std::vector<std::wstring> Above(std::wstring folder) {
    std::vector<std::wstring> folders;
    while (folder.size() > 3) {
      folder.pop_back();
      folder = std::wstring(FolderPart(folder));
      folders.push_back(folder);
    }
    return folders;
  }

 private:
  static std::wstring PathOf(HANDLE file) {
    std::wstring path(MAX_PATH * 2, L'\0');
    path.resize(GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0));
    return path.substr(std::wstring_view(L"\\\\?\\").size());
  }
  static DWORD WINAPI GetByHandle(HANDLE file, SE_OBJECT_TYPE, SECURITY_INFORMATION, PSID* owner, PSID*,
                                  PACL* dacl, PACL*, PSECURITY_DESCRIPTOR* memory) {
    return book_.Read(PathOf(file), owner, dacl, memory);
  }
  static DWORD WINAPI SetByHandle(HANDLE file, SE_OBJECT_TYPE, SECURITY_INFORMATION what, PSID owner, PSID,
                                  PACL dacl, PACL) {
    return book_.Set(PathOf(file), what, owner, dacl);
  }
  static DWORD WINAPI SetByName(wchar_t* path, SE_OBJECT_TYPE, SECURITY_INFORMATION what, PSID owner, PSID,
                                PACL dacl, PACL) {
    return book_.Set(path, what, owner, dacl);
  }

  static inline AccessBook book_;
  const ImportPatch get_{"GetSecurityInfo", &GetByHandle};
  const ImportPatch set_{"SetSecurityInfo", &SetByHandle};
  const ImportPatch setByName_{"SetNamedSecurityInfoW", &SetByName};
};
INSTANTIATE_TEST_SUITE_P(Checkpoints, CommonAccess, ::testing::Bool());

TEST_P(CommonAccess, EnablingWhatAUserMayHavePutThereIsRefused) {
  const std::wstring file = PutShortcut(common.disabled + L"Tray.lnk");
  const ItemRef item = LoadAndFind(CommonFolder(), file);
  std::vector<std::pair<std::wstring, const wchar_t*>> rows = {
      {file, kUsers},
      {file, L"O:BAD:(A;;0x2;;;BU)"},
      {common.disabled, kUsers},
      {common.disabled, L"O:BAD:(A;;0x2;;;BU)"},
  };
  for (const std::wstring& folder : Above(common.disabled))
    rows.emplace_back(folder, L"O:BAD:(A;;0x40;;;BU)");
  ASSERT_EQ(rows.back().first, L"C:\\");
  for (const auto& [path, sddl] : rows) {
    Book() = {};
    Book().Let(path, sddl);
    EXPECT_EQ(ErrorOf([&] { CommonFolder().EnableItem(item); }), DWORD(ERROR_ACCESS_DENIED))
        << fs::path(path) << fs::path(sddl);
    EXPECT_TRUE(Exists(file));
    EXPECT_FALSE(item->IsEnabled());
    EXPECT_THAT(Book().set, ::testing::IsEmpty());
  }
  EXPECT_THAT(FilesIn(common.startup), ::testing::IsEmpty());
  EXPECT_TRUE(LogHas(L"Error enable item \"" + file + L"\" in location \"sulFolderCommon\"."));

  // Farther up, files may be added.
  Book() = {};
  for (const std::wstring& folder : Above(common.disabled)) Book().Let(folder, L"O:BAD:(A;;0x116;;;BU)");
  CommonFolder().EnableItem(item);
  EXPECT_TRUE(Exists(common.startup + L"Tray.lnk"));
  EXPECT_THAT(Book().set, ::testing::ElementsAre(common.startup + L"Tray.lnk"));
}

TEST_P(CommonAccess, WhileItsRightsAreReadNobodyPutsAnotherFileInItsPlace) {
  const std::wstring file = PutShortcut(common.disabled + L"Tray.lnk");
  const ItemRef item = LoadAndFind(CommonFolder(), file);
  int asked = 0;
  Book().onRead = [&](const std::wstring& path) {
    if (!SameText(path, file)) return;
    ++asked;
    EXPECT_FALSE(MoveFileExW(file.c_str(), (file + L".old").c_str(), 0));
    EXPECT_FALSE(DeleteFileW(file.c_str()));
  };
  CommonFolder().EnableItem(item);
  EXPECT_GT(asked, 0);
  EXPECT_TRUE(Exists(common.startup + L"Tray.lnk"));
}

TEST_P(CommonAccess, WhatMovesIntoTheCommonFolderMustBeTrustedAndTheUsersFolderAsksNobody) {
  const std::wstring file = PutShortcut(user.startup + L"Moved.lnk");
  const ItemRef moved = LoadAndFind(UserFolder(), file);
  for (const std::wstring& path : {file, user.startup}) {
    Book() = {};
    Book().Let(path, kUsers);
    EXPECT_EQ(ErrorOf([&] { UserFolder().MoveItem(moved, sulFolderCommon); }), DWORD(ERROR_ACCESS_DENIED));
    EXPECT_TRUE(Exists(file));
    EXPECT_TRUE(moved->IsListed());
  }
  Book() = {};
  UserFolder().MoveItem(moved, sulFolderCommon);
  CommonFolder().AddItem(L"Added", Program());
  EXPECT_THAT(Book().set,
              ::testing::ElementsAre(common.startup + L"Moved.lnk", common.startup + L"Added.lnk"));

  const std::wstring own = PutShortcut(user.disabled + L"Own.lnk");
  Book().others = kUsers;
  UserFolder().EnableItem(LoadAndFind(UserFolder(), own));
  EXPECT_TRUE(Exists(user.startup + L"Own.lnk"));
  EXPECT_EQ(Book().set.size(), 2u);
}

// Nothing that came in stays with an owner of its own.
TEST_P(CommonAccess, WhatCannotBeGivenToTheAdministratorsDoesNotStay) {
  const std::wstring file = PutShortcut(common.disabled + L"Tray.lnk");
  const std::string bytes = ReadFileBytes(file);
  const ItemRef item = LoadAndFind(CommonFolder(), file);
  const std::wstring to = common.startup + L"Tray.lnk";
  for (const auto setting : {AccessBook::Setting::kRefused, AccessBook::Setting::kPretended}) {
    Book() = {};
    Book().setting = setting;
    Book().Let(to, kUsers);
    EXPECT_EQ(ErrorOf([&] { CommonFolder().EnableItem(item); }), DWORD(ERROR_ACCESS_DENIED));
    EXPECT_FALSE(Exists(to));
    EXPECT_EQ(ReadFileBytes(file), bytes);
    EXPECT_FALSE(item->IsEnabled());
  }
  Book().setting = AccessBook::Setting::kWorks;
  CommonFolder().EnableItem(item);
  EXPECT_EQ(Book().Of(to), kAdministrators);
}

TEST_P(CommonAccess, TheOwnFoldersAreTakenFromWhoMadeThemOrNotUsed) {
  const std::wstring product(FolderPart(common.disabled.substr(0, common.disabled.size() - 1)));
  const std::wstring vendor(FolderPart(product.substr(0, product.size() - 1)));
  const std::wstring file = PutShortcut(common.startup + L"Tray.lnk");
  const ItemRef item = LoadAndFind(CommonFolder(), file);
  const std::function<void()> changes[] = {
      [&] { CommonFolder().DisableItem(item); },
      [&] { CommonFolder().AddItem(L"New", Program()); },
  };
  for (const auto& change : changes) {
    const std::wstring own = &change == changes ? common.disabled : common.temporary;
    fs::create_directories(own);
    for (const std::wstring& folder : {vendor, product, own}) {
      for (const auto setting : {AccessBook::Setting::kRefused, AccessBook::Setting::kPretended}) {
        Book() = {};
        Book().setting = setting;
        Book().Let(folder, kUsers);
        EXPECT_EQ(ErrorOf(change), DWORD(ERROR_ACCESS_DENIED)) << fs::path(folder);
        EXPECT_TRUE(SameText(Book().set.at(0) + L'\\', folder));
        EXPECT_THAT(FilesIn(common.startup), ::testing::ElementsAre(L"Tray.lnk"));
        EXPECT_THAT(FilesIn(own), ::testing::IsEmpty());
      }
    }
    // Neither may the data folder lose the folders in it, nor may files be added to the own one.
    Book() = {};
    Book().Let(common.data, L"O:BAD:(A;;0x40;;;BU)");
    EXPECT_EQ(ErrorOf(change), DWORD(ERROR_ACCESS_DENIED));
    Book() = {};
    for (const std::wstring& folder : {vendor, product}) Book().Let(folder, kUsers);
    Book().Let(own, L"O:BAD:(A;;0x2;;;BU)");
    EXPECT_EQ(ErrorOf(change), 0u);
    for (const std::wstring& folder : {vendor, product, own}) EXPECT_EQ(Book().Of(folder), kAdministrators);
    ASSERT_GE(Book().set.size(), 3u);
    if (item->IsEnabled()) continue;
    CommonFolder().EnableItem(item);
    EXPECT_TRUE(Exists(file));
  }
  EXPECT_THAT(FilesIn(common.startup), ::testing::ElementsAre(L"New.lnk", L"Tray.lnk"));
}

TEST_P(CommonAccess, AShortcutThatOthersMayChangeWhileItIsMadeIsNotUsed) {
  Book().Let(common.temporary + L"New.lnk", L"O:BAD:(A;;FW;;;BU)");
  EXPECT_EQ(ErrorOf([&] { CommonFolder().AddItem(L"New", Program()); }), DWORD(ERROR_ACCESS_DENIED));
  EXPECT_THAT(FilesIn(common.startup), ::testing::IsEmpty());
  EXPECT_THAT(FilesIn(common.temporary), ::testing::IsEmpty());
}

// Where nothing is kept there is nothing to decide by, and nothing is set.
TEST_P(CommonAccess, AMachineThatKeepsNoOwnersIsNotAsked) {
  Book().others = kUsers;
  Book().setting = AccessBook::Setting::kPretended;
  const std::wstring file = PutShortcut(common.disabled + L"Tray.lnk");
  const ItemRef item = LoadAndFind(CommonFolder(), file);
  CommonFolder().EnableItem(item);
  CommonFolder().DisableItem(item);
  CommonFolder().AddItem(L"New", Program());
  UserFolder().MoveItem(LoadAndFind(UserFolder(), PutShortcut(user.startup + L"Moved.lnk")), sulFolderCommon);
  EXPECT_THAT(FilesIn(common.startup), ::testing::ElementsAre(L"Moved.lnk", L"New.lnk"));
  EXPECT_THAT(FilesIn(common.disabled), ::testing::ElementsAre(L"Tray.lnk"));
  EXPECT_THAT(Book().set, ::testing::IsEmpty());
}

}  // namespace
}  // namespace smh::test

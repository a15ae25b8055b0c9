#include "tests/proofs/proof_world.h"

#include "infra/runtime/text.h"
#include "locations/folders/shortcut_writer.h"
#include "model/basic_info.h"
#include "model/item_list.h"
#include "tests/support/state_dump.h"

#include <algorithm>
#include <filesystem>

namespace smh::test {

namespace fs = std::filesystem;

namespace {

const std::wstring kTemporary = L"TempShortcuts\\";
const std::wstring kServerKey = L"Software\\Classes\\CLSID\\" + kServedClass;

struct KeyPlace {
  HKEY root;
  std::wstring key;
};

const std::vector<KeyPlace>& KeyPlaces() {
  static const std::vector<KeyPlace> places = {
      {HKEY_LOCAL_MACHINE, kRunKey},     {HKEY_LOCAL_MACHINE, kMenusKey},
      {HKEY_LOCAL_MACHINE, kObjectsKey}, {HKEY_LOCAL_MACHINE, kApprovedKey},
      {HKEY_LOCAL_MACHINE, kRunOnceKey}, {HKEY_LOCAL_MACHINE, kHooksKey},
      {HKEY_LOCAL_MACHINE, kSwitches},   {HKEY_CURRENT_USER, kSwitches},
      {HKEY_CURRENT_USER, kRunKey},      {HKEY_CURRENT_USER, kRunOnceKey},
      {HKEY_CURRENT_USER, kHooksKey}};
  return places;
}

// The user's keys have one view.
template <typename Visit>
void ForEachKey(Visit&& visit) {
  for (const KeyPlace& place : KeyPlaces()) {
    if (place.root == HKEY_LOCAL_MACHINE && HasTwoViews())
      visit(place.root, place.key, REGSAM(KEY_WOW64_64KEY));
    visit(place.root, place.key, REGSAM(0));
  }
}

void LetGoOfFolders() {
  for (const TTypeStartupLocation type : {sulFolderUser, sulFolderCommon}) {
    while (FindLocation(type)->IsChanged()) {
    }
  }
}

void RemoveFiles(const std::wstring& folder) {
  if (!fs::is_directory(folder)) return;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_directory()) fs::remove(entry.path());
  }
}

}  // namespace

ProofWorld::ProofWorld(bool withLocations)
    : keys_({kRunKey, kRunOnceKey, kMenusKey, kObjectsKey, kApprovedKey, kHooksKey, kSwitches, kServerKey}),
      letGo_(withLocations ? LetGo(LetGoOfFolders) : LetGo()) {
  Put(HKEY_LOCAL_MACHINE, kServerKey + L"\\InprocServer32", L"", Sz(L"C:\\Samples\\class.dll"));
  RemoveFolders();
  Clear();
}

void ProofWorld::Clear() const {
  for (const bool deletes : {true, false}) {
    ForEachKey([&](HKEY root, const std::wstring& key, REGSAM view) {
      if (deletes) {
        DeleteKeyTree(root, key, view);
      } else {
        MakeKey(root, key, view);
      }
    });
  }
  for (const std::wstring& folder : Folders()) RemoveFiles(folder);
}

void ProofWorld::RemoveFolders() {
  user_.reset();
  common_.reset();
  user_.emplace(StartupPlaces::Whose::kUser, letGo_);
  common_.emplace(StartupPlaces::Whose::kCommon, letGo_);
  if (letGo_) letGo_();
}

std::vector<std::wstring> ProofWorld::Folders() const {
  std::vector<std::wstring> folders;
  for (const StartupPlaces* places : {&*user_, &*common_}) {
    folders.insert(folders.end(), {places->startup, places->disabled, places->brisko, places->temporary});
  }
  return folders;
}

void ProofWorld::Put(HKEY root, const std::wstring& key, const std::wstring& name, const RawValue& value,
                     Views views) const {
  if (views != Views::kPlain || !HasTwoViews()) SetValue(root, key, name, value, OwnView());
  if (views != Views::kOwn && HasTwoViews()) SetValue(root, key, name, value, 0);
}

void ProofWorld::PutShortcut(const std::wstring& file, const std::wstring& arguments) const {
  fs::create_directories(fs::path(file).parent_path());
  ShortcutFields fields;
  fields.target = kProgram;
  fields.arguments = arguments;
  WriteShortcut(fields, file);
}

RawState ProofWorld::Entries() const {
  RawState state;
  ForEachKey([&](HKEY root, const std::wstring& key, REGSAM view) { AddKeyTo(state, root, key, view); });
  // The lists themselves are no entries.
  std::erase_if(state, [](const auto& entry) {
    const std::wstring& key = entry.first.key;
    return entry.second.empty() && !entry.first.IsFile() && entry.first.name.empty() &&
           (key.starts_with(kRunKey) || key.starts_with(kSwitches) || key.ends_with(kAutorunsSide) ||
            std::ranges::find(KeyPlaces(), key, &KeyPlace::key) != KeyPlaces().end());
  });
  for (const std::wstring& folder : Folders()) {
    if (!folder.ends_with(kTemporary)) AddFolderTo(state, folder);
  }
  return state;
}

std::string ProofWorld::Everything() const {
  std::string dump;
  ForEachKey([&](HKEY root, const std::wstring& key, REGSAM view) { dump += DumpKey(root, key, view); });
  for (const std::wstring& folder : Folders()) {
    if (!folder.ends_with(kTemporary)) dump += DumpFolder(WithoutTrailingBackslash(folder));
  }
  return dump;
}

std::vector<std::string> ListedEntries(bool withShortcuts) {
  std::vector<std::string> lines;
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    std::string line = Narrow(item->Name()) + (item->IsEnabled() ? " on" : " off");
    if (withShortcuts || !IsFolderLocation(item->Location())) {
      line += " = " + Narrow(std::wstring(item->State().details.Command));
    }
    lines.push_back(std::move(line));
  }
  std::ranges::sort(lines);
  return lines;
}

std::vector<std::string> ReadAndList(const std::vector<TTypeStartupLocation>& locations) {
  for (const TTypeStartupLocation type : locations) FindLocation(type)->ReadItems();
  return ListedEntries(true);
}

std::vector<std::string> ReloadedEntries(const std::vector<TTypeStartupLocation>& locations) {
  {
    ScopedLock lock(Items().Lock());
    Items().Clear();
  }
  return ReadAndList(locations);
}

}  // namespace smh::test

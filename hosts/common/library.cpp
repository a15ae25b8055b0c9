#include "hosts/common/library.h"

#include "core/contracts/intf_FileRater.h"
#include "core/contracts/intf_general.h"
#include "core/contracts/intf_safeguard.h"
#include "core/contracts/intf_settings.h"
#include "hosts/common/host_error.h"
#include "hosts/common/texts/failure_texts.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/module_path.h"
#include "infra/runtime/text.h"
#include "infra/siblings/exported_instance.h"

namespace smh {

namespace {

constexpr wchar_t kLibrary[] = L"StartupManagerHelper.dll";

constexpr const wchar_t* kSiblings[] = {IHelper::kLibrary, ISettings::kLibrary, IFileRater::kLibrary,
                                        ISafeguard::kLibrary};

std::wstring OwnFolder() {
  const std::wstring program = ModuleFileName(nullptr);
  if (program.empty()) throw HostError(texts::kNoOwnFolder);
  return std::wstring(FolderPart(program));
}

}  // namespace

ScopedModule LoadFromOwnFolder(const std::wstring& name) {
  const std::wstring file = OwnFolder() + name;
  if (!IsFile(file)) throw HostError(Say(texts::kLibraryMissing, file));
  ScopedModule library(LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
  if (!library) {
    const DWORD error = GetLastError();
    throw HostError(Say(texts::kCannotLoad, file, SystemErrorText(HRESULT_FROM_WIN32(error))));
  }
  return library;
}

IUnknown* AskInstance(HMODULE library, const std::wstring& name, const wchar_t* id) {
  IUnknown* const instance = ExportedInstance(library, id);
  if (instance == nullptr) throw HostError(Say(texts::kOffersNothing, name));
  return instance;
}

Library::Library(IconUse icons, const std::function<void()>& onLoaded) {
  for (const wchar_t* const name : kSiblings) siblings_.push_back(LoadFromOwnFolder(name));
  module_ = LoadFromOwnFolder(kLibrary);
  if (onLoaded) onLoaded();
  IUnknown* const instance = AskInstance(module_.Get(), kLibrary, IStartupManager::kId);
  // The library answers with the very interface that was named.
  manager_ = ComPtr<IStartupManager>(static_cast<IStartupManager*>(instance));
  CheckResult(manager_->GetStartupItems(items_.Put()), texts::kCannotGetList);
  CheckResult(items_->SetShowIcons(icons == IconUse::kShown ? TRUE : FALSE), texts::kCannotChooseIcons);
}

Library::~Library() {
  if (items_) items_->Stop();
}

ComPtr<IStartupItem> Library::ItemAt(std::int32_t index) const {
  ComPtr<IStartupItem> item;
  CheckResult(items_->GetItem(index, item.Put()), texts::kCannotGetEntry);
  return item;
}

std::wstring Library::ResolveCommandFile(const std::wstring& command) const {
  return TakeText([&](BoundaryText* file) { return manager_->ResolveCommandFile(command.c_str(), file); });
}

ListLock::ListLock(const Library& library) : items_(library.Items()) {
  CheckResult(items_.Lock(), texts::kCannotLockList);
}

ListLock::~ListLock() {
  items_.Unlock();
}

}  // namespace smh

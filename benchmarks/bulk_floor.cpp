// The floor of many changes in one command: a plain process that reads the list, makes the recorded writes,
// readings and deletions of its entries through keys that stay open, as one action of the backup service, and
// reads the list once more.

#include "benchmarks/floor.h"
#include "benchmarks/sample_entries.h"
#include "core/contracts/StartupManagerHelper.h"
#include "core/contracts/intf_journal.h"
#include "core/contracts/intf_safeguard.h"
#include "infra/registry/registry_values.h"
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/import_function.h"
#include "tests/support/known_keys.h"

#include <filesystem>
#include <optional>
#include <string>

namespace smh::bench {
namespace {

// The backup service, as the library has it.
template <typename Service>
Service& Guard() {
  static const HMODULE module = [] {
    wchar_t own[MAX_PATH];
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    return LoadLibraryW(std::filesystem::path(own).replace_filename(Service::kLibrary).c_str());
  }();
  return *static_cast<Service*>(ImportFunction<GetInstanceFunction>(module, "GetInstance")(Service::kId, 0));
}

// The keys of one root.
struct Keys {
  HKEY run = nullptr;
  HKEY side = nullptr;
};

void Disable(IRegAccess& access, const Keys& keys, const std::wstring& name) {
  const std::optional<RegistryData> data = QueryRegistryValue(keys.run, name);
  CheckStatus(Guard<ISafeguard>().BeginCheckpoint((L"Disabling " + name).c_str()));
  CheckStatus(access.SetValue(keys.side, name.c_str(), static_cast<DWORD>(data.value().bytes.size()),
                              data->bytes.data(), data->type, 0));
  if (QueryRegistryValue(keys.side, name) != data) RaiseOSError(ERROR_WRITE_FAULT);
  CheckStatus(access.DeleteValue(keys.run, name.c_str()));
  if (QueryRegistryValue(keys.run, name)) RaiseOSError(ERROR_WRITE_FAULT);
  CheckStatus(Guard<ISafeguard>().EndCheckpoint());
}

void DisableAll(int count) {
  ComPtr<IRegAccess> access;
  Guard<ISafeguard>().GetRegAccess(access.Put());
  const std::wstring title = L"Disabling " + std::to_wstring(count) + L" entries";
  if (FAILED(Guard<IJournal>().BeginAction(title.c_str()))) RaiseOSError(ERROR_BUSY);
  const REGSAM rights = test::OwnView() | KEY_READ | KEY_WRITE;
  Keys keys[2];
  for (const int i : {0, 1}) {
    const HKEY root = i == 0 ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    CheckStatus(access->CreateKey(root, test::kRunSide.c_str(), nullptr, &keys[i].side, 0, rights, 0, 0, 0));
    CheckStatus(access->OpenKey(root, test::kRunKey.c_str(), &keys[i].run, rights, 0));
  }
  for (int i = 0; i < count; ++i) Disable(*access.Get(), keys[i % 2], EntryName(i));
  for (const Keys& each : keys) {
    access->CloseKey(each.run);
    access->CloseKey(each.side);
  }
  std::uint32_t id = 0;
  if (FAILED(Guard<IJournal>().EndAction(&id)) || id == 0) RaiseOSError(ERROR_WRITE_FAULT);
}

}  // namespace
}  // namespace smh::bench

int wmain(int argc, wchar_t** argv) {
  using namespace smh::bench;
  if (argc != 2) return 2;
  FloorResult before;
  FloorRunKeys(before);
  DisableAll(std::stoi(argv[1]));
  FloorResult after;
  FloorRunKeys(after);
  return before.items.size() == after.items.size() ? 0 : 1;
}

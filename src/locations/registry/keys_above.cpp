#include "locations/registry/keys_above.h"

#include "infra/registry/registry_values.h"
#include "infra/runtime/exceptions.h"
#include "locations/registry/key_opening.h"

#include <map>
#include <tuple>
#include <utility>

namespace smh {

NotifyingKey::NotifyingKey(HKEY root, REGSAM view, std::wstring path, Scope scope)
    : root_(root),
      view_(view),
      path_(std::move(path)),
      scope_(scope),
      event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  if (!event_) RaiseLastOSError();
}

bool NotifyingKey::IsSignalled() const noexcept {
  return WaitForSingleObject(event_.Get(), 0) == WAIT_OBJECT_0;
}

bool NotifyingKey::IsAnother() noexcept {
  if (static_cast<bool>(Open()) != IsOpen()) return true;
  return IsOpen() && RegQueryInfoKeyW(handle_.Get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                      nullptr, nullptr, nullptr, nullptr, nullptr) == ERROR_KEY_DELETED;
}

void NotifyingKey::Arm() noexcept {
  constexpr DWORD kAnyChange = REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_ATTRIBUTES |
                               REG_NOTIFY_CHANGE_LAST_SET | REG_NOTIFY_CHANGE_SECURITY;
  const bool isAll = scope_ == Scope::kEverything;
  handle_.Reset();
  ResetEvent(event_.Get());
  handle_ = Open();
  if (!handle_) return;
  const LSTATUS status = RegNotifyChangeKeyValue(
      handle_.Get(), isAll, isAll ? kAnyChange : REG_NOTIFY_CHANGE_NAME, event_.Get(), TRUE);
  if (status == ERROR_SUCCESS) return;
  isBlocked_ = status != ERROR_KEY_DELETED;
  handle_.Reset();
}

ScopedKey NotifyingKey::Open() noexcept {
  ScopedKey key = OpenRegistryKey(root_, path_, view_ | KEY_READ);
  isBlocked_ = !key && !IsMissingKey(GetLastError());
  return key;
}

KeyAbove::KeyAbove(HKEY root, REGSAM view, std::wstring path, KeyAbove* above)
    : key_(root, view, std::move(path), NotifyingKey::Scope::kKeysInIt),
      above_(above),
      aboveSeen_(above == nullptr ? 0 : above->Touches()) {
  key_.Arm();
}

bool KeyAbove::IsOverdue() const noexcept {
  return key_.IsBlocked() || (above_ == nullptr ? !key_.IsOpen() : aboveSeen_ != above_->Touches());
}

void KeyAbove::Look() noexcept {
  const bool isOverdue = IsOverdue();
  if (above_ != nullptr) aboveSeen_ = above_->Touches();
  if (!key_.IsSignalled() && !(isOverdue && key_.IsAnother())) return;
  key_.Arm();
  ++touches_;
}

struct KeysAbove {
  // Their addresses stay.
  std::map<std::tuple<HKEY, REGSAM, std::wstring>, KeyAbove> keys;
};

constinit ModuleGlobal<KeysAbove> g_keysAbove(L"keys_above");

KeyAbove* FindKeyAbove(HKEY root, REGSAM view, std::wstring_view path) {
  const std::size_t end = path.rfind(L'\\');
  if (end == std::wstring_view::npos) return nullptr;
  const std::wstring own(path.substr(0, end));
  KeyAbove* const above = FindKeyAbove(root, view, own);
  const auto place = std::make_tuple(root, view, own);
  return &g_keysAbove->keys.try_emplace(place, root, view, own, above).first->second;
}

}  // namespace smh

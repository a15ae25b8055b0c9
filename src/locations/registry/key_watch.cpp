#include "locations/registry/key_watch.h"

#include "sysutil/version/uWinVersionInfo.h"

#include <algorithm>

namespace smh {

namespace {

// What is below a watched key is watched with it.
bool IsBelow(const WatchedKey& key, const WatchedKey& other) {
  return key.root == other.root && key.path.starts_with(other.path + L'\\');
}

}  // namespace

KeyWatch::Watch::Watch(HKEY root, REGSAM view, const std::wstring& path)
    : key(root, view, path, NotifyingKey::Scope::kEverything), above(FindKeyAbove(root, view, path)) {}

bool KeyWatch::Watch::IsOverdue() const noexcept {
  return key.IsBlocked() || (above != nullptr && above->Touches() != aboveSeen);
}

bool KeyWatch::Watch::IsDue() noexcept {
  if (key.IsSignalled()) return true;
  if (!IsOverdue()) return false;
  if (key.IsAnother()) return true;
  if (above != nullptr) aboveSeen = above->Touches();
  return false;
}

void KeyWatch::Watch::Accept() noexcept {
  if (above != nullptr) aboveSeen = above->Touches();
  if (key.IsSignalled() || key.IsAnother()) key.Arm();
}

KeyWatch::KeyWatch(const std::vector<WatchedKey>& keys) {
  const auto add = [this](const WatchedKey& key, REGSAM view) {
    watches_.emplace_back(key.root, view, key.path);
    AddAbove(watches_.back().above);
  };
  for (const WatchedKey& key : keys) {
    if (std::ranges::any_of(keys, [&](const WatchedKey& other) { return IsBelow(key, other); })) continue;
    add(key, 0);
    if (WinVersionInfo::IsWow64()) add(key, KEY_WOW64_64KEY);
  }
  for (const KeyAbove* key : above_) events_.push_back(key->Event());
  for (Watch& watch : watches_) {
    events_.push_back(watch.key.Event());
    watch.Accept();
  }
}

void KeyWatch::AddAbove(KeyAbove* key) {
  if (key == nullptr || std::ranges::find(above_, key) != above_.end()) return;
  AddAbove(key->Above());
  above_.push_back(key);
}

bool KeyWatch::IsAnythingSignalled() const noexcept {
  // A wait takes so many at most.
  for (std::size_t i = 0; i < events_.size(); i += MAXIMUM_WAIT_OBJECTS) {
    const auto count = static_cast<DWORD>(std::min<std::size_t>(events_.size() - i, MAXIMUM_WAIT_OBJECTS));
    if (WaitForMultipleObjects(count, &events_[i], FALSE, 0) < WAIT_OBJECT_0 + count) return true;
  }
  return false;
}

bool KeyWatch::IsDue() noexcept {
  if (isDue_) return true;
  const auto isOverdue = [](const KeyAbove* key) { return key->IsOverdue(); };
  if (!IsAnythingSignalled() && std::ranges::none_of(above_, isOverdue) &&
      std::ranges::none_of(watches_, &Watch::IsOverdue)) {
    return false;
  }
  for (KeyAbove* const key : above_) key->Look();
  isDue_ = std::ranges::any_of(watches_, [](Watch& watch) { return watch.IsDue(); });
  return isDue_;
}

void KeyWatch::Accept() noexcept {
  if (!IsDue()) return;
  for (Watch& watch : watches_) watch.Accept();
  isDue_ = false;
}

}  // namespace smh

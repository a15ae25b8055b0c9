#include "locations/folders/folder_watch.h"

#include "infra/runtime/text.h"
#include "locations/folders/folder_files.h"
#include "sysutil/network_roots.h"

#include <algorithm>

namespace smh {

namespace {

constexpr DWORD kOwnFilter = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME |
                             FILE_NOTIFY_CHANGE_ATTRIBUTES | FILE_NOTIFY_CHANGE_SIZE |
                             FILE_NOTIFY_CHANGE_LAST_WRITE | FILE_NOTIFY_CHANGE_SECURITY;

// Empty for the root of a drive and for a network share.
std::wstring_view FolderAbove(std::wstring_view folder) {
  const int backslashesOfRoot = folder.starts_with(L"\\\\") ? 4 : 1;
  if (std::ranges::count(folder, L'\\') <= backslashesOfRoot) return {};
  return FolderPart(folder.substr(0, folder.size() - 1));
}

// No such folder, or a file in its place.
bool IsAbsent(DWORD error) noexcept {
  return IsMissing(error) || error == ERROR_DIRECTORY;
}

// None is waited for where nobody answers.
HANDLE Open(const std::wstring& folder, bool isOwn) {
  if (!IsReachable(folder)) {
    SetLastError(ERROR_BAD_NETPATH);
    return INVALID_HANDLE_VALUE;
  }
  return FindFirstChangeNotificationW(folder.c_str(), isOwn,
                                      isOwn ? kOwnFilter : FILE_NOTIFY_CHANGE_DIR_NAME);
}

}  // namespace

FolderWatch::FolderWatch(const std::vector<std::wstring>& folders) {
  for (const std::wstring& folder : folders) Add(folder, true);
  for (std::size_t i = 0; i < places_.size() && places_.size() < MAXIMUM_WAIT_OBJECTS; ++i) {
    Add(std::wstring(FolderAbove(places_[i].path)), false);
  }
  std::ranges::stable_sort(places_, {}, [](const Place& place) { return place.path.size(); });
  for (Place& place : places_) place.above = Find(FolderAbove(place.path));
  handles_.reserve(places_.size());
  Look();
}

void FolderWatch::Add(std::wstring path, bool isOwn) {
  if (!path.empty() && Find(path) == nullptr) places_.push_back({std::move(path), isOwn});
}

const FolderWatch::Place* FolderWatch::Find(std::wstring_view path) const noexcept {
  const auto place =
      std::ranges::find_if(places_, [&](const Place& candidate) { return SameText(candidate.path, path); });
  return place == places_.end() ? nullptr : &*place;
}

bool FolderWatch::IsDue() {
  const auto count = static_cast<DWORD>(handles_.size());
  const bool isSignalled =
      count > 0 && WaitForMultipleObjects(count, handles_.data(), FALSE, 0) < WAIT_OBJECT_0 + count;
  if ((isSignalled || isAnyLost_) && Look()) isDue_ = true;
  return isDue_;
}

void FolderWatch::Accept() {
  IsDue();
  isDue_ = false;
}

bool FolderWatch::Look() {
  bool changed = false;
  handles_.clear();
  isAnyLost_ = false;
  for (Place& place : places_) {
    auto& notification = place.notification;
    const bool wasWatched = static_cast<bool>(notification);
    const bool isSignalled = wasWatched && WaitForSingleObject(notification.Get(), 0) == WAIT_OBJECT_0;
    const bool isAnother = place.above != nullptr && place.above->isTouched;
    bool isBlocked = false;
    // Going on fails when the folder is gone; it may be back as another one.
    if (isAnother || place.isLost ||
        (isSignalled && FindNextChangeNotification(notification.Get()) == FALSE)) {
      // A folder being deleted stays until its last handle is closed, and cannot be opened.
      notification.Reset();
      notification.Reset(Open(place.path, place.isOwn));
      isBlocked = !notification && !IsAbsent(GetLastError());
    }
    const bool isWatched = static_cast<bool>(notification);
    place.isTouched = isSignalled || isAnother || isWatched != wasWatched;
    place.isLost = !isWatched && (isBlocked || place.above == nullptr || place.above->isLost);
    if (isWatched) handles_.push_back(notification.Get());
    if (!place.isOwn) continue;
    changed = changed || (place.isTouched && (wasWatched || isWatched));
    isAnyLost_ = isAnyLost_ || place.isLost;
  }
  return changed;
}

}  // namespace smh

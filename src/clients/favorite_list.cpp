#include "clients/favorite_list.h"

#include "clients/client_facts.h"
#include "infra/runtime/catch_failure.h"
#include "infra/runtime/text.h"
#include "model/reader_state.h"
#include "sysutil/network_roots.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace smh {

namespace {

constexpr FixedIcon kFixedIcons[] = {kUnknownFileIcon};

// Runs what may fail for one key or entry without harm to the others.
template <typename Body>
void LogFailure(Body&& body) {
  CatchFailure(std::forward<Body>(body), LogCurrentException);
}

}  // namespace

FavoriteList::FavoriteList() : icons_(kFixedIcons) {
  icons_.Large();
}

int FavoriteList::Count() const {
  ScopedLock lock(lock_);
  return static_cast<int>(items_.size());
}

TFavoriteItem* FavoriteList::At(int index) const {
  ScopedLock lock(lock_);
  return index < 0 || index >= Count() ? nullptr : items_[static_cast<std::size_t>(index)].get();
}

void FavoriteList::Append(FavoriteIdentity identity) {
  ScopedLock lock(lock_);
  items_.push_back(std::make_unique<TFavoriteItem>(std::move(identity), Count()));
}

bool FavoriteList::HasKey(std::wstring_view keyPath) const {
  ScopedLock lock(lock_);
  return std::ranges::any_of(
      items_, [keyPath](const auto& item) { return SameText(item->Identity().keyPath, keyPath); });
}

std::vector<TFavoriteItem*> FavoriteList::ItemsWithoutDetails() const {
  ScopedLock lock(lock_);
  std::vector<TFavoriteItem*> result;
  for (const auto& item : items_) {
    if (item->NeedsDetails()) result.push_back(item.get());
  }
  return result;
}

void FavoriteList::SetDetails(TFavoriteItem& item, ItemDetails details) {
  ScopedLock lock(lock_);
  item.TakeDetails(std::move(details));
}

void FavoriteReader::Execute() noexcept {
  ReadingPass pass([this] { return thread_.IsAskedToEnd(); });
  bool goOn = thread_.RunStep([this] { ReadAll(); });
  if (goOn) list_.State.exchange(kReadStateListed);
  while (goOn) {
    goOn = thread_.RunStep([&] {
      pass.Begin();
      LoadDetails();
      if (list_.State.load() != kReadStateComplete) list_.State.exchange(kReadStateComplete);
      WaitForWork();
    });
  }
  SaveLog();
}

void FavoriteReader::ReadAll() {
  const auto kinds = static_cast<std::int32_t>(ClientKindKeys().size());
  for (std::int32_t kind = 0; kind < kinds; ++kind) {
    if (*ClientKindKeys()[kind] == L'\0') continue;
    if (WinVersionInfo::IsWow64()) ReadKind(kind, KEY_WOW64_64KEY);
    ReadKind(kind, 0);
  }
}

void FavoriteReader::ReadKind(std::int32_t kind, REGSAM view) {
  LogFailure([&] {
    const std::vector<std::wstring> names = ClientNames(kind, view);
    thread_.CheckTerminated();
    for (const std::wstring& name : names) {
      LogFailure([&] { AddEntry(kind, ClientKindKeys()[kind] + (L'\\' + name)); });
      thread_.CheckTerminated();
    }
  });
  thread_.CheckTerminated();
}

// Only the reader adds entries with a key: between the test and the appending no other such entry comes.
void FavoriteReader::AddEntry(std::int32_t kind, const std::wstring& keyPath) {
  if (list_.HasKey(keyPath)) return;
  std::optional<FavoriteIdentity> client = ReadClient(kind, keyPath);
  if (client) list_.Append(std::move(*client));
}

void FavoriteReader::LoadDetails() {
  std::optional<IconSource> icons;
  if (ShowIcons()) icons.emplace(thread_.Wake(), [this] { thread_.CheckTerminated(); });
  for (TFavoriteItem* const item : list_.ItemsWithoutDetails()) {
    thread_.CheckTerminated();
    LoadDetails(*item, icons ? &*icons : nullptr);
  }
}

void FavoriteReader::LoadDetails(TFavoriteItem& item, IconSource* icons) {
  ItemDetails details = InitialClientDetails(item.Identity());
  LogFailure([&] { LoadClientDetails(item.Identity(), list_.Icons(), icons, details); });
  list_.SetDetails(item, std::move(details));
}

void FavoriteReader::WaitForWork() {
  ResetEvent(thread_.Wake());
  // Neither a request to end nor a path that came before the reset must be waited away.
  thread_.CheckTerminated();
  if (list_.ItemsWithoutDetails().empty()) WaitForSingleObject(thread_.Wake(), INFINITE);
  thread_.CheckTerminated();
}

}  // namespace smh

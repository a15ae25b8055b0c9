#include "model/item_list.h"

#include "infra/runtime/ascii_text.h"
#include "infra/runtime/assertion.h"

#include <algorithm>

namespace smh {

namespace {

constexpr wchar_t kUnit[] = L"item_list";

}  // namespace

constinit ModuleGlobal<TItemList> g_items(kUnit);

TItemList::Key::Key(TTypeStartupLocation of, std::wstring_view text) noexcept
    : location(of), name(text), hash(AsciiTextHash()(text) * 31 + static_cast<std::size_t>(of)) {}

bool TItemList::Key::operator==(const Key& other) const noexcept {
  return hash == other.hash && location == other.location && SameAsciiText(name, other.name);
}

TItemList::Key TItemList::KeyOf(const TStartupItem& item) noexcept {
  return Key(item.location_, item.state_.name);
}

int TItemList::Count() const {
  SMH_ASSERT(kUnit, lock_.IsHeldByCaller());
  return static_cast<int>(items_.size());
}

ItemRef TItemList::At(int index) const {
  SMH_ASSERT(kUnit, lock_.IsHeldByCaller());
  if (index < 0 || static_cast<std::size_t>(index) >= items_.size()) return nullptr;
  return items_[static_cast<std::size_t>(index)];
}

ItemRef TItemList::Find(TTypeStartupLocation location, std::wstring_view name) const {
  return Find(Key(location, name));
}

ItemRef TItemList::Find(const Key& key) const {
  SMH_ASSERT(kUnit, lock_.IsHeldByCaller());
  const auto found = index_.find(key);
  return found == index_.end() ? nullptr : At(found->second->Position());
}

std::vector<ItemRef> TItemList::Snapshot() const {
  SMH_ASSERT(kUnit, lock_.IsHeldByCaller());
  return items_;
}

int TItemList::Append(ItemRef item) {
  return Insert(static_cast<int>(items_.size()), std::move(item));
}

int TItemList::Insert(int index, ItemRef item) {
  SMH_ASSERT(kUnit, lock_.IsHeldByCaller());
  const Key key = KeyOf(*item);
  DropStale(key, item.get());
  const auto place = static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(items_.size())));
  TStartupItem* const raw = item.get();
  const auto at = items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(place), std::move(item));
  try {
    index_.emplace(key, raw);
  } catch (...) {
    items_.erase(at);
    throw;
  }
  Renumber(place);
  return static_cast<int>(place);
}

int TItemList::Remove(TStartupItem& item) {
  SMH_ASSERT(kUnit, lock_.IsHeldByCaller());
  const int position = item.Position();
  if (position < 0) return -1;
  index_.erase(KeyOf(item));
  // Keeps the item alive until the list is consistent again.
  const ItemRef removed = std::move(items_[static_cast<std::size_t>(position)]);
  items_.erase(items_.begin() + position);
  removed->position_.store(-1, std::memory_order_release);
  Renumber(static_cast<std::size_t>(position));
  return position;
}

void TItemList::RemoveIf(const std::function<bool(const TStartupItem&)>& drop) {
  SMH_ASSERT(kUnit, lock_.IsHeldByCaller());
  std::vector<ItemRef> removed;
  const auto closeGaps = [this]() SMH_NEEDS_LOCK(lock_) {
    std::erase(items_, nullptr);
    Renumber(0);
  };
  try {
    for (std::size_t i = items_.size(); i > 0; --i) {
      ItemRef& item = items_[i - 1];
      if (!drop(*item)) continue;
      removed.push_back(item);
      index_.erase(KeyOf(*item));
      item->position_.store(-1, std::memory_order_release);
      item.reset();
    }
  } catch (...) {
    closeGaps();
    throw;
  }
  closeGaps();
}

void TItemList::Clear() noexcept {
  for (const ItemRef& item : items_) item->position_.store(-1, std::memory_order_release);
  index_.clear();
  items_.clear();
}

void TItemList::Relocate(TStartupItem& item, const FoundEntry& entry) {
  SMH_ASSERT(kUnit, lock_.IsHeldByCaller());
  DropStale(Key(item.location_, entry.name), &item);
  ScopedLock lock(item.Lock);
  // The entry of the index shows the name that goes; it is taken out and put back, which cannot fail.
  auto indexed = index_.extract(item.IsListed() ? KeyOf(item) : Key(sulNone, {}));
  ItemDetails& details = item.state_.details;
  for (SharedText* const path : {&details.Command, &details.FilePath, &details.LinkPath}) {
    if (*path == item.state_.name) *path = entry.name;
  }
  item.state_.name = entry.name;
  if (!indexed.empty()) {
    indexed.key() = KeyOf(item);
    index_.insert(std::move(indexed));
  }
  item.state_.givenText = entry.caption;
  item.state_.address = entry.address;
  item.state_.isEnabled = entry.isEnabled;
  ++item.revision_;
  item.MarkChanged();
}

void TItemList::Renumber(std::size_t from) noexcept {
  for (std::size_t i = from; i < items_.size(); ++i) {
    items_[i]->position_.store(static_cast<int>(i), std::memory_order_release);
  }
}

void TItemList::DropStale(const Key& key, const TStartupItem* except) {
  const ItemRef stale = Find(key);
  if (stale != nullptr && stale.get() != except) Remove(*stale);
}

ItemRef FindItem(TTypeStartupLocation location, std::wstring_view name) {
  ScopedLock lock(Items().Lock());
  return Items().Find(location, name);
}

}  // namespace smh

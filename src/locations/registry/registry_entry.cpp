#include "locations/registry/registry_entry.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/registry/registry.h"
#include "locations/registry/key_opening.h"
#include "model/change_refused.h"

#include <algorithm>

namespace smh {

namespace {

RegistryValueAddress PlainView(RegistryValueAddress address) {
  address.viewBits = 0;
  return address;
}

}  // namespace

RegistryData WrittenForm(const RegistryData& data) {
  return data.IsText() || data.bytes.empty() ? StringData(data.Text()) : data;
}

RegistryValueAddress AddressOf(const TStartupItem& item) {
  return item.Get([](const ItemState& state) { return RegistryValueAddress(state.address); });
}

std::unique_ptr<RegistrySource> RegistrySource::Read(std::shared_ptr<const EntryStore> store,
                                                     const RegistryValueAddress& address,
                                                     const EntryLister& list) {
  KeptEntry kept = store->Keep(address);
  const std::optional<RegistryData> data = DataOf(kept);
  if (!data) return nullptr;
  std::vector<Place> places{{address, std::move(kept)}};
  if (address.viewBits == KEY_WOW64_64KEY && !IsOneInBothViews(address.root, address.key)) {
    KeptEntry plain = store->Keep(PlainView(address));
    if (DataOf(plain) == data) places.push_back({PlainView(address), std::move(plain)});
  }
  FoundEntry found = list(address, *data);
  return std::unique_ptr<RegistrySource>(
      new RegistrySource(std::move(store), *data, std::move(found), std::move(places)));
}

std::wstring RegistrySource::Command() const {
  if (!data_.IsText()) RaiseInvalidDataType(Address().valueName);
  return data_.Text();
}

void RegistrySource::MarkCopies(std::size_t place) const {
  const Place& marked = places_[std::min(place, places_.size() - 1)];
  const RegistryValueAddress& address = marked.address;
  const bool isKey = marked.kept.front().isKey;
  DLLGlobals::Safeguard().SetSource(store_->KeyOf(address), isKey ? nullptr : address.valueName.c_str(),
                                    nullptr);
}

bool RegistrySource::ExtractItem(const LastLook& arrived) {
  for (Place& place : places_) {
    if (!store_->Delete(place.address, place.kept, arrived, place.isBegun)) return false;
  }
  return true;
}

bool RegistrySource::PutBack() noexcept {
  bool isBack = true;
  for (const Place& place : places_) isBack = store_->PutBack(place.kept, place.isBegun) && isBack;
  return isBack;
}

RegistryTarget::RegistryTarget(std::shared_ptr<const EntryStore> store, const RegistryValueAddress& address,
                               KeptEntry before, RegistryData data, FoundEntry found)
    : store_(std::move(store)), data_(std::move(data)), found_(std::move(found)) {
  places_.push_back({address, std::move(before)});
  places_.front().stands = Holds(places_.front().before);
}

bool RegistryTarget::Holds(const KeptEntry& kept) const {
  const std::optional<RegistryData> data = DataOf(kept);
  return data && WrittenForm(*data) == data_;
}

bool RegistryTarget::IsTaken() const {
  return !places_.front().before.empty() && !places_.front().stands;
}

bool RegistryTarget::AddTwin() {
  const RegistryValueAddress address = PlainView(places_.front().address);
  KeptEntry before = store_->Keep(address);
  const bool stands = Holds(before);
  if (!before.empty() && !stands) return false;
  places_.push_back({address, std::move(before), stands});
  return true;
}

bool RegistryTarget::StandsAlready() const noexcept {
  return places_.front().stands;
}

bool RegistryTarget::InsertItem(const CopyMark& mark) {
  for (std::size_t number = 0; number < places_.size(); ++number) {
    Place& place = places_[number];
    // Both views may show one and the same key: then the first writing was for both.
    if (place.stands || number != 0) {
      if (Holds(store_->Keep(place.address))) continue;
      if (place.stands) RaiseChangedMeanwhile();
    }
    place.isWritten = true;
    mark(number);
    if (!store_->Write(place.address, data_, place.before)) return false;
  }
  return true;
}

bool RegistryTarget::Stands() const {
  return std::ranges::all_of(places_,
                             [this](const Place& place) { return Holds(store_->KeepAnew(place.address)); });
}

bool RegistryTarget::TakeBack() noexcept {
  bool isGone = true;
  for (auto place = places_.rbegin(); place != places_.rend(); ++place) {
    if (place->isWritten) isGone = store_->TakeBack(place->address, data_, place->before) && isGone;
  }
  return isGone;
}

}  // namespace smh

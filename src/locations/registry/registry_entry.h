// One entry of a registry location, in the one or two views that show it: as the source of a change, and as
// its target.
//
// An entry of the 64-bit view has a twin in the plain view when that shows the same data at the same place.
// The twin goes along: it is written, removed and put back with the entry. What the plain view holds besides
// is another entry, and is left alone.
#pragma once

#include "locations/registry/entry_store.h"
#include "model/entry_steps.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace smh {

// As a change writes what it has read: texts as REG_SZ (their type is not kept, on purpose), nothing as an
// empty one, anything else as it is.
RegistryData WrittenForm(const RegistryData& data);

// How a family lists what it reads at an address.
using EntryLister = std::function<FoundEntry(const RegistryValueAddress& address, const RegistryData& data)>;

// Where a listed item's entry lies; a copy, taken under the item's lock.
RegistryValueAddress AddressOf(const TStartupItem& item);

// Both own the store that they work with.
class RegistrySource final : public EntrySource {
 public:
  // None when nothing stands there. Raises EOSError when that cannot be told. What `list` needs outlives the
  // source.
  static std::unique_ptr<RegistrySource> Read(std::shared_ptr<const EntryStore> store,
                                              const RegistryValueAddress& address, const EntryLister& list);

  const std::shared_ptr<const EntryStore>& Store() const noexcept { return store_; }
  const RegistryValueAddress& Address() const noexcept { return places_.front().address; }
  const RegistryData& Data() const noexcept { return data_; }
  // Its value, or its key with everything below.
  const KeptEntry& Kept() const noexcept { return places_.front().kept; }
  bool HasTwin() const noexcept override { return places_.size() > 1; }
  // The twin takes no part: its place is taken.
  void LeaveTwin() { places_.resize(1); }

  FoundEntry Found() const override { return found_; }
  SharedText ShownCommand() const override { return found_.command; }
  // Raises ERegistryException for data that is no text.
  std::wstring Command() const override;
  void MarkCopies(std::size_t place) const override;
  bool ExtractItem(const LastLook& arrived) override;
  bool PutBack() noexcept override;

 private:
  struct Place {
    RegistryValueAddress address;
    // What was read first.
    KeptEntry kept;
    // Some of it may have been deleted.
    bool isBegun = false;
  };

  RegistrySource(std::shared_ptr<const EntryStore> store, RegistryData data, FoundEntry found,
                 std::vector<Place> places)
      : store_(std::move(store)),
        data_(std::move(data)),
        found_(std::move(found)),
        places_(std::move(places)) {}

  const std::shared_ptr<const EntryStore> store_;
  const RegistryData data_;
  const FoundEntry found_;
  // Its own first, then its twin's.
  std::vector<Place> places_;
};

class RegistryTarget final : public EntryTarget {
 public:
  // Data that are to stand at `address`, where `before` stands by now; `found` is how a load lists it.
  RegistryTarget(std::shared_ptr<const EntryStore> store, const RegistryValueAddress& address,
                 KeptEntry before, RegistryData data, FoundEntry found);

  // Whether another entry stands there.
  bool IsTaken() const;
  // Has them stand in the plain view too; false, and nothing, when another entry stands there.
  bool AddTwin();

  bool StandsAlready() const noexcept override;
  bool InsertItem(const CopyMark& mark) override;
  bool Stands() const override;
  bool TakeBack() noexcept override;
  FoundEntry Found() const override { return found_; }
  bool HasTwin() const noexcept override { return places_.size() > 1; }

 private:
  struct Place {
    RegistryValueAddress address;
    // What stood there before.
    KeptEntry before;
    // It holds the data already.
    bool stands = false;
    bool isWritten = false;
  };

  bool Holds(const KeptEntry& kept) const;

  const std::shared_ptr<const EntryStore> store_;
  const RegistryData data_;
  const FoundEntry found_;
  // Its own first, then the plain view's.
  std::vector<Place> places_;
};

}  // namespace smh

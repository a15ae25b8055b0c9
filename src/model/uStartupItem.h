// One thing that Windows starts automatically, as found in one location.
//
// An item is made in two steps: the basic information when it is found, the extended information (times, type
// name, rating, icons) later on the reader's thread.
//
// Lock order of the module, outermost first: the reader's control lock (reader_state.h), the change lock
// (change_lock.h), the item-list lock (item_list.h), an item's lock. A thread has one of the first two at
// most; under the last two no file, key, sibling or journal is touched. Under the change lock comes the
// journal's. Innermost, each taken alone: the location-list lock (uLocationStartup.h), an image-list lock
// (image_lists.h), the idle icon program's (icon_source.cpp), the classes' (server_file.cpp), the checkpoint
// texts' lock (checkpoint.h), the version texts' lock (item_details.h), the list of living collections
// (living_collections.h), the network roots' (network_roots.h), the system's rules' (system_states.h), the
// system folders' (uFileUtils.h), the desktop folder's (desktop_folder.h), the log's lock; and under any of
// these the siblings' lock (uInterfacesRoutines.h). A default program's locks (uFavoriteItem.h) are never
// held together with the item-list lock or an item's.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "infra/registry/uRegistryUtils.h"
#include "infra/runtime/critical_section.h"
#include "model/basic_info.h"
#include "model/item_details.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace smh {

// How a location describes an entry that it found.
struct FoundEntry {
  // Identity within the location: the full value path or the file path.
  SharedText name;
  // The text given at creation: value name, file name.
  SharedText caption;
  SharedText command;
  bool isEnabled = true;
  bool isProtected = false;
  // Where a registry entry lies, as enumerated. Operations use this and never split the name again.
  SharedValueAddress address;
};

// The fields of an item that can change, as a value.
struct ItemState {
  SharedText name;
  // As FoundEntry has it: what a checkpoint is titled with.
  SharedText givenText;
  SharedValueAddress address;
  bool isEnabled = true;
  ItemDetails details;
};

class ExtendedPass;

// An item is shared: whoever holds it may read it, listed or not. Any thread may call what has no other rule.
class TStartupItem {
 public:
  // Knows the given texts and nothing else; the rest is FillBasicInfo's.
  TStartupItem(TTypeStartupLocation location, FoundEntry entry) noexcept;
  TStartupItem(const TStartupItem&) = delete;
  TStartupItem& operator=(const TStartupItem&) = delete;

  // Resolves the command and gathers file, caption and version record. Called once, before anybody else has
  // the item; when it fails the item is of no use any more.
  void FillBasicInfo();

  // Change detection: when `command` differs from the item's, gathers the new basic information and, if
  // `isCurrent` still holds under the list's lock, which the caller names, and the item's lock, takes it
  // over, logs the change and asks for extended information again. Answers whether the item changed. Reads
  // the disk, so no lock but the list's may be held; raises what the reading raises, and EAbort instead of
  // taking over what it read when the reader was asked to end: that may have cancelled it.
  bool UpdateCommand(std::wstring_view command, CriticalSection& listLock,
                     const std::function<bool()>& isCurrent);
  // A closer look: as UpdateCommand, and for the same command the new information is taken over too when its
  // files do not stand as they were seen, or could not be seen. Takes the protected flag over.
  void LookAgain(std::wstring_view command, bool isProtected, CriticalSection& listLock,
                 const std::function<bool()>& isCurrent);
  // The shortcut of an item of a folder could not be opened when the item was made or one of the two looked
  // at it last, though it may be there. They leave what is known as it is. The reader's thread only.
  bool IsLinkHeld() const noexcept { return isLinkHeld_; }
  // Gathers everything anew for `command`, whether or not it differs; as UpdateCommand otherwise, but that no
  // change is logged.
  void Renew(std::wstring_view command, CriticalSection& listLock);

  // The load of its location that found the item last; see TLocationStartup::BeginLoad. The reader's thread
  // only.
  void MarkFound(unsigned load) noexcept { foundIn_.store(load, std::memory_order_relaxed); }
  bool WasFoundIn(unsigned load) const noexcept { return foundIn_.load(std::memory_order_relaxed) == load; }

  // What that load has found at the item's place in the 32-bit view, and the end of the load, for an item of
  // which it has found nothing there. The reader's thread only; EndTwin under the item-list lock. An item
  // whose twin comes, goes or turns into another is marked changed, unless its extended information is still
  // to come. `text` is the twin's of kTwinOther, else empty; `file` tells of the twin's file, -1 for one that
  // has the item's.
  void MarkTwin(unsigned load, ItemTwin twin, std::wstring_view text, std::int32_t file = kTwinsFileIsSame);
  void EndTwin(unsigned load);
  ItemTwin Twin() const noexcept { return twin_.load(); }
  static constexpr std::int32_t kTwinsFileIsSame = -1;
  // A FileReachability, or that.
  std::int32_t TwinFile() const noexcept { return twinFile_.load(); }
  SharedText TwinText() const;

  // The reader's thread only. Touches the disk without holding a lock; a failure is logged and the item
  // stays; EAbort passes, and is raised as by UpdateCommand.
  void ReadExtendedInfo(ExtendedPass& pass);
  // In a pass of its own.
  void ReadExtendedInfo();

  // Reads the item's fields under its lock.
  template <typename Read>
  auto Get(Read&& read) const {
    ScopedLock lock(Lock);
    return read(state_);
  }
  // Copies made under the item's lock.
  ItemState State() const;
  std::wstring Name() const;
  bool IsEnabled() const;
  FileReachability Reachability() const;
  bool NeedsExtendedInfo() const;

  // Marks the item as changed for the host.
  void MarkChanged() noexcept { changedMark_.store(-1); }
  // Takes and clears the mark.
  bool TakeChangedMark() noexcept { return changedMark_.exchange(0) != 0; }

  // False once the item has left the list; a holder then treats it as gone.
  bool IsListed() const noexcept { return position_.load(std::memory_order_acquire) >= 0; }
  // -1 when not listed.
  int Position() const noexcept { return position_.load(std::memory_order_acquire); }

  TTypeStartupLocation Location() const noexcept { return location_; }
  SharedText GivenText() const;
  bool IsProtected() const noexcept { return protected_.load(); }

  // Guards the fields that can change. Taken after the item-list lock.
  mutable CriticalSection Lock;

 private:
  friend class TItemList;

  ItemDetails DetailsOf(std::wstring_view command) const;
  std::optional<ItemDetails> DetailsUnlessHeld(std::wstring_view command);
  void TakeOver(ItemDetails details);
  void SetTwin(ItemTwin twin, std::wstring_view text, std::int32_t file);

  // What every look at the list reads lies together.
  std::atomic<int> position_{-1};
  std::atomic<unsigned> foundIn_{0};
  std::atomic<unsigned> twinIn_{0};
  std::atomic<ItemTwin> twin_{kTwinNone};
  std::atomic<std::int32_t> twinFile_{kTwinsFileIsSame};
  const TTypeStartupLocation location_;
  std::atomic<bool> protected_;
  // Name, given text, address and enabled flag change only under the list's and the item's lock: either is
  // enough to read them.
  ItemState state_;
  bool needsExtendedInfo_ = true;
  bool isLinkHeld_ = false;
  SharedText twinText_;
  // Counts changes of the command and of the place, so that facts read before are dropped.
  unsigned revision_ = 0;
  std::atomic<std::int32_t> changedMark_{0};
};

using ItemRef = std::shared_ptr<TStartupItem>;

// For a pass over the items, in their order: the details of one after the other that is listed and needs
// extended information. The items outlive what is answered; null ones are passed over.
std::function<std::optional<ItemDetails>()> UpcomingDetails(std::span<const ItemRef> items);

}  // namespace smh

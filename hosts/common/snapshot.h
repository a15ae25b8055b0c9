// The entries of a machine at one moment: of each what tells it from the others, its state, its text, and
// what is needed to make it again. Values; functions without a system but for ThisMachine and SnapshotOf, for
// any thread.
#pragma once

#include "hosts/common/item_record.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// One entry of the registry or of a Startup folder.
struct SnapshotEntry {
  std::int32_t location = sulNone;  // a TTypeStartupLocation
  // As in ItemRecord: empty, 0 and none for a file; no value name for an entry that is the key itself.
  std::wstring root;
  std::int32_t view = 0;
  std::wstring key;
  std::optional<std::wstring> valueName;
  std::wstring file;  // the file's name without its folder; empty for an entry of the registry
  std::wstring command;
  bool enabled = false;
  std::wstring disabledBy;  // empty while enabled
  // The text that the 32-bit view has in its place, if that is another one.
  std::optional<std::wstring> twin = {};
  // Of an enabled entry: whether Task Manager's switch is off. None for a disabled one, and where it is not
  // known, as in files of earlier versions.
  std::optional<bool> switchedOff = {};

  // What it is called in its place: the value's, the file's or the key's own name.
  std::wstring_view Name() const noexcept;
  bool operator==(const SnapshotEntry&) const = default;
};

SnapshotEntry EntryOf(const ItemRecord& item);
std::vector<SnapshotEntry> EntriesOf(std::span<const ItemRecord> items);

// What differs between two machines with the same programs.
struct MachineFacts {
  std::wstring name;
  bool hasTwoViews = false;  // of the registry: a 64-bit Windows
  // Of the user, without a backslash at the end; empty for one that is not known.
  std::wstring profileFolder;
  std::wstring roamingFolder;
  std::wstring localFolder;

  // The view that new entries go to, 64 or 32.
  std::int32_t OwnView() const noexcept { return hasTwoViews ? 64 : 32; }
  bool operator==(const MachineFacts&) const = default;
};

// Of the machine and the account that this program runs on. Asks the system.
MachineFacts ThisMachine();

struct Snapshot {
  MachineFacts machine;
  std::wstring time;  // "2024-05-31T23:59:59Z"
  std::vector<SnapshotEntry> entries;
};

// The entries as they are here and now; asks the system as ThisMachine does.
Snapshot SnapshotOf(std::span<const ItemRecord> items);

// The identity in which two snapshots' entries are compared: location, root, view and name, case ignored.
// Less than 0, 0 or more than 0. Several entries may share it: one is enabled, others lie in places of
// disabled ones.
int CompareIdentity(const SnapshotEntry& a, const SnapshotEntry& b) noexcept;

// Rewrites a snapshot as it would be on `target`: the user's folders in commands become those there, and the
// registry's one view becomes the own view of a machine with two, or the other way round.
void AdaptTo(Snapshot& snapshot, const MachineFacts& target);

}  // namespace smh

// A copy of what the library says about one entry, the table of its fields that all outputs share, and its
// place. Records own their texts and may go from thread to thread.
#pragma once

#include "core/contracts/StartupManagerHelper.h"
#include "hosts/common/entry_trust.h"
#include "hosts/common/field.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace smh {

// One entry at the moment when it was read. Location and name are its identity; a text that the library does
// not know is empty.
struct ItemRecord {
  std::int32_t index = -1;          // position in the list; -1 for an entry that has left it
  std::int32_t location = sulNone;  // a TTypeStartupLocation
  std::wstring name;                // the full value path or the file path
  std::wstring id;                  // its short id among those that were read with it
  std::wstring caption;
  bool enabled = false;
  bool fileFound = false;
  std::wstring command;
  std::wstring file;  // filled by ResolveFiles
  std::wstring description;
  std::wstring workingFolder;
  std::int32_t linkNumber = 0;  // the hot key of a shortcut
  std::wstring productName;
  std::wstring comments;
  std::wstring versionNumber;
  std::wstring internalName;
  std::wstring originalFilename;
  std::wstring productVersion;
  std::wstring fileVersion;
  std::wstring version;
  std::wstring privateBuild;
  std::wstring specialBuild;
  std::wstring company;
  std::wstring legalCopyright;
  std::wstring legalTrademarks;
  // In bytes. None without a file, as the times below.
  std::optional<std::int64_t> fileSize;
  std::optional<double> creationTime;  // OLE dates in local time
  std::optional<double> lastAccessTime;
  std::optional<double> lastWriteTime;
  std::wstring fileTypeName;
  std::int32_t rating = 1;                   // 0 trusted, 1 unknown, 2 risky
  std::int32_t imageIndex = -1;              // in the list's image lists; -1 for none
  std::uint32_t can = 0;                     // bit n: ItemAction n
  std::int32_t reachability = kFileMissing;  // a FileReachability, of the described file
  std::wstring describedFile;                // that which the version record, size and times are of
  std::wstring servedFile;                   // what runs when the program only runs it; empty for others
  std::wstring startedThrough;               // the program that only runs another file; empty for others
  // Of an entry of the registry: "HKEY_CURRENT_USER", 64 or 32, the key below the root, and the value's name,
  // none for an entry that is the key itself. Empty, 0 and none for any other.
  std::wstring root;
  std::int32_t view = 0;
  std::wstring key;
  std::optional<std::wstring> value;
  std::wstring disabledBy;        // empty while enabled, "own", or another tool's side key or folder
  std::int32_t twin = kTwinNone;  // an ItemTwin
  std::wstring twinCommand;       // what the 32-bit view has there, for kTwinOther
  // Whether Windows would start it, and why not (start_words.h).
  std::int32_t starts = kStartsUnknown;  // a StartsAnswer
  std::int32_t reasons = 0;              // StartReason flags
  // An OLE date in local time; none for a switch that is on or does not say.
  std::optional<double> switchedOffSince;
  bool canSwitch = false;           // whether the system's own switch can be set
  std::optional<EntryTrust> trust;  // what was asked of FileTrust; none before

  // Whether it has a command whose file is missing or out of reach.
  bool LacksFile() const { return reachability != kFileFound && !command.empty(); }
  // Whether the library allowed the action when the record was read.
  bool Can(ItemAction action) const noexcept { return (can >> action & 1) != 0; }
};

// Reads every property but the file. Each comes by a call of its own: the caller holds the list's lock where
// the entry may leave the list meanwhile, for which the neutral values come.
ItemRecord ReadItemRecord(IStartupItem& item);

// The names of the actions that `can` allows ("delete", "changeCommand", ...), in the order of ItemAction;
// literals, valid for ever.
std::vector<std::wstring_view> ActionNames(std::uint32_t can);
// The file that the entry's facts are of, its program where that is not known, and its command at last.
const std::wstring& ShownFile(const ItemRecord& item) noexcept;
// "found", "missing", "unreachable", for a FileReachability.
std::wstring_view ReachabilityName(std::int32_t reachability) noexcept;
// "trusted" for 0, "risky" for 2, "unknown" for any other.
std::wstring_view RatingName(std::int32_t rating) noexcept;
// "yes", "no", "unknown", for a StartsAnswer; unknown for any other. A literal.
std::wstring_view StartsName(std::int32_t starts) noexcept;
// The names of StartReason flags ("switchedOff", "policy", ...), in the order of the flags; literals, valid
// for ever.
std::vector<std::wstring_view> ReasonNames(std::int32_t reasons);
// "enabled", "disabled".
std::wstring_view StateName(bool enabled) noexcept;
using ItemField = Field<ItemRecord>;
// All columns in the order of output; valid for ever.
std::span<const ItemField> ItemFields() noexcept;

// Gives each the shortest id that no other one of `items` begins with (short_id.h).
void AssignShortIds(std::span<ItemRecord> items);

// Where the entry lives. Names and texts for people: "Root",
// "View", "Key" and "Value" of a registry entry ("64-bit" or "32-bit" view, "(Default)" for the value without
// a name), "File" of any other.
std::vector<std::pair<std::wstring, std::wstring>> ItemPlace(const ItemRecord& item);

}  // namespace smh

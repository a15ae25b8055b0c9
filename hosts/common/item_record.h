// A copy of what the library says about one entry, and the table of its fields that all outputs share.
#pragma once

#include "core/contracts/StartupManagerHelper.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace smh {

struct ItemRecord {
  std::int32_t index = -1;
  std::int32_t location = sulNone;
  std::wstring name;
  std::wstring caption;
  bool enabled = false;
  bool fileFound = false;
  std::wstring command;
  std::wstring file;  // filled by ResolveFiles
  std::wstring description;
  std::wstring workingFolder;
  std::int32_t linkNumber = 0;
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
  // None without a file.
  std::optional<std::int64_t> fileSize;
  std::optional<double> creationTime;  // OLE dates in local time
  std::optional<double> lastAccessTime;
  std::optional<double> lastWriteTime;
  std::wstring fileTypeName;
  std::int32_t rating = 1;
  std::int32_t imageIndex = -1;
  std::uint32_t can = 0;  // bit n: ItemAction n

  bool Can(ItemAction action) const noexcept { return (can >> action & 1) != 0; }
};

// Reads every property; the caller holds the list's lock where the entry may leave the list meanwhile.
ItemRecord ReadItemRecord(IStartupItem& item);

// The names of the actions that `can` allows, in the order of ItemAction.
std::vector<std::wstring_view> ActionNames(std::uint32_t can);
std::wstring JoinNames(std::span<const std::wstring_view> names, std::wstring_view separator);
// "trusted", "unknown", "risky".
std::wstring_view RatingName(std::int32_t rating) noexcept;
// "enabled", "disabled".
std::wstring_view StateName(bool enabled) noexcept;
// "2024-05-31T23:59:59"; empty for no date or one that is none.
std::wstring IsoTime(const std::optional<double>& date);

// None (no such file), a truth value, a number, a text, or names.
using FieldValue =
    std::variant<std::monostate, bool, std::int64_t, std::wstring, std::vector<std::wstring_view>>;

struct ItemField {
  std::wstring_view key;
  FieldValue (*read)(const ItemRecord& item);
};

// In the order of output.
std::span<const ItemField> ItemFields() noexcept;

}  // namespace smh

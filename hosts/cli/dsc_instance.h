// Start-up entries as instances of a configuration engine: one is what a location has under one name. Pure
// functions, for any thread.
#pragma once

#include "hosts/common/item_record.h"
#include "hosts/common/snapshot.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// An instance as it is wanted. What was not said does not matter.
struct DscInstance {
  std::int32_t location = sulNone;
  std::wstring name;
  std::optional<std::wstring> command;
  std::optional<bool> enabled;
  bool exists = true;
};

// Reads one JSON object. Raises JsonFault (flat_json.h).
DscInstance ParseDscInstance(std::string_view json);
// The same where nothing is required: what `export` is to leave out. Empty text: nothing.
struct DscFilter {
  std::optional<std::int32_t> location;
  std::optional<std::wstring> name;
  std::optional<std::wstring> command;
  std::optional<bool> enabled;
};
DscFilter ParseDscFilter(std::string_view json);

// What there is of an instance: every entry of that location and name, in whatever view and place.
class DscState {
 public:
  // Copies the entries. Of several that are in the same state, one that has `command` is told of.
  DscState(std::int32_t location, std::wstring name, const std::optional<std::wstring>& command,
           std::span<const ItemRecord> items);

  bool Exists() const noexcept { return !entries_.empty(); }
  // Of entries that are there: whether any is on, neither disabled nor switched off in Task Manager, and the
  // command of one that is on before others.
  bool IsEnabled() const noexcept;
  const std::wstring& Command() const noexcept { return entries_.front().command; }
  std::span<const ItemRecord> Entries() const noexcept { return entries_; }

  // Whether `wanted` needs nothing.
  bool Fits(const DscInstance& wanted) const;
  // What the entries have to become. Raises HostError for a new one without a command.
  std::vector<SnapshotEntry> Target(const DscInstance& wanted, const MachineFacts& machine) const;
  // One line of JSON with its end; the last property is null without `inDesiredState`.
  std::wstring Json(std::optional<bool> inDesiredState) const;

 private:
  std::int32_t location_;
  std::wstring name_;
  std::vector<ItemRecord> entries_;  // what is on first, then what is enabled
};

// A line of JSON for every instance that the filter leaves. Names that JSON cannot hold are put into
// `leftOut` instead.
std::wstring ExportLines(std::span<const ItemRecord> items, const DscFilter& filter,
                         std::vector<std::wstring>& leftOut);

// The JSON schema of an instance, without references: engines do not follow them.
std::wstring DscSchema();

}  // namespace smh

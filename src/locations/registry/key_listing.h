// What stands in a key: its values, by name and text, or its subkeys, by name; all of them, whatever other
// programs write meanwhile.
//
// The registry enumerates by position: when others delete, it passes over what moves up. So an enumeration
// counts when the key was not written from its beginning to its end, and is repeated otherwise. After three
// disturbed ones the names of all three are taken together; then each is to be asked for by itself.
#pragma once

#include "infra/runtime/handle.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// For one thread. What it shows is valid as long as it is not moved or destroyed.
class KeyListing {
 public:
  enum class Of { kValues, kSubKeys };

  // Of no key: nothing is listed.
  KeyListing() = default;
  // Of an open key, which it keeps open. Raises EOSError for one that cannot be read to its end, EAbort when
  // the reader was asked to end.
  KeyListing(ScopedKey key, Of what);

  // Null for no key.
  HKEY Key() const noexcept { return key_.Get(); }
  // In the order of the registry.
  std::size_t Count() const noexcept { return listed_.entries.size(); }
  // May hold NULs.
  std::wstring_view Name(std::size_t index) const noexcept { return listed_.NameOf(listed_.entries[index]); }
  // As RegistryData::Text; of a value.
  std::wstring_view Text(std::size_t index) const noexcept { return listed_.TextOf(listed_.entries[index]); }

  // Whether all of it stood there at one and the same time. Otherwise what was there throughout is listed,
  // and what came or went meanwhile may be.
  bool IsCertain() const noexcept { return isCertain_; }
  // Whether that is still so; asks the registry, once.
  bool IsStill() const noexcept;

 private:
  // What tells that something has come or gone.
  struct Stamp {
    DWORD subKeys = 0;
    DWORD values = 0;
    // As FILETIME counts.
    std::uint64_t written = 0;
    bool operator==(const Stamp&) const = default;
  };
  struct Entry {
    std::size_t begin;
    std::size_t nameUnits;
    std::size_t textUnits;
  };
  // Names and texts, one behind the other.
  struct Enumeration {
    std::wstring units;
    std::vector<Entry> entries;

    void Add(std::wstring_view name, std::wstring_view text);
    std::wstring_view NameOf(const Entry& entry) const noexcept {
      return std::wstring_view(units).substr(entry.begin, entry.nameUnits);
    }
    std::wstring_view TextOf(const Entry& entry) const noexcept {
      return std::wstring_view(units).substr(entry.begin + entry.nameUnits, entry.textUnits);
    }
  };

  // None for a key that is gone.
  std::optional<Stamp> StampNow() const noexcept;
  static bool IsSettled(const std::optional<Stamp>& stamp) noexcept;
  Enumeration Enumerate(Of what) const;
  static Enumeration Unite(const std::vector<Enumeration>& rounds);

  ScopedKey key_;
  Enumeration listed_;
  std::optional<Stamp> stamp_;
  bool isCertain_ = true;
};

}  // namespace smh

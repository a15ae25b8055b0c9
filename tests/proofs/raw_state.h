// What stands in registry and folders, read without the library: every value, every key that holds nothing,
// every file, by place.
#pragma once

#include "tests/support/registry_fixture.h"

#include <compare>
#include <iosfwd>
#include <map>
#include <string>

namespace smh::test {

// A value, a key (the default value of one), or, without a root, a file by its full path.
struct Place {
  HKEY root = nullptr;
  REGSAM view = 0;
  std::wstring key;
  std::wstring name{};

  bool IsFile() const noexcept { return root == nullptr; }
  auto operator<=>(const Place&) const = default;
};

// Bytes of a file, or of a value behind the number of its type and a blank; nothing for an empty key.
using RawState = std::map<Place, std::string>;

void AddKeyTo(RawState& state, HKEY root, const std::wstring& key, REGSAM view);
// Of the folder itself, not of those below.
void AddFolderTo(RawState& state, const std::wstring& folder);

// Units outside ASCII as numbers.
std::string Narrow(const std::wstring& text);
std::string Content(const RawValue& value);
// Whether the text is in it, in units or in bytes.
bool Holds(const std::string& content, const std::string& text);
std::ostream& operator<<(std::ostream& out, const Place& place);
// What differs, for a failure's message.
std::string Difference(const RawState& before, const RawState& after);

}  // namespace smh::test

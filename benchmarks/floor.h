// The floor: a plain program that makes the calls which the entries themselves demand, without the library,
// and keeps what it gets. It resolves nothing, compares nothing and logs nothing.
#pragma once

#include <windows.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace smh::bench {

struct FloorItem {
  std::wstring name;
  std::wstring command;
  std::wstring file;
  bool isProtected = false;
  bool isFound = false;
};

struct FloorResult {
  std::vector<FloorItem> items;
  // One version record per distinct file, as the system gives it.
  std::unordered_map<std::wstring, std::vector<BYTE>> versions;
};

// The four usual Run locations: keys in both views, enabled and disabled ones, with all their values; per
// value the existence test that resolves its command and the one that says whether the file is there.
void FloorRunKeys(FloorResult& result);
// What reading them again costs at least: the values of all keys in both views, and nothing done with them.
void FloorRunKeysAgain();
// Every file of the user's Startup folder and its folders of disabled entries: whether it may be deleted, and
// its bytes; per shortcut the two existence tests of its target.
void FloorShortcuts(const std::vector<std::wstring>& folders, FloorResult& result);
// The list in both views and roots: every handler opened for changing and for reading, its class looked up.
void FloorHandlers(const std::wstring& list, FloorResult& result);

// The extended information of every item: per distinct file a directory search, a type name, the icons.
struct FloorDetails {
  WIN32_FIND_DATAW data;
  std::wstring typeName;
  int imageIndex;
};
std::unordered_map<std::wstring, FloorDetails> FloorExtended(const FloorResult& result);

}  // namespace smh::bench

// Keys and files as text, to be compared before and after.
#pragma once

#include <windows.h>

#include <string>

namespace smh::test {

// A key with everything below it: names, classes, owners, groups, DACLs, and the values' types and bytes,
// sorted by name. A missing key gives the empty text. Registry links are not followed.
std::string DumpKey(HKEY root, const std::wstring& path, REGSAM view = 0);
// The files of a folder and its sub-folders: names, attributes, creation and write times and bytes, sorted by
// name; empty folders do not show. A missing folder gives the empty text.
std::string DumpFolder(const std::wstring& folder);

}  // namespace smh::test

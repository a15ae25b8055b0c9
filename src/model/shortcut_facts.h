// What an item takes from a shortcut.
#pragma once

#include "core/contracts/shared_text.h"

#include <optional>
#include <string>

namespace smh {

// Texts as the shortcut has them, or empty.
struct ShortcutFacts {
  // The file that the target, together with the arguments, resolves to; empty for a link without target.
  SharedText targetFile;
  // Target file and arguments as one command line; empty for a link without target.
  SharedText command;
  SharedText description;
  SharedText workingFolder;
  SharedText iconPath;
  int iconIndex = 0;
  int hotKey = 0;
};

// Reads the file and searches its target, on the calling thread; takes no lock but the log's. None, with a
// record in the statistics log, for a shortcut that cannot be read.
std::optional<ShortcutFacts> ReadShortcutFacts(const std::wstring& file);

}  // namespace smh

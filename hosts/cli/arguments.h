// What a command line asks for, after parsing.
#pragma once

#include "hosts/cli/item_filter.h"

#include <optional>
#include <string>
#include <vector>

namespace smh {

enum class OutputFormat { kTable, kJson, kCsv };

struct Arguments {
  std::vector<std::wstring> items;      // ITEM..., or the COMMANDLINE of `resolve`
  std::vector<std::int32_t> locations;  // --location
  std::optional<std::int32_t> target;   // --to
  std::wstring name;                    // --name
  std::wstring command;                 // --command
  std::vector<std::wstring> paths;      // --add
  bool all = false;                     // --all
  std::optional<bool> enabled;          // --enabled, --disabled
  OutputFormat format = OutputFormat::kTable;
  std::optional<unsigned> seconds;  // --seconds
  unsigned id = 0;                  // ID, a checkpoint; 0 without one
  bool show = false;                // --show
  bool force = false;               // --force

  ItemFilter Filter() const { return {all, locations, enabled}; }
  // The one --location of a command that takes one.
  std::optional<std::int32_t> Location() const {
    return locations.empty() ? std::nullopt : std::optional(locations.front());
  }
};

}  // namespace smh

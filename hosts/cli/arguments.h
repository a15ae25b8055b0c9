// What a command line asks for, after parsing. A member whose option was not given, or that the command does
// not take, has its initial value.
#pragma once

#include "hosts/cli/item_selector.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace smh {

// A table for people, or --json or --csv for programs.
enum class OutputFormat { kTable, kJson, kCsv };

// The members by the options that fill them. Texts are as they were given, unit by unit.
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
  std::optional<unsigned> seconds;           // --seconds
  std::vector<std::uint32_t> ids;            // ID..., checkpoints
  std::vector<std::wstring> only;            // --only
  std::optional<unsigned> keep;              // --keep
  std::optional<unsigned> days;              // --days
  std::optional<unsigned> limit;             // --limit
  bool show = false;                         // --show
  bool force = false;                        // --force
  bool yes = false;                          // --yes
  bool quiet = false;                        // --quiet
  std::vector<std::wstring> columns;         // --columns, each by itself
  std::wstring output;                       // --output; empty for standard output
  std::vector<std::int32_t> ratings;         // --rating
  std::wstring company;                      // --company
  std::vector<std::int32_t> reachabilities;  // --missing, --unreachable
  std::wstring match;                        // --match
  std::optional<double> since;               // --since
  std::optional<bool> starts;                // --starts, --not-starting
  std::wstring from;                         // --from; "-" for standard input
  bool dryRun = false;                       // --dry-run
  std::vector<std::wstring> files;           // FILE, FILE2
  std::optional<std::wstring> input;         // --input
  bool deleteOthers = false;                 // --delete-others
  bool likeTaskManager = false;              // --like-task-manager
  bool verify = false;                       // --verify
  bool prune = false;                        // --prune

  ItemFilter Filter() const {
    return {all, locations, enabled, ratings, company, reachabilities, match, since, starts};
  }
  // Whether neither ITEMs nor filters say which entries are meant.
  bool NamesNothing() const { return items.empty() && from.empty() && Filter().IsEmpty(); }
  // Which entries are meant. Reads the file of --from: to be called once. Raises HostError.
  Selector Selection() const {
    const std::vector<std::wstring> lines = from.empty() ? std::vector<std::wstring>() : ReadItemLines(from);
    return {items, lines, Filter(), {}};
  }
  // The one ID of a command that takes one; 0 without one.
  std::uint32_t Id() const { return ids.empty() ? 0 : ids.front(); }
  // The one --location of a command that takes one.
  std::optional<std::int32_t> Location() const {
    return locations.empty() ? std::nullopt : std::optional(locations.front());
  }
};

}  // namespace smh

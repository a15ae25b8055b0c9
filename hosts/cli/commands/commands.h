// The commands of the program: the table of their names, their options, and what they run. That stands by
// theme in entry_commands.h, change_commands.h, undo_commands.h and system_commands.h.
#pragma once

#include "hosts/cli/arguments.h"
#include "hosts/common/text.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace smh {

// What a command takes, as bits; command_options.cpp declares the options of each.
enum CommandOption : std::uint64_t {
  kTakesOneItem = 1ull << 0,  // ITEM
  // ITEM..., --enabled --disabled --rating --company --missing --unreachable --match --since --from
  kTakesSelection = 1ull << 1,
  kTakesCommandLine = 1ull << 2,    // COMMANDLINE
  kTakesLocations = 1ull << 3,      // --location, repeatable: which entries are shown
  kTakesLocation = 1ull << 4,       // --location, once: narrows ITEM
  kNeedsLocation = 1ull << 5,       // --location, required
  kTakesAll = 1ull << 6,            // --all
  kTakesJson = 1ull << 7,           // --json
  kTakesCsv = 1ull << 8,            // --csv
  kNeedsName = 1ull << 9,           // --name
  kNeedsCommand = 1ull << 10,       // --command
  kNeedsTarget = 1ull << 11,        // --to
  kTakesSeconds = 1ull << 12,       // --seconds
  kHidden = 1ull << 13,             // not named by --help
  kTakesPaths = 1ull << 14,         // --add, repeatable
  kTakesId = 1ull << 15,            // ID
  kNeedsId = 1ull << 16,            // ID, required
  kTakesUndoMode = 1ull << 17,      // --show --force
  kTakesIds = 1ull << 18,           // ID...
  kTakesPruning = 1ull << 19,       // --keep --days
  kTakesOnly = 1ull << 20,          // --only, repeatable
  kTakesLimit = 1ull << 21,         // --limit
  kTakesColumns = 1ull << 22,       // --columns
  kTakesOutput = 1ull << 23,        // --output
  kTakesYes = 1ull << 24,           // --yes
  kTakesDryRun = 1ull << 25,        // --dry-run
  kNeedsFile = 1ull << 40,          // FILE
  kTakesFile2 = 1ull << 41,         // FILE2, behind it
  kTakesInput = 1ull << 42,         // --input
  kTakesDeleteOthers = 1ull << 43,  // --delete-others
  kTakesSwitch = 1ull << 44,        // --like-task-manager
  kTakesVerify = 1ull << 45,        // --verify
  kTakesPruneSwitch = 1ull << 46,   // --prune
};

// One row of the table of commands. Names are ASCII literals. Every command takes --quiet, --language and
// --help besides.
struct Command {
  // Two words for one that stands below another, whose row comes before: "checkpoints show".
  std::string_view name;
  const Text& help;
  std::uint64_t options;  // bits of CommandOption
  // Does the whole command on the calling thread and blocks until it is done; the result is on standard
  // output. Raises HostError when it fails. Null for one that only has others below it, and
  // for those that the parser answers: help and the scripts for completion.
  void (*run)(const Arguments& arguments);
};

// In the order of --help; valid for ever.
std::span<const Command> AllCommands() noexcept;

}  // namespace smh

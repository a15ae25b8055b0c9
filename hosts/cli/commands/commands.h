// The commands of the program: the table of their names, their options, and what they run. That stands by
// theme in entry_commands.h, change_commands.h, undo_commands.h and system_commands.h.
#pragma once

#include "hosts/cli/arguments.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace smh {

// What a command takes, as bits.
enum CommandOption : std::uint32_t {
  kTakesOneItem = 1 << 0,      // ITEM
  kTakesItems = 1 << 1,        // ITEM...
  kTakesCommandLine = 1 << 2,  // COMMANDLINE
  kTakesLocations = 1 << 3,    // --location, repeatable: which entries are shown
  kTakesLocation = 1 << 4,     // --location, once: narrows ITEM
  kNeedsLocation = 1 << 5,     // --location, required
  kTakesFilter = 1 << 6,       // --all --enabled --disabled
  kTakesJson = 1 << 7,         // --json
  kTakesCsv = 1 << 8,          // --csv
  kNeedsName = 1 << 9,         // --name
  kNeedsCommand = 1 << 10,     // --command
  kNeedsTarget = 1 << 11,      // --to
  kTakesSeconds = 1 << 12,     // --seconds
  kHidden = 1 << 13,           // not named by --help
  kTakesPaths = 1 << 14,       // --add, repeatable
  kTakesId = 1 << 15,          // ID
  kNeedsId = 1 << 16,          // ID, required
  kTakesUndoMode = 1 << 17,    // --show --force
};

// One row of the table of commands. Texts are ASCII literals; the parser takes them as they are.
struct Command {
  std::string_view name;
  std::string_view help;
  std::uint32_t options;  // bits of CommandOption
  // Does the whole command on the calling thread and blocks until it is done; the result is on standard
  // output. Raises HostError when it fails.
  void (*run)(const Arguments& arguments);
};

// In the order of --help; valid for ever.
std::span<const Command> AllCommands() noexcept;

}  // namespace smh

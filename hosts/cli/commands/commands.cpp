#include "hosts/cli/commands/commands.h"

#include "hosts/cli/commands/change_commands.h"
#include "hosts/cli/commands/entry_commands.h"
#include "hosts/cli/commands/system_commands.h"
#include "hosts/cli/commands/undo_commands.h"

namespace smh {

namespace {

constexpr std::uint32_t kShowing = kTakesLocations | kTakesFilter | kTakesJson | kTakesCsv;

constexpr Command kCommands[] = {
    {"list", "Show the entries", kShowing, RunList},
    {"show", "Show everything known about one entry", kTakesOneItem | kTakesLocation | kTakesJson, RunShow},
    {"enable", "Bring disabled entries back", kTakesItems | kTakesLocation, RunEnable},
    {"disable", "Move entries to the side place from which enable brings them back",
     kTakesItems | kTakesLocation, RunDisable},
    {"delete", "Delete entries", kTakesItems | kTakesLocation, RunDelete},
    {"add", "Add an entry", kNeedsLocation | kNeedsName | kNeedsCommand, RunAdd},
    {"move", "Move an entry to another location", kTakesOneItem | kTakesLocation | kNeedsTarget, RunMove},
    {"change", "Give an entry another command", kTakesOneItem | kTakesLocation | kNeedsCommand, RunChange},
    {"execute", "Start an entry's command now", kTakesOneItem | kTakesLocation, RunExecute},
    {"locate", "Print where an entry lives, and show it there", kTakesOneItem | kTakesLocation, RunLocate},
    {"resolve", "Print the file that a command line starts", kTakesCommandLine, RunResolve},
    {"watch", "Print entries as they come, go and change", kShowing | kTakesSeconds, RunWatch},
    {"clients", "Show the default programs: mail, media, browser and the like", kTakesJson | kTakesPaths,
     RunClients},
    {"locations", "Show the locations and their entries' numbers", kTakesJson, RunLocations},
    {"checkpoints", "Show the changes that can be undone", kTakesJson, RunCheckpoints},
    {"undo", "Take a checkpoint back, the newest one without ID", kTakesId | kTakesUndoMode, RunUndo},
    {"redo", "Make the changes of an undone checkpoint again", kNeedsId | kTakesUndoMode, RunRedo},
    {"log", "Print the path of the library's log file", 0, RunLog},
    {"windows", "Print the application windows of the desktop", kHidden, RunWindows},
};

}  // namespace

std::span<const Command> AllCommands() noexcept {
  return kCommands;
}

}  // namespace smh

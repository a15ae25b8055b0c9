#include "hosts/cli/commands/commands.h"

#include "hosts/cli/commands/change_commands.h"
#include "hosts/cli/commands/checkpoint_commands.h"
#include "hosts/cli/commands/dsc_commands.h"
#include "hosts/cli/commands/entry_commands.h"
#include "hosts/cli/commands/snapshot_commands.h"
#include "hosts/cli/commands/switch_commands.h"
#include "hosts/cli/commands/system_commands.h"
#include "hosts/cli/commands/undo_commands.h"

namespace smh {

namespace {

constexpr std::uint64_t kFormatted = kTakesJson | kTakesCsv | kTakesColumns | kTakesOutput;
constexpr std::uint64_t kSelecting = kTakesLocations | kTakesSelection;
constexpr std::uint64_t kShowing = kSelecting | kTakesAll | kFormatted;
constexpr std::uint64_t kPlanned = kTakesDryRun | kTakesJson | kTakesOutput | kTakesYes;
constexpr std::uint64_t kChanging = kSelecting | kPlanned;

constexpr Command kCommands[] = {
    {"list", "Show the entries", kShowing | kTakesVerify, RunList},
    {"show", "Show everything known about one entry",
     kTakesOneItem | kTakesLocation | kTakesJson | kTakesColumns | kTakesOutput, RunShow},
    {"enable", "Make entries start: from the side place, and past Task Manager's switch", kChanging,
     RunEnable},
    {"disable", "Move entries to the side place from which enable brings them back", kChanging | kTakesSwitch,
     RunDisable},
    {"delete", "Delete entries", kChanging, RunDelete},
    {"add", "Add an entry", kNeedsLocation | kNeedsName | kNeedsCommand | kPlanned, RunAdd},
    {"move", "Move entries to another location", kChanging | kNeedsTarget, RunMove},
    {"change", "Give entries another command", kChanging | kNeedsCommand, RunChange},
    {"execute", "Start an entry's command now", kTakesOneItem | kTakesLocation | kTakesYes, RunExecute},
    {"locate", "Print where an entry lives, and show it there", kTakesOneItem | kTakesLocation, RunLocate},
    {"resolve", "Print the file that a command line starts", kTakesCommandLine, RunResolve},
    {"watch", "Print entries as they come, go and change", kShowing | kTakesSeconds, RunWatch},
    {"switches", "Show Task Manager's switches, and whose they are; --prune takes away those of nobody",
     kFormatted | kTakesPruneSwitch | kTakesDryRun | kTakesYes, RunSwitches},
    {"clients", "Show the default programs: mail, media, browser and the like", kFormatted | kTakesPaths,
     RunClients},
    {"locations", "Show the locations and their entries' numbers", kTakesJson | kTakesOutput, RunLocations},
    {"checkpoints", "Show the changes that can be undone, the newest first", kFormatted | kTakesLimit,
     RunCheckpoints},
    {"checkpoints show", "Show one of them with its parts", kNeedsId | kTakesJson | kTakesOutput,
     RunShowCheckpoint},
    {"checkpoints prune", "Forget some of them: they cannot be undone any more",
     kTakesIds | kTakesPruning | kTakesYes | kTakesDryRun, RunPruneCheckpoints},
    {"undo", "Take a checkpoint back, the newest one without ID", kTakesId | kTakesUndoMode | kTakesOnly,
     RunUndo},
    {"redo", "Make an undone checkpoint's changes again, the last undo's without ID",
     kTakesId | kTakesUndoMode, RunRedo},
    {"snapshot", "Write the state of all entries to a file", kNeedsFile, RunSnapshot},
    {"compare", "Show what differs from a snapshot, or between two", kNeedsFile | kTakesFile2 | kFormatted,
     RunCompare},
    {"apply", "Bring all entries to the state in a snapshot",
     kNeedsFile | kTakesDeleteOthers | kTakesYes | kTakesDryRun | kTakesJson | kTakesOutput, RunApply},
    {"dsc", "Serve configuration engines", 0, nullptr},
    {"dsc get", "Print the state of an entry", kTakesInput, RunDscGet},
    {"dsc set", "Make the state of an entry", kTakesInput, RunDscSet},
    {"dsc test", "Print the state of an entry, and whether it is the wanted one", kTakesInput, RunDscTest},
    {"dsc export", "Print the states of all entries", kTakesInput | kTakesOutput, RunDscExport},
    {"dsc schema", "Print the JSON schema of an entry's state", kTakesOutput, RunDscSchema},
    {"log", "Print the path of the library's log file", 0, RunLog},
    {"completion", "Print a script that completes commands and options in a shell", 0, nullptr},
    {"completion powershell", "For PowerShell, to be put into the profile", 0, nullptr},
    {"help", "Show the syntax of a command", 0, nullptr},
    {"windows", "Print the application windows of the desktop", kHidden, RunWindows},
};

}  // namespace

std::span<const Command> AllCommands() noexcept {
  return kCommands;
}

}  // namespace smh

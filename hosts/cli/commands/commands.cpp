#include "hosts/cli/commands/commands.h"

#include "hosts/cli/commands/change_commands.h"
#include "hosts/cli/commands/checkpoint_commands.h"
#include "hosts/cli/commands/dsc_commands.h"
#include "hosts/cli/commands/entry_commands.h"
#include "hosts/cli/commands/snapshot_commands.h"
#include "hosts/cli/commands/switch_commands.h"
#include "hosts/cli/commands/system_commands.h"
#include "hosts/cli/commands/undo_commands.h"
#include "hosts/cli/texts/help_texts.h"

namespace smh {

namespace {

constexpr std::uint64_t kFormatted = kTakesJson | kTakesCsv | kTakesColumns | kTakesOutput;
constexpr std::uint64_t kSelecting = kTakesLocations | kTakesSelection;
constexpr std::uint64_t kShowing = kSelecting | kTakesAll | kFormatted;
constexpr std::uint64_t kPlanned = kTakesDryRun | kTakesJson | kTakesOutput | kTakesYes;
constexpr std::uint64_t kChanging = kSelecting | kPlanned;

constexpr Command kCommands[] = {
    {"list", texts::kListHelp, kShowing | kTakesVerify, RunList},
    {"show", texts::kShowHelp, kTakesOneItem | kTakesLocation | kTakesJson | kTakesColumns | kTakesOutput,
     RunShow},
    {"enable", texts::kEnableHelp, kChanging, RunEnable},
    {"disable", texts::kDisableHelp, kChanging | kTakesSwitch, RunDisable},
    {"delete", texts::kDeleteHelp, kChanging, RunDelete},
    {"add", texts::kAddHelp, kNeedsLocation | kNeedsName | kNeedsCommand | kPlanned, RunAdd},
    {"move", texts::kMoveHelp, kChanging | kNeedsTarget, RunMove},
    {"change", texts::kChangeHelp, kChanging | kNeedsCommand, RunChange},
    {"execute", texts::kExecuteHelp, kTakesOneItem | kTakesLocation | kTakesYes, RunExecute},
    {"locate", texts::kLocateHelp, kTakesOneItem | kTakesLocation, RunLocate},
    {"resolve", texts::kResolveHelp, kTakesCommandLine, RunResolve},
    {"watch", texts::kWatchHelp, kShowing | kTakesSeconds, RunWatch},
    {"switches", texts::kSwitchesHelp, kFormatted | kTakesPruneSwitch | kTakesDryRun | kTakesYes,
     RunSwitches},
    {"clients", texts::kClientsHelp, kFormatted | kTakesPaths, RunClients},
    {"locations", texts::kLocationsHelp, kTakesJson | kTakesOutput, RunLocations},
    {"checkpoints", texts::kCheckpointsHelp, kFormatted | kTakesLimit, RunCheckpoints},
    {"checkpoints show", texts::kShowCheckpointHelp, kNeedsId | kTakesJson | kTakesOutput, RunShowCheckpoint},
    {"checkpoints prune", texts::kPruneHelp, kTakesIds | kTakesPruning | kTakesYes | kTakesDryRun,
     RunPruneCheckpoints},
    {"undo", texts::kUndoHelp, kTakesId | kTakesUndoMode | kTakesOnly, RunUndo},
    {"redo", texts::kRedoHelp, kTakesId | kTakesUndoMode, RunRedo},
    {"snapshot", texts::kSnapshotHelp, kNeedsFile, RunSnapshot},
    {"compare", texts::kCompareHelp, kNeedsFile | kTakesFile2 | kFormatted, RunCompare},
    {"apply", texts::kApplyHelp,
     kNeedsFile | kTakesDeleteOthers | kTakesYes | kTakesDryRun | kTakesJson | kTakesOutput, RunApply},
    {"dsc", texts::kDscHelp, 0, nullptr},
    {"dsc get", texts::kDscGetHelp, kTakesInput, RunDscGet},
    {"dsc set", texts::kDscSetHelp, kTakesInput, RunDscSet},
    {"dsc test", texts::kDscTestHelp, kTakesInput, RunDscTest},
    {"dsc export", texts::kDscExportHelp, kTakesInput | kTakesOutput, RunDscExport},
    {"dsc schema", texts::kDscSchemaHelp, kTakesOutput, RunDscSchema},
    {"log", texts::kLogHelp, 0, RunLog},
    {"completion", texts::kCompletionHelp, 0, nullptr},
    {"completion powershell", texts::kPowerShellHelp, 0, nullptr},
    {"help", texts::kHelpCommandHelp, 0, nullptr},
    {"windows", texts::kWindowsHelp, kHidden, RunWindows},
};

}  // namespace

std::span<const Command> AllCommands() noexcept {
  return kCommands;
}

}  // namespace smh

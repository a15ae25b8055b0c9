#include "hosts/cli/commands/dsc_commands.h"

#include "hosts/cli/apply_plan.h"
#include "hosts/cli/change_runner.h"
#include "hosts/cli/console.h"
#include "hosts/cli/dsc_instance.h"
#include "hosts/cli/standard_input.h"
#include "hosts/cli/texts/message_texts.h"
#include "hosts/cli/texts/usage_texts.h"
#include "hosts/common/flat_json.h"
#include "hosts/common/held_command.h"
#include "hosts/common/host_error.h"
#include "hosts/common/library.h"
#include "hosts/common/reading.h"
#include "hosts/common/text_encoding.h"
#include "hosts/common/texts/title_texts.h"

namespace smh {

namespace {

constexpr std::size_t kMostInputBytes = 1u << 20;

// Parses, with what does not fit as wrong usage.
template <typename Parse>
auto Parsed(Parse&& parse, std::string_view json) {
  try {
    return parse(json);
  } catch (const JsonFault& fault) {
    throw UsageError(Say(texts::kNoInstance, fault.Reason()));
  }
}

DscInstance GivenInstance(const Arguments& arguments) {
  return Parsed(ParseDscInstance,
                arguments.input ? ToUtf8(*arguments.input) : ReadStandardInput(kMostInputBytes));
}

// With a command that an entry holds already written as the entry has it: a shortcut keeps another spelling.
DscState StateOf(const Library& library, DscInstance& wanted, std::span<const ItemRecord> items) {
  DscState state(wanted.location, wanted.name, wanted.command, items);
  if (wanted.command && state.Exists() && HoldsCommand(library, state.Entries().front(), *wanted.command)) {
    wanted.command = state.Command();
  }
  return state;
}

}  // namespace

void RunDscGet(const Arguments& arguments) {
  DscInstance wanted = GivenInstance(arguments);
  const Library library;
  WriteOutput(StateOf(library, wanted, ReadAllItems(library)).Json(std::nullopt));
}

void RunDscTest(const Arguments& arguments) {
  DscInstance wanted = GivenInstance(arguments);
  const Library library;
  const DscState state = StateOf(library, wanted, ReadAllItems(library));
  WriteOutput(state.Json(state.Fits(wanted)));
}

void RunDscSet(const Arguments& arguments) {
  DscInstance wanted = GivenInstance(arguments);
  const Library library;
  ReadForChanges(library, false);
  const DscState state = StateOf(library, wanted, TakeSnapshot(library));
  if (!state.Fits(wanted)) {
    const MachineFacts machine = ThisMachine();
    const std::vector<SnapshotEntry> target = state.Target(wanted, machine);
    const std::vector<ApplyStep> steps = PlanApply(target, state.Entries(), machine, OtherEntries::kDeleted);
    const auto wrapperOf = [&library](const ItemRecord& item) {
      return FindListedItem(library, item.location, item.name);
    };
    RunChanges(library, ChangesOf(steps, wrapperOf),
               {.mayGoOn = true, .title = FormatIn(Language::kEnglish, texts::kSetting, wanted.name)});
  }
  // Behind the last change everything has been read anew.
  WriteOutput(StateOf(library, wanted, TakeSnapshot(library)).Json(std::nullopt));
}

void RunDscExport(const Arguments& arguments) {
  const DscFilter filter = Parsed(ParseDscFilter, ToUtf8(arguments.input.value_or(std::wstring())));
  const Library library;
  std::vector<std::wstring> leftOut;
  WriteOutput(ExportLines(ReadAllItems(library), filter, leftOut));
  for (const std::wstring& name : leftOut) {
    WriteMessage(Format(texts::kLeftOut, name));
  }
}

void RunDscSchema(const Arguments&) {
  WriteOutput(DscSchema());
}

}  // namespace smh

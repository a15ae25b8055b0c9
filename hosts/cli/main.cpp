// startupctl: the library's functions on the command line.
#include "hosts/cli/command_line.h"
#include "hosts/cli/console.h"
#include "hosts/cli/language_option.h"
#include "hosts/cli/texts/journal_texts.h"
#include "hosts/common/host_error.h"
#include "hosts/common/host_process.h"
#include "hosts/common/journal.h"
#include "hosts/common/journal_words.h"
#include "hosts/common/language.h"

#include <windows.h>

#include <optional>

// The runtime must not replace arguments like * by file names.
extern "C" {
int _dowildcard = 0;
}

namespace {

using namespace smh;

// Says on standard error, in one line, which changes of this user or, elevated, of the machine were
// interrupted; nothing when none was, or when the journal cannot be read.
void NameInterruptedCheckpoints() noexcept {
  try {
    std::wstring names;
    for (const CheckpointRecord& checkpoint : Journal().Interrupted()) {
      if (!names.empty()) names += L", ";
      names += Format(texts::kCheckpointName, checkpoint.info.id, TitleText(checkpoint.title));
    }
    if (!names.empty()) WriteMessage(Format(texts::kInterruptedOnes, names));
  } catch (...) {
    // The command itself says what is missing, if it needs it.
  }
}

void Run(std::span<const std::wstring> arguments) {
  SetLanguage(DefaultLanguage());
  if (const auto language = WantedLanguage(arguments)) SetLanguage(*language);
  const auto parsed = ParseCommandLine(arguments);
  if (const auto* help = std::get_if<std::wstring>(&parsed)) {
    WriteOutput(*help);
    return;
  }
  const auto& [command, options] = std::get<Invocation>(parsed);
  if (options.quiet) BeQuiet();
  NameInterruptedCheckpoints();
  std::optional<OutputFile> file;
  if (!options.output.empty()) file.emplace(options.output, options.format == OutputFormat::kCsv);
  try {
    command->run(options);
  } catch (const HostError& error) {
    if (error.Code() != ExitCode::kUsage) throw;
    throw WithHelpHint(error, command->name);
  }
}

ExitCode RunGuarded(int count, wchar_t** texts) noexcept {
  try {
    Run(std::vector<std::wstring>(texts + (count > 0 ? 1 : 0), texts + count));
    return ExitCode::kOk;
  } catch (const HostError& error) {
    WriteError(error.Message());
    return error.Code();
  } catch (...) {
    WriteError(CurrentFaultText());
    return ExitCode::kFailed;
  }
}

}  // namespace

int wmain(int count, wchar_t** texts) {
  SetUpHostProcess();
  return static_cast<int>(RunGuarded(count, texts));
}

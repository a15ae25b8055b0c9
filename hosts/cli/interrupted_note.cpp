#include "hosts/cli/interrupted_note.h"

#include "hosts/cli/console.h"
#include "hosts/common/journal.h"

namespace smh {

void NameInterruptedCheckpoints() noexcept {
  try {
    std::wstring line;
    for (const CheckpointRecord& checkpoint : Journal().Interrupted()) {
      line += line.empty() ? L"Interrupted: " : L", ";
      line += L"checkpoint " + std::to_wstring(checkpoint.info.id) + L" \"" + checkpoint.title + L"\"";
    }
    if (!line.empty()) WriteMessage(line + L". \"startupctl undo ID\" takes one back.");
  } catch (...) {
    // The command itself says what is missing, if it needs it.
  }
}

}  // namespace smh

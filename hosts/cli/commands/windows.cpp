#include "commands/commands.h"
#include "console.h"
#include "host_error.h"
#include "table_output.h"
#include "text_encoding.h"

#include "infra/exceptions.h"
#include "sysutil/uWindowTopHelper.h"

namespace smh {

void RunWindows(const Arguments&) {
  TextTable table{.header = {L"Process", L"File", L"Icon", L"Caption"}, .rows = {}};
  try {
    const TWindowTopCollection windows(nullptr);
    for (const TWindowTopItem& item : windows.Items()) {
      table.rows.push_back({std::to_wstring(item.ProcessId), Printable(item.FileName),
                            item.ImageIndex >= 0 ? L"yes" : L"no", Printable(item.Caption)});
    }
  } catch (const Exception& exception) {
    throw HostError(L"Cannot list the windows: " + exception.Message());
  }
  WriteOutput(table.Text(ConsoleWidth()));
}

}  // namespace smh

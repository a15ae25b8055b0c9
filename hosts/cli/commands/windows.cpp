#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/table_output.h"
#include "hosts/common/host_error.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/exceptions.h"
#include "sysutil/windows/uWindowTopHelper.h"

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

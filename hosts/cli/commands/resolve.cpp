#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/common/host_error.h"
#include "hosts/common/library.h"
#include "hosts/common/text_encoding.h"
#include "infra/files/file_facts.h"

namespace smh {

void RunResolve(const Arguments& arguments) {
  const Library library;
  const std::wstring& command = arguments.items.front();
  const std::wstring file = library.ResolveCommandFile(command);
  if (file.empty()) throw HostError(L"The command line \"" + command + L"\" names no file.");
  WriteOutput(Printable(file) + L"\n");
  if (!Exists(file)) WriteMessage(L"There is no such file.");
}

}  // namespace smh

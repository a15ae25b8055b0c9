#include "core/contracts/intf_general.h"
#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/common/host_error.h"
#include "hosts/common/library.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

std::wstring RequireText(const std::wstring& text) {
  if (text.empty()) throw HostError(L"Cannot tell the folder of the log file.");
  return WithTrailingBackslash(text);
}

}  // namespace

void RunLog(const Arguments&) {
  const ScopedModule library = LoadFromOwnFolder(IHelper::kLibrary);
  auto& helper = AskService<IHelper>(library.Get());
  auto& globals = AskService<IGlobals>(library.Get());
  const auto base = TakeText([&](BoundaryText* text) { return helper.GetBaseFolder(text); });
  const auto vendor = TakeText([&](BoundaryText* text) { return globals.GetVendorName(text); });
  const auto product = TakeText([&](BoundaryText* text) { return globals.GetProductName(text); });
  const std::wstring folder = RequireText(base) + RequireText(vendor) + RequireText(product);
  WriteOutput(Printable(folder + L"Logs\\StartupManager.log") + L"\n");
}

}  // namespace smh

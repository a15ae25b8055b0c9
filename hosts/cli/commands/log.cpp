#include "hosts/cli/commands/commands.h"
#include "hosts/cli/console.h"
#include "hosts/common/host_error.h"
#include "hosts/common/library.h"
#include "hosts/common/text_encoding.h"

#include "core/contracts/intf_general.h"
#include "infra/runtime/text.h"

namespace smh {

namespace {

constexpr wchar_t kBaseKit[] = L"basekit.dll";

std::wstring RequireText(const std::wstring& text) {
  if (text.empty()) throw HostError(L"Cannot tell the folder of the log file.");
  return WithTrailingBackslash(text);
}

}  // namespace

void RunLog(const Arguments&) {
  const ScopedModule library = LoadFromOwnFolder(kBaseKit);
  auto& helper = static_cast<IHelper&>(*AskInstance(library.Get(), kBaseKit, IHelper::kId));
  auto& globals = static_cast<IGlobals&>(*AskInstance(library.Get(), kBaseKit, IGlobals::kId));
  const auto base = TakeText([&](BoundaryText* text) { return helper.GetBaseFolder(text); });
  const auto vendor = TakeText([&](BoundaryText* text) { return globals.GetVendorName(text); });
  const auto product = TakeText([&](BoundaryText* text) { return globals.GetProductName(text); });
  const std::wstring folder = RequireText(base) + RequireText(vendor) + RequireText(product);
  WriteOutput(Printable(folder + L"Logs\\StartupManager.log") + L"\n");
}

}  // namespace smh

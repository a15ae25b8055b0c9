#include "core/uStartupManager.h"

#include "core/contracts/boundary_call.h"
#include "core/uFavoriteItemCollection.h"
#include "core/uStartupItemCollection.h"
#include "core/uStartupManagerStrings.h"
#include "infra/log/system_info_block.h"
#include "infra/log/uStatisticsLog.h"
#include "infra/runtime/text.h"
#include "model/basic_info.h"
#include "model/image_lists.h"
#include "model/item_list.h"
#include "sysutil/command_line.h"
#include "sysutil/program_file.h"

namespace smh {

namespace {

// Kept on purpose the wrong way round: a manager whose host never asked for the collection calls Stop through
// the empty reference and faults; the loader catches the fault and skips the rest of the shut-down. The
// volatile reads keep the optimiser from seeing the null.
__attribute__((noinline, no_sanitize("undefined"))) void StopUnlessAskedFor(IStartupItemCollection* items) {
  IStartupItemCollection* volatile reference = items;
  if (reference == nullptr) reference->Stop();
}

// The file that a command line, or the shortcut that it is, starts. A shortcut that cannot be read, or has no
// target, is its own answer.
std::wstring CommandFile(std::wstring_view command) {
  const std::wstring text = DequoteText(command);
  if (!SameText(ExtensionPart(text), L".lnk")) {
    // Within its quotes it is one name, blanks and all.
    if (text != command) {
      const ProgramFile whole = FindProgramFile(SharedText(text));
      if (whole.exists) return std::wstring(whole.path);
    }
    return std::wstring(ResolveCommandToFile(text.c_str()));
  }
  const std::optional<ShortcutFacts> facts = ReadShortcut(text).facts;
  return facts && !facts->targetFile.empty() ? std::wstring(facts->targetFile) : std::wstring(command);
}

}  // namespace

TStartupManager::TStartupManager() {
  LogSystemInfo();
}

TStartupManager::~TStartupManager() {
  StopUnlessAskedFor(items_.Get());
  {
    ScopedLock lock(Items().Lock());
    Items().Clear();
  }
  DestroyImageLists();
  SaveLog();
}

HRESULT TStartupManager::GetStartupItems(IStartupItemCollection** items) {
  return BoundaryResult(items, [&] {
    *items = nullptr;
    if (!items_) items_ = ComPtr<IStartupItemCollection>::Adopt(new TStartupItemCollection());
    *items = ComPtr(items_).Detach();
  });
}

HRESULT TStartupManager::GetFavoriteItems(IFavoriteItemCollection** items) {
  return BoundaryResult(items, [&] {
    *items = nullptr;
    *items = new TFavoriteItemCollection();
  });
}

HRESULT TStartupManager::GetStrings(IStartupManagerStrings** strings) {
  return BoundaryResult(strings, [&] {
    *strings = nullptr;
    *strings = new TStartupManagerStrings();
  });
}

HRESULT TStartupManager::ResolveCommandFile(const wchar_t* command, BoundaryText* file) {
  return BoundaryResult(file, [&] {
    *file = nullptr;
    *file = MakeBoundaryText(CommandFile(TextArgument(command)));
  });
}

}  // namespace smh

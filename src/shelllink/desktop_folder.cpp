#include "shelllink/desktop_folder.h"

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "shelllink/link_text.h"
#include "shelllink/format/section_view.h"

#include <utility>

namespace smh {

namespace {

struct DesktopFolder {
  // Only the shell's own locks come under it.
  CriticalSection lock;
  ComPtr<IShellFolder> folder;
};

DesktopFolder* g_desktop = nullptr;

ComPtr<IShellFolder> Desktop() {
  const ScopedLock lock(g_desktop->lock);
  if (!g_desktop->folder) {
    const HRESULT result = SHGetDesktopFolder(g_desktop->folder.Put());
    if (FAILED(result)) throw EOleSysError(result);
  }
  return g_desktop->folder;
}

struct TaskStringTraits {
  using Type = wchar_t*;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { CoTaskMemFree(value); }
};

std::wstring TakeTaskString(wchar_t* text) {
  const ScopedResource<TaskStringTraits> owned(text);
  return owned ? std::wstring(owned.Get()) : std::wstring();
}

}  // namespace

std::wstring TakeShellName(STRRET& name, Bytes idList) {
  switch (name.uType) {
    case STRRET_WSTR:
      return TakeTaskString(std::exchange(name.pOleStr, nullptr));
    case STRRET_OFFSET:
      return ToWide(SectionView(idList).AnsiAt(name.uOffset));
    case STRRET_CSTR:
      return ToWide(StoredText::Ansi(std::as_bytes(std::span(name.cStr))));
    default:
      return {};
  }
}

std::wstring ParsingName(Bytes idList) {
  const ComPtr<IShellFolder> desktop = Desktop();
  STRRET name{};
  const auto* const list = reinterpret_cast<PCUITEMID_CHILD>(idList.data());
  if (FAILED(desktop->GetDisplayNameOf(list, SHGDN_FORPARSING, &name))) return {};
  return TakeShellName(name, idList);
}

void StartShellLink() {
  g_desktop = new DesktopFolder;
}

void StopShellLink() noexcept {
  if (g_desktop == nullptr) return;
  {
    const ScopedLock lock(g_desktop->lock);
    g_desktop->folder.Reset();
  }
  delete std::exchange(g_desktop, nullptr);
}

}  // namespace smh

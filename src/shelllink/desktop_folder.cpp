#include "shelllink/desktop_folder.h"

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/lazy.h"
#include "shelllink/format/section_view.h"
#include "shelllink/link_text.h"

#include <utility>

namespace smh {

struct DesktopFolder {
  // Held while the folder is fetched; only the shell's own locks come under it.
  CriticalSection lock;
  Lazy<const ComPtr<IShellFolder>> folder{lock};
};

constinit ModuleGlobal<DesktopFolder> g_desktopFolder(L"desktop_folder");

namespace {

// Borrowed: it is kept until the module's stop.
IShellFolder& Desktop() {
  return *g_desktopFolder->folder
              .Get([] {
                ComPtr<IShellFolder> folder;
                const HRESULT result = SHGetDesktopFolder(folder.Put());
                if (FAILED(result)) throw EOleSysError(result);
                return folder;
              })
              .Get();
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
  STRRET name{};
  const auto* const list = reinterpret_cast<PCUITEMID_CHILD>(idList.data());
  if (FAILED(Desktop().GetDisplayNameOf(list, SHGDN_FORPARSING, &name))) return {};
  return TakeShellName(name, idList);
}

}  // namespace smh

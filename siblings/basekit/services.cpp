#include "siblings/basekit/services.h"

#include "core/contracts/boundary_call.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/scoped_com.h"
#include "infra/runtime/text.h"
#include "siblings/basekit/environment.h"
#include "siblings/basekit/format/version_record.h"
#include "siblings/basekit/helper_parts.h"
#include "siblings/basekit/program_part.h"
#include "siblings/basekit/redirected_twin.h"
#include "siblings/basekit/version_cache.h"
#include "siblings/common/module.h"
#include "siblings/common/product.h"

#include <commctrl.h>
#include <shlobj.h>

#include <algorithm>
#include <utility>

// The start of this module in memory, as the linker names it.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace smh {

namespace {

constinit Helper helper;
constinit Globals globals;
constinit ShellHelper shellHelper;
constinit ShellDialogsHelper shellDialogsHelper;

constinit const ServiceRow kServices[] = {
    {IHelper::kId, &helper},
    {IGlobals::kId, &globals},
    {IShellHelper::kId, &shellHelper},
    {IShellDialogsHelper::kId, &shellDialogsHelper},
};

constexpr ModuleStep kSteps[] = {
    StepOf<g_folderTwins>(L"folder twins"),
    StepOf<g_versionCache>(L"version cache"),
};

// Of the module's own version resource, which the whole product shares.
std::wstring OwnVersionNumber() {
  const auto module = reinterpret_cast<HMODULE>(&__ImageBase);
  const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
  if (resource == nullptr) RaiseLastOSError();
  const HGLOBAL loaded = LoadResource(module, resource);
  if (loaded == nullptr) RaiseLastOSError();
  const auto* const bytes = static_cast<const std::byte*>(LockResource(loaded));
  return VersionRecord({bytes, SizeofResource(module, resource)}).FileVersionNumber();
}

}  // namespace

HRESULT Helper::GetWindowsFolder(BoundaryText* folder) {
  return GuardedText(folder, WindowsFolder);
}

HRESULT Helper::GetSystemFolder(BoundaryText* folder) {
  return GuardedText(folder, SystemFolder);
}

HRESULT Helper::GetFileNameWithoutExt(const wchar_t* file, BoundaryText* name) {
  return GuardedText(name, [&] {
    const std::wstring_view path = TextArgument(file);
    std::wstring_view result = FileNamePart(path);
    result.remove_suffix(ExtensionPart(path).size());
    return result;
  });
}

HRESULT Helper::CanonicalizePath(const wchar_t* text, BoundaryText* path) {
  return GuardedText(path, [&] { return smh::CanonicalizePath(text == nullptr ? L"" : text); });
}

HRESULT Helper::GetExecutableExtensions(BoundaryText* extensions) {
  return GuardedText(extensions, [] {
    std::wstring result;
    for (const std::wstring_view extension : kExecutableExtensions) {
      if (!result.empty()) result += L';';
      result += extension;
    }
    return result;
  });
}

HRESULT Helper::GetBaseFolder(BoundaryText* folder) {
  return GuardedText(folder, [] { return ShellFolder(CSIDL_APPDATA); });
}

HRESULT Helper::GetVersionString(const wchar_t* file, const wchar_t* name, BoundaryText* text) {
  return GuardedText(text, [&] {
    const auto record = g_versionCache->Get(std::wstring(TextArgument(file)));
    return std::wstring(record->String(TextArgument(name)));
  });
}

HRESULT Helper::GetVersionNumber(const wchar_t* file, BoundaryText* version) {
  return GuardedText(
      version, [&] { return g_versionCache->Get(std::wstring(TextArgument(file)))->FileVersionNumber(); });
}

HRESULT Helper::GetVersionStrings(const wchar_t* file, const wchar_t* const* names, std::uint32_t count,
                                  BoundaryText* texts) {
  if (names == nullptr || texts == nullptr) return E_POINTER;
  std::fill_n(texts, count, nullptr);
  const HRESULT result = GuardedResult([&] {
    // The system would look for a bare name in its search folders, hence the full path.
    const VersionRecord record = ReadVersionRecord(FullPath(file == nullptr ? L"" : file));
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::wstring_view text =
          names[i] == nullptr ? std::wstring_view(record.FileVersionNumber()) : record.String(names[i]);
      texts[i] = MakeBoundaryText(text);
    }
  });
  if (FAILED(result)) {
    for (std::uint32_t i = 0; i < count; ++i) ReleaseBoundaryText(std::exchange(texts[i], nullptr));
  }
  return result;
}

HRESULT Helper::FileTimeToDateTime(const FILETIME* time, double* date) {
  if (time == nullptr || date == nullptr) return E_POINTER;
  *date = 0;
  return GuardedResult([&] { *date = OleDateOfFileTime(*time); });
}

HRESULT Helper::SplitIndirectString(const wchar_t* text, BoundaryText* file, std::int32_t* number) {
  if (number == nullptr) return E_POINTER;
  *number = 0;
  return GuardedText(file, [&] {
    const IndirectString parts = smh::SplitIndirectString(TextArgument(text));
    *number = parts.number;
    return parts.file;
  });
}

HRESULT Helper::ExpandEnvironment(const wchar_t* text, BoundaryText* expanded) {
  return GuardedText(expanded, [&] { return smh::ExpandEnvironment(TextArgument(text)); });
}

HRESULT Helper::GetCurrentUserText(BoundaryText* text) {
  return GuardedText(text, CurrentUserText);
}

BOOL Helper::IsUserAdmin() {
  return IsAdministrator() ? TRUE : FALSE;
}

HRESULT Globals::Reserved1() {
  return E_NOTIMPL;
}

HRESULT Globals::GetVendorName(BoundaryText* name) {
  return GuardedText(name, [] { return kVendorName; });
}

HRESULT Globals::GetProductName(BoundaryText* name) {
  return GuardedText(name, [] { return kProductName; });
}

HRESULT Globals::GetProductVersion(BoundaryText* version) {
  return GuardedText(version, OwnVersionNumber);
}

HRESULT ShellHelper::GetSpecialFolder(std::int32_t csidl, std::uint32_t flags, BoundaryText* folder) {
  return GuardedText(folder, [&] { return ShellFolder(csidl | static_cast<std::int32_t>(flags)); });
}

HRESULT ShellHelper::GetProgramPart(const wchar_t* command, BoundaryText* program) {
  return GuardedText(program, [&] { return ProgramPart(TextArgument(command), FileOrTwinExists); });
}

HRESULT ShellHelper::GetProgramPartBy(const wchar_t* command, FileProbe probe, void* context,
                                      BoundaryText* program) {
  const auto isFile = [&](const std::wstring& path) {
    const HRESULT answer = probe(context, path.c_str());
    if (FAILED(answer)) throw EOleSysError(answer);
    return answer == S_OK;
  };
  return GuardedText(program, [&] { return ProgramPart(TextArgument(command), isFile); });
}

HRESULT ShellHelper::ExpandPath(const wchar_t* text, BoundaryText* path) {
  return GuardedText(path, [&] { return ExpandEnvironment(TextArgument(text)); });
}

HRESULT ShellHelper::NormalizeCommand(const wchar_t* text, BoundaryText* command) {
  return GuardedText(command, [&] { return ExpandEnvironment(Trim(TextArgument(text))); });
}

// The classes that the pages of a property sheet are made of.
HRESULT ShellDialogsHelper::Initialize() {
  return GuardedResult([] {
    INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_WIN95_CLASSES};
    if (InitCommonControlsEx(&classes) == FALSE) throw Exception(L"No common controls");
  });
}

// The shell chooses pages by name only, so that `number` has no part here.
HRESULT ShellDialogsHelper::ShowFileDetails(HWND window, const wchar_t* file, const wchar_t* text,
                                            std::int32_t /*number*/) {
  return GuardedResult([&] {
    const std::wstring path = FullPath(file == nullptr ? L"" : file);
    if (!Exists(path)) RaiseLastOSError();
    const ScopedCom com(COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    const wchar_t* const page = TextArgument(text).empty() ? nullptr : text;
    if (SHObjectProperties(window, SHOP_FILEPATH, path.c_str(), page) == FALSE) RaiseOSError(ERROR_CANCELLED);
  });
}

std::span<const ServiceRow> SiblingServices() noexcept {
  return kServices;
}

std::span<const ModuleStep> SiblingSteps() noexcept {
  return kSteps;
}

}  // namespace smh

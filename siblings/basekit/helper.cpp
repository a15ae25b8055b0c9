#include "siblings/basekit/services.h"

#include <shlobj.h>

#include <algorithm>
#include <utility>

#include "siblings/basekit/environment.h"
#include "siblings/basekit/executable_extensions.h"
#include "siblings/basekit/indirect_string.h"
#include "siblings/basekit/ole_date.h"
#include "siblings/basekit/user.h"
#include "siblings/basekit/version_cache.h"
#include "core/contracts/boundary_call.h"
#include "infra/files/paths.h"
#include "infra/runtime/text.h"

namespace smh {

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
    const auto record = ModuleVersionCache().Get(std::wstring(TextArgument(file)));
    return std::wstring(record->String(TextArgument(name)));
  });
}

HRESULT Helper::GetVersionNumber(const wchar_t* file, BoundaryText* version) {
  return GuardedText(version, [&] {
    return ModuleVersionCache().Get(std::wstring(TextArgument(file)))->FileVersionNumber();
  });
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

}  // namespace smh

#include "locations/folders/shortcut_writer.h"

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/growing_text.h"
#include "infra/runtime/scoped_com.h"
#include "infra/runtime/text.h"
#include "locations/folders/folder_files.h"
#include "model/change_refused.h"
#include "shelllink/uShellLinkInfo.h"

#include <windows.h>
#include <shlobj.h>

namespace smh {

namespace {

void CheckResult(HRESULT result) {
  if (FAILED(result)) throw EOleSysError(result);
}

// The path itself when the system knows no long form, as of a file that is missing.
std::wstring LongPathOf(const std::wstring& path) {
  std::wstring longPath =
      GrowingText([&](wchar_t* buffer, DWORD size) { return GetLongPathNameW(path.c_str(), buffer, size); });
  return longPath.empty() ? path : longPath;
}

void SaveShortcut(const ShortcutFields& fields, const std::wstring& file) {
  const ScopedCom com(COINIT_APARTMENTTHREADED);
  ComPtr<IShellLinkW> link;
  CheckResult(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                               reinterpret_cast<void**>(link.Put())));
  // S_FALSE: the target does not exist now.
  CheckResult(link->SetPath(fields.target.c_str()));
  CheckResult(link->SetArguments(fields.arguments.c_str()));
  if (!fields.description.empty()) CheckResult(link->SetDescription(fields.description.c_str()));
  if (!fields.workingFolder.empty()) CheckResult(link->SetWorkingDirectory(fields.workingFolder.c_str()));
  if (!fields.iconLocation.empty()) {
    CheckResult(link->SetIconLocation(fields.iconLocation.c_str(), fields.iconIndex));
  }
  CheckResult(link->SetShowCmd(fields.showCommand));
  CheckResult(link->SetHotkey(fields.hotKey));
  ComPtr<IPersistFile> persist;
  CheckResult(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(persist.Put())));
  CheckResult(persist->Save(file.c_str(), TRUE));
}

// The shell writes a path in the letters in which the disk has it, and may write out a short name.
bool NamesTheSame(const std::wstring& a, const std::wstring& b) {
  return SameText(a, b) || SameText(LongPathOf(a), LongPathOf(b));
}

// Texts that are too long for the link's structures are cut by the shell, without a failure.
void RequireCommand(const TShellLinkInfo& link, const ShortcutCommand& command) {
  if (NamesTheSame(link.Target(), command.target) && link.Arguments() == command.arguments) return;
  throw EChangeRefused(ERROR_NOT_SUPPORTED,
                       L"A shortcut cannot hold this command: the shell stores another.");
}

}  // namespace

void WriteShortcut(const ShortcutFields& fields, const std::wstring& file) {
  if (fields.target.empty()) RaiseOSError(ERROR_BAD_PATHNAME);
  try {
    SaveShortcut(fields, file);
    RequireCommand(TShellLinkInfo(file), fields);
  } catch (...) {
    DeleteFileW(file.c_str());
    throw;
  }
}

std::unique_ptr<TShellLinkInfo> RequireChangeableLink(const std::wstring& file) {
  if (!SameText(ExtensionPart(file), L".lnk")) RaiseOSError(ERROR_NOT_SUPPORTED);
  auto link = std::make_unique<TShellLinkInfo>(file);
  const bool installed = link->FindExtraData(TExtraDataKind::edkDarwin) != nullptr;
  if (installed || link->Target().empty()) RaiseOSError(ERROR_NOT_SUPPORTED);
  return link;
}

void KeepFieldsOfLink(const std::unique_ptr<TShellLinkInfo>& link, ShortcutFields& fields) {
  fields.description = link->StoredDescription();
  fields.workingFolder = link->WorkingDirectory();
  fields.iconLocation = link->IconLocation();
  fields.iconIndex = link->IconIndex();
  fields.showCommand = static_cast<int>(link->ShowCommand());
  fields.hotKey = link->HotKey();
}

ScopedFile::~ScopedFile() {
  DeleteFileW(path_.c_str());
}

TemporaryShortcut::TemporaryShortcut(const FolderSet& folders, std::wstring_view name,
                                     const ShortcutFields& fields)
    : file_(MakeUniqueFileName(folders.TemporaryFolder() + WithLinkExtension(name))) {
  WriteShortcut(fields, file_.Path());
}

}  // namespace smh

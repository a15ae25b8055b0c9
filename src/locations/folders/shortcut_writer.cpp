#include "locations/folders/shortcut_writer.h"

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/scoped_com.h"
#include "infra/runtime/text.h"
#include "locations/folders/folder_files.h"
#include "shelllink/uShellLinkInfo.h"
#include "sysutil/command_line.h"
#include "sysutil/file_search.h"
#include "sysutil/uFileUtils.h"

#include <windows.h>
#include <shlobj.h>

namespace smh {

namespace {

void CheckResult(HRESULT result) {
  if (FAILED(result)) throw EOleSysError(result);
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

}  // namespace

ShortcutFields FieldsOfCommand(const std::wstring& command) {
  const CommandParts parts = FileUtils::SplitCommandLine(command.c_str());
  ShortcutFields fields;
  // A shortcut wants a full path; the redirected twin is this process's view and must not get into it.
  fields.target = std::wstring(FileUtils::NormalizePath(SharedText(parts.path)));
  if (std::wstring found; FileUtils::FindFileByName(fields.target, found)) fields.target = std::move(found);
  fields.arguments = parts.arguments;
  return fields;
}

void WriteShortcut(const ShortcutFields& fields, const std::wstring& file) {
  if (fields.target.empty()) RaiseOSError(ERROR_BAD_PATHNAME);
  try {
    SaveShortcut(fields, file);
    // Without a target the command would be lost.
    if (TShellLinkInfo(file).Target().empty()) RaiseOSError(ERROR_BAD_PATHNAME);
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

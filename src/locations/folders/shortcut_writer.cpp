#include "locations/folders/shortcut_writer.h"

#include "infra/runtime/com_ptr.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"
#include "infra/runtime/growing_text.h"
#include "infra/runtime/scoped_com.h"
#include "infra/runtime/text.h"
#include "locations/folders/folder_files.h"
#include "model/change_refused.h"
#include "shelllink/format/link_splice.h"
#include "shelllink/link_text.h"
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
bool NamesTheSame(const std::wstring& stored, const std::wstring& asked) {
  return SameText(stored, asked) || (!HoldsNul(asked) && SameText(LongPathOf(stored), LongPathOf(asked)));
}

// Texts that are too long for the link's structures are cut by the shell, without a failure.
void RequireCommand(const TShellLinkInfo& link, const ShortcutCommand& command) {
  if (NamesTheSame(link.Target(), command.target) && link.Arguments() == command.arguments) return;
  throw EChangeRefused(ERROR_NOT_SUPPORTED,
                       L"A shortcut cannot hold this command: the shell stores another.");
}

std::u16string Widened(std::string_view text) {
  const std::wstring wide = WidenAnsi(text);
  return {wide.begin(), wide.end()};
}

// The path of a file that nobody else makes at the same time.
std::wstring OwnFileIn(const std::wstring& folder) {
  return Format(L"%s%d-%d.lnk", folder, GetCurrentProcessId(), GetCurrentThreadId());
}

// Where a shell writes LinkInfo in the system code page alone, a name in other letters is another one there;
// it may be what the shell starts.
bool IsLinkInfoRight(const TShellLinkInfo& link, const std::wstring& target) {
  const TLinkInfo& info = link.Sections().LinkInfo();
  return !info.HasLocalBasePath() ||
         NamesTheSame(ToWide(info.LocalBasePath()) + ToWide(info.CommonPathSuffix()), target);
}

// The bytes of `kept` with the command of `fresh`, which is confirmed.
std::string Spliced(const TShellLinkInfo& kept, const TShellLinkInfo& fresh, std::wstring_view oldTarget,
                    const ShortcutCommand& command) {
  const std::wstring_view name = FileNamePart(oldTarget);
  std::string bytes = SpliceLink(kept.Sections(), fresh.Sections(), std::u16string(name.begin(), name.end()),
                                 Widened, IsLinkInfoRight(fresh, command.target));
  TShellLinkInfo link;
  link.SetBytes(kept.FileName(), bytes);
  RequireCommand(link, command);
  return bytes;
}

// Makes the file under its name or the next free one, and answers its path.
std::wstring WriteFreeFile(const std::wstring& wanted, std::string_view bytes) {
  for (;;) {
    std::wstring path = MakeUniqueFileName(wanted);
    try {
      WriteNewFile(path, bytes);
      return path;
    } catch (const EOSError& error) {
      // Somebody else was faster.
      if (error.Code() != ERROR_FILE_EXISTS) throw;
    }
  }
}

}  // namespace

void WriteShortcut(const ShortcutFields& fields, const std::wstring& file) {
  if (fields.target.empty()) RaiseOSError(ERROR_BAD_PATHNAME);
  try {
    SaveShortcut(fields, file);
    const TShellLinkInfo fresh(file);
    // The shell may add what finds the target elsewhere: below a variable, which another process has with
    // another value, or relative to where the shortcut is made.
    const std::string bytes = Spliced(fresh, fresh, {}, fields);
    if (DeleteFileW(file.c_str()) == FALSE) RaiseLastOSError();
    WriteNewFile(file, bytes);
  } catch (...) {
    DeleteFileW(file.c_str());
    throw;
  }
}

std::string LinkBytes(const ShortcutFields& fields, const std::wstring& folder) {
  const ScopedFile made(OwnFileIn(folder));
  WriteShortcut(fields, made.Path());
  return ReadShortcutBytes(made.Path());
}

std::string ChangedLink(const std::wstring& file, std::string_view bytes, const ShortcutCommand& command,
                        const std::wstring& folder) {
  const std::unique_ptr<TShellLinkInfo> old = RequireChangeableLink(file, bytes);
  TShellLinkInfo fresh;
  fresh.SetBytes(file, LinkBytes(ShortcutFields(command), folder));
  return Spliced(*old, fresh, old->Target(), command);
}

std::unique_ptr<TShellLinkInfo> RequireChangeableLink(const std::wstring& file) {
  if (!SameText(ExtensionPart(file), L".lnk")) RaiseOSError(ERROR_NOT_SUPPORTED);
  return RequireChangeableLink(file, ReadShortcutBytes(file));
}

std::unique_ptr<TShellLinkInfo> RequireChangeableLink(const std::wstring& file, std::string_view bytes) {
  if (!SameText(ExtensionPart(file), L".lnk")) RaiseOSError(ERROR_NOT_SUPPORTED);
  auto link = std::make_unique<TShellLinkInfo>();
  link->SetBytes(file, bytes);
  const bool installed = link->FindExtraData(TExtraDataKind::edkDarwin) != nullptr;
  if (installed || link->Target().empty()) RaiseOSError(ERROR_NOT_SUPPORTED);
  return link;
}

ScopedFile::~ScopedFile() {
  DeleteFileW(path_.c_str());
}

TemporaryShortcut::TemporaryShortcut(const FolderSet& folders, std::wstring_view name,
                                     const ShortcutFields& fields)
    : folder_(folders.TemporaryFolder()),
      use_(folder_),
      file_(WriteFreeFile(folder_ + WithLinkExtension(name), LinkBytes(fields, folder_))) {}

TemporaryShortcut::TemporaryShortcut(const FolderSet& folders, const std::wstring& file,
                                     std::string_view bytes, const ShortcutCommand& command)
    : folder_(folders.TemporaryFolder()),
      use_(folder_),
      file_(WriteFreeFile(folder_ + std::wstring(FileNamePart(file)),
                          ChangedLink(file, bytes, command, folder_))) {}

}  // namespace smh

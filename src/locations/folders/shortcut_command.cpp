#include "locations/folders/shortcut_command.h"

#include "core/contracts/boundary_string.h"
#include "core/contracts/intf_general.h"
#include "core/contracts/uDllGlobals.h"
#include "infra/files/file_facts.h"
#include "infra/runtime/embedded_nul.h"
#include "infra/runtime/format.h"
#include "infra/runtime/text.h"
#include "model/change_refused.h"
#include "sysutil/command_line.h"
#include "sysutil/file_search.h"
#include "sysutil/program_file.h"
#include "sysutil/uFileUtils.h"
#include "sysutil/version/uWinVersionInfo.h"

#include <algorithm>
#include <string_view>

namespace smh {

namespace {

// The longest target that a link's own structures hold, and the longest command line of the system.
constexpr std::size_t kLongestTarget = MAX_PATH - 1;
constexpr std::size_t kLongestCommand = 32'766;
// A shortcut's program is started in quotes, with a blank behind it.
constexpr std::size_t kAddedUnits = 3;

constexpr std::wstring_view kBlanks = L" \t";

[[noreturn]] void Refuse(std::wstring_view reason) {
  throw EChangeRefused(ERROR_NOT_SUPPORTED, Format(L"A shortcut cannot hold this command: %s.", reason));
}

bool IsBlank(wchar_t unit) noexcept {
  return kBlanks.find(unit) != std::wstring_view::npos;
}

std::wstring_view WithoutLeadingBlanks(std::wstring_view text) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text;
}

// The command, which begins with its program part, in two. References are not expanded.
struct RawParts {
  std::wstring program;
  std::wstring_view tail;
};

RawParts SplitQuoted(std::wstring_view command) {
  const std::size_t close = command.find(L'"', 1);
  if (close == std::wstring_view::npos) Refuse(L"its quotes are not closed");
  return {Trim(command.substr(1, close - 1)), command.substr(close + 1)};
}

std::wstring ExpandReferences(const std::wstring& text) {
  return TakeText([&](BoundaryText* out) { return DLLGlobals::ShellHelper().ExpandPath(text.c_str(), out); });
}

bool IsBareName(std::wstring_view text) noexcept {
  return FileNamePart(text) == text && text.find(L'"') == std::wstring_view::npos;
}

// As the system does it, then as the entry's file was found; empty when it is not.
std::wstring FindByName(const std::wstring& name) {
  std::wstring found;
  if (ExtensionPart(name).empty()) found = FileUtils::SearchInPath(name, kImpliedExtensions[0]);
  if (!found.empty()) return found;
  const ProgramFile file = FindProgramFile(SharedText(name));
  return file.exists ? std::wstring(file.path) : std::wstring();
}

// Whether it is more than the program: the helper takes all up to the name of a program file, which may be an
// argument.
bool HoldsArguments(std::wstring_view program) noexcept {
  const std::size_t colon = program.rfind(L':');
  return (colon != std::wstring_view::npos && colon > 1) || program.find(L" /") != std::wstring_view::npos ||
         program.find_first_of(L"<>|*?") != std::wstring_view::npos;
}

// `from` is the command without its leading blanks.
std::wstring UnquotedProgram(const std::wstring& command, std::wstring_view from) {
  std::wstring word(from.substr(0, from.find_first_of(kBlanks)));
  // The system looks for it before it takes more of the command for a name.
  if (IsBareName(word) && !FindByName(ExpandReferences(word)).empty()) return word;
  std::wstring program(FileUtils::ProgramOfCommand(command.c_str()));
  return program.size() > word.size() && HoldsArguments(program) &&
                 !FileUtils::FileExists(ExpandReferences(program))
             ? word
             : program;
}

RawParts SplitUnquoted(const std::wstring& command, std::wstring_view from) {
  std::wstring program = UnquotedProgram(command, from);
  // What the helper drops of it would be found nowhere in the shortcut.
  if (!from.starts_with(program)) Refuse(L"there are quotes inside its program");
  // A variable may hold a program and arguments, between which the shortcut would have to be cut.
  const std::wstring expanded = ExpandReferences(program);
  if (expanded != program && std::wstring_view(FileUtils::ProgramOfCommand(expanded.c_str())) != expanded) {
    Refuse(L"its variable holds more than the path of a program");
  }
  const std::wstring_view tail = from.substr(program.size());
  return {std::move(program), tail};
}

RawParts SplitCommand(const std::wstring& command) {
  const std::wstring_view from = WithoutLeadingBlanks(command);
  RawParts parts = from.starts_with(L'"') ? SplitQuoted(from) : SplitUnquoted(command, from);
  // Programs disagree on what follows: the rest of a longer name, or the first argument.
  if (!parts.tail.empty() && !IsBlank(parts.tail.front()))
    Refuse(L"its program ends in the middle of a word");
  if (parts.program.empty()) Refuse(L"it names no program");
  return parts;
}

bool IsSeparator(wchar_t unit) noexcept {
  return unit == L'\\' || unit == L'/';
}

// "\\?\" and "\\.\" are none that the shell knows.
bool IsSystemName(std::wstring_view path) noexcept {
  return path.size() > 2 && IsSeparator(path[0]) && IsSeparator(path[1]) &&
         (path[2] == L'?' || path[2] == L'.');
}

bool HasReference(std::wstring_view text) noexcept {
  const std::size_t first = text.find(L'%');
  if (first == std::wstring_view::npos) return false;
  const std::size_t second = text.find(L'%', first + 1);
  return second != std::wstring_view::npos && second > first + 1;
}

// This process's program folders are not those of a 64-bit one. What is in these alone is meant all the same.
std::wstring ExpandAsNativeProcess(const std::wstring& program) {
  std::wstring expanded = ExpandReferences(program);
  if (!WinVersionInfo::IsWow64()) return expanded;
  std::wstring native = ReplaceText(program, L"%ProgramFiles%", L"%ProgramW6432%");
  native = ReplaceText(native, L"%CommonProgramFiles%", L"%CommonProgramW6432%");
  native = ExpandReferences(native);
  return IsFile(expanded) && !IsFile(native) ? expanded : native;
}

// What this process sees as the system folder is another one to those that start shortcuts.
std::wstring AsNativeProcessSees(const std::wstring& path) {
  if (!WinVersionInfo::IsWow64()) return path;
  const std::wstring& system = FileUtils::GetSystemDir();
  const std::wstring& native = FileUtils::GetSysnativeDir();
  if (StartsText(native, path)) return system + path.substr(native.size());
  if (!StartsText(system, path)) return path;
  const std::wstring name = path.substr(system.size());
  if (IsFile(native + name) || !IsFile(path)) return path;
  const std::wstring folder = WithoutTrailingBackslash(system);
  return std::wstring(FolderPart(folder)).append(L"SysWOW64\\").append(name);
}

std::wstring TargetOf(const std::wstring& program) {
  std::wstring path = ExpandAsNativeProcess(program);
  if (path.find(L'"') != std::wstring::npos) Refuse(L"there are quotes inside its program");
  if (HasReference(path) && !IsFile(path)) Refuse(L"it names an unknown variable");
  if (IsUrl(path)) Refuse(L"it is a URL");
  if (IsBareName(path)) path = FindByName(path);
  if (path.empty()) Refuse(L"its program is not found");
  // Asked before it is made a full path of the folder that this process happens to stand in.
  if (!IsFullPath(path)) Refuse(L"its path is relative");
  // What was a device's name within a folder is one of these now.
  path = FullPathOf(path.c_str()).value_or(path);
  if (IsSystemName(path)) Refuse(L"the shell does not know its kind of path");
  if (ExtensionPart(path).empty()) CompleteProgramPath(path);
  path = AsNativeProcessSees(path);
  if (path.size() > kLongestTarget) Refuse(L"the path of its program is too long");
  return path;
}

}  // namespace

ShortcutCommand CommandForShortcut(const std::wstring& command) {
  if (HoldsNul(command)) Refuse(L"it holds a NUL");
  if (command.size() > kLongestCommand) Refuse(L"it is too long");
  const RawParts parts = SplitCommand(command);
  ShortcutCommand result{TargetOf(parts.program), std::wstring(WithoutLeadingBlanks(parts.tail))};
  if (result.target.size() + kAddedUnits + result.arguments.size() > kLongestCommand) {
    Refuse(L"it is too long");
  }
  return result;
}

}  // namespace smh

#include "model/started_through.h"

#include "infra/runtime/text.h"
#include "model/item_details.h"
#include "sysutil/command_line.h"
#include "sysutil/network_roots.h"
#include "sysutil/program_file.h"
#include "sysutil/uFileUtils.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <vector>

namespace smh {

namespace {

// A command may run the command processor, which runs another, and so on.
constexpr int kDeepest = 4;
constexpr std::wstring_view kBlanks = L" \t";

std::wstring_view WithoutBlanksBefore(std::wstring_view text) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text;
}

// The first element, removed from `text`: up to one of `ends` outside of double quotes, which are not part of
// it.
std::wstring TakeElement(std::wstring_view& text, std::wstring_view ends = kBlanks) {
  text = WithoutBlanksBefore(text);
  std::wstring element;
  bool quoted = false;
  std::size_t i = 0;
  for (; i < text.size() && (quoted || ends.find(text[i]) == std::wstring_view::npos); ++i) {
    if (text[i] == L'"') {
      quoted = !quoted;
    } else {
      element += text[i];
    }
  }
  text = WithoutBlanksBefore(text.substr(i));
  return element;
}

bool IsSwitch(std::wstring_view element) noexcept {
  return element.starts_with(L'/') || element.starts_with(L'-');
}

std::wstring_view ShortNameOf(std::wstring_view path) noexcept {
  std::wstring_view name = FileNamePart(path);
  name.remove_suffix(ExtensionPart(name).size());
  return name;
}

bool IsAmong(std::span<const std::wstring_view> names, std::wstring_view name) noexcept {
  return std::ranges::any_of(names, [name](std::wstring_view other) { return SameText(other, name); });
}

// Libraries of the system with functions that run what their text names.
constexpr std::wstring_view kPassingLibraries[] = {
    L"advpack", L"desk",     L"dfshim",  L"ieadvpack", L"ieframe", L"mshtml",  L"pcwutl",
    L"shdocvw", L"setupapi", L"shell32", L"syssetup",  L"url",     L"zipfldr",
};

std::wstring ServedByRundll(std::wstring_view arguments, int /*depth*/) {
  const std::wstring library = TakeElement(arguments, L" \t,");
  std::wstring file = ExistingFile(library);
  if (file.empty() && ExtensionPart(library).empty()) file = ExistingFile(library + L".dll");
  if (!IsAmong(kPassingLibraries, ShortNameOf(file))) return file;
  if (arguments.starts_with(L',')) arguments.remove_prefix(1);
  const std::wstring entryPoint = TakeElement(arguments);
  const bool isControlPanel =
      SameText(ShortNameOf(file), L"shell32") && StartsText(L"Control_RunDLL", entryPoint);
  return isControlPanel ? ExistingFile(TakeElement(arguments, L" \t,")) : std::wstring();
}

std::wstring FileThatRuns(std::wstring_view program, std::wstring_view arguments, int depth);

// What stands behind "/c", "/k" or "/r"; none without one.
std::optional<std::wstring_view> CommandOfProcessor(std::wstring_view arguments) noexcept {
  while (arguments.size() > 1 && arguments.front() == L'/') {
    const auto letter = static_cast<wchar_t>(arguments[1] | 0x20);
    if (letter == L'c' || letter == L'k' || letter == L'r') return WithoutBlanksBefore(arguments.substr(2));
    arguments = WithoutBlanksBefore(
        arguments.substr(std::min(arguments.find_first_of(L" \t/", 1), arguments.size())));
  }
  return std::nullopt;
}

// As the command processor does: the quotes around the whole go, unless they are those of the program's name,
// which has no unit of its own meaning.
std::wstring WithoutOuterQuotes(std::wstring_view command, bool always) {
  if (!command.starts_with(L'"')) return std::wstring(command);
  const std::wstring_view quoted = command.substr(1, command.rfind(L'"') - 1);
  const bool isName = !always && std::ranges::count(command, L'"') == 2 &&
                      quoted.find_first_of(L"&<>()@^|") == std::wstring_view::npos &&
                      !ExistingFile(quoted).empty();
  std::wstring stripped(command);
  if (isName) return stripped;
  if (const std::size_t last = stripped.rfind(L'"'); last > 0) stripped.erase(last, 1);
  return stripped.erase(0, 1);
}

// Whether more than one program runs, or one that reads its commands.
bool HasOperators(std::wstring_view command) noexcept {
  bool quoted = false;
  for (const wchar_t unit : command) {
    if (unit == L'"') quoted = !quoted;
    if (!quoted && std::wstring_view(L"&|<>^\n").find(unit) != std::wstring_view::npos) return true;
  }
  return false;
}

constexpr std::wstring_view kStartSwitches[] = {
    L"/min", L"/max", L"/b", L"/wait", L"/i", L"/low", L"/normal", L"/high", L"/abovenormal", L"/belownormal",
};

std::wstring ServedByProcessor(std::wstring_view arguments, int depth) {
  const std::optional<std::wstring_view> behind = CommandOfProcessor(arguments);
  if (!behind) return {};
  const std::wstring_view switches = arguments.substr(0, arguments.size() - behind->size());
  const bool always =
      switches.find(L"/s") != std::wstring_view::npos || switches.find(L"/S") != std::wstring_view::npos;
  const std::wstring command = WithoutOuterQuotes(TrimmedPart(*behind), always);
  if (HasOperators(command)) return {};
  std::wstring_view rest = command;
  if (rest.starts_with(L'@')) rest.remove_prefix(1);
  std::wstring program = TakeElement(rest);
  if (SameText(program, L"start")) {
    // Its title.
    if (rest.starts_with(L'"')) TakeElement(rest);
    program = TakeElement(rest);
    while (IsAmong(kStartSwitches, program)) program = TakeElement(rest);
  } else if (SameText(program, L"call")) {
    program = TakeElement(rest);
  }
  return FileThatRuns(program, rest, depth + 1);
}

// Whether the element is a switch of that name, or a beginning of it that has `shortest` units at least.
bool IsNamed(std::wstring_view element, std::wstring_view name, std::size_t shortest) noexcept {
  element.remove_prefix(1);
  return element.size() >= shortest && StartsText(element, name);
}

// Switches that have no value, or one that says nothing about what runs.
constexpr std::wstring_view kPlainPowerShell[] = {
    L"nologo", L"noexit", L"noprofile", L"nop", L"noninteractive", L"noni", L"sta", L"mta",
};
constexpr std::wstring_view kValuedPowerShell[] = {
    L"executionpolicy", L"ex", L"exec",        L"ep",           L"windowstyle", L"w", L"win",
    L"version",         L"v",  L"inputformat", L"outputformat",
};

std::wstring ServedByPowerShell(std::wstring_view arguments, int /*depth*/) {
  while (!arguments.empty()) {
    const std::wstring element = TakeElement(arguments);
    if (!IsSwitch(element)) {
      // Without a switch it may be code.
      const bool isCode = arguments.find_first_of(L";|&`$(){}\n") != std::wstring_view::npos;
      return isCode ? std::wstring() : ExistingFile(element);
    }
    if (IsNamed(element, L"file", 1)) return ExistingFile(TakeElement(arguments));
    const std::wstring_view name = std::wstring_view(element).substr(1);
    if (IsAmong(kValuedPowerShell, name)) {
      TakeElement(arguments);
    } else if (!IsAmong(kPlainPowerShell, name)) {
      return {};
    }
  }
  return {};
}

std::wstring ServedByScriptHost(std::wstring_view arguments, int /*depth*/) {
  std::wstring element = TakeElement(arguments);
  while (element.starts_with(L"//")) element = TakeElement(arguments);
  return ExistingFile(element);
}

// Switches that say nothing about what runs.
constexpr std::wstring_view kPlainInstaller[] = {
    L"quiet", L"passive", L"norestart", L"promptrestart", L"forcerestart", L"q",   L"qn",   L"qb",
    L"qr",    L"qf",      L"qn+",       L"qb+",           L"qb-",          L"qb!", L"qb!-", L"qb-!",
};
// Properties that make more than the package decide.
constexpr std::wstring_view kBesidesPackage[] = {L"TRANSFORMS=", L"PATCH="};

// The package to install; any switch that may name something else makes it unknown.
std::wstring ServedByInstaller(std::wstring_view arguments, int /*depth*/) {
  std::wstring package;
  while (!arguments.empty()) {
    const std::wstring element = TakeElement(arguments);
    const auto begins = [&](std::wstring_view prefix) { return StartsText(prefix, element); };
    const std::wstring_view name = std::wstring_view(element).substr(element.empty() ? 0 : 1);
    if (!IsSwitch(element)) {
      if (element.find(L'=') == std::wstring::npos || std::ranges::any_of(kBesidesPackage, begins)) return {};
    } else if (SameText(name, L"i") || SameText(name, L"package")) {
      if (!package.empty()) return {};
      package = ExistingFile(TakeElement(arguments));
      if (package.empty()) return {};
    } else if (!IsAmong(kPlainInstaller, name)) {
      const bool isAttached = package.empty() && (name.starts_with(L'i') || name.starts_with(L'I'));
      package = isAttached ? ExistingFile(name.substr(1)) : std::wstring();
      if (package.empty()) return {};
    }
  }
  return package;
}

struct Interpreter {
  std::wstring_view name;
  // Null: how it is told what to run is not known here.
  std::wstring (*served)(std::wstring_view arguments, int depth);
};

constexpr Interpreter kInterpreters[] = {
    {L"rundll32", ServedByRundll},
    {L"rundll", ServedByRundll},
    {L"cmd", ServedByProcessor},
    {L"powershell", ServedByPowerShell},
    {L"pwsh", ServedByPowerShell},
    {L"wscript", ServedByScriptHost},
    {L"cscript", ServedByScriptHost},
    {L"msiexec", ServedByInstaller},
    {L"mshta", nullptr},
    {L"regsvr32", nullptr},
    {L"explorer", nullptr},
    {L"conhost", nullptr},
    {L"forfiles", nullptr},
    {L"pcalua", nullptr},
    {L"wmic", nullptr},
    {L"bash", nullptr},
    {L"wsl", nullptr},
    {L"java", nullptr},
    {L"javaw", nullptr},
    {L"python", nullptr},
    {L"pythonw", nullptr},
    {L"node", nullptr},
};

const Interpreter* InterpreterOf(std::wstring_view program) noexcept {
  const std::wstring_view name = ShortNameOf(program);
  const auto found = std::ranges::find_if(
      kInterpreters, [name](const Interpreter& row) { return SameText(row.name, name); });
  return found == std::end(kInterpreters) ? nullptr : found;
}

// Where Windows has its own; what bears such a name elsewhere does as it likes.
constexpr std::wstring_view kSystemFolders[] = {L"", L"System32\\", L"SysWOW64\\", L"Sysnative\\"};
constexpr std::wstring_view kPowerShellFolder = L"WindowsPowerShell\\v1.0\\";

std::wstring_view FolderOf(std::wstring_view path) noexcept {
  return path.substr(0, path.size() - FileNamePart(path).size());
}

bool IsOfSystem(std::wstring_view program) {
  std::wstring_view folder = FolderOf(program);
  const std::wstring below = WithoutTrailingBackslash(FileUtils::GetWin16SystemDir());
  const std::wstring_view windows = FolderOf(below);
  if (!StartsText(windows, folder)) {
    // The newer PowerShell is installed as a program.
    const auto isBelow = [folder](const std::wstring& programs) {
      return StartsText(programs + L"PowerShell\\", folder) && folder.find(L"..") == std::wstring_view::npos;
    };
    return SameText(ShortNameOf(program), L"pwsh") &&
           (isBelow(FileUtils::GetProgramFilesX86Dir()) || isBelow(FileUtils::GetProgramFilesNativeDir()));
  }
  folder.remove_prefix(windows.size());
  if (EndsText(kPowerShellFolder, folder)) folder.remove_suffix(kPowerShellFolder.size());
  return IsAmong(kSystemFolders, folder);
}

std::wstring FileThatRuns(std::wstring_view program, std::wstring_view arguments, int depth) {
  if (depth > kDeepest || program.empty()) return {};
  const ProgramFile file = FindProgramFile(SharedText(program));
  if (!file.exists) return {};
  const Interpreter* const interpreter = InterpreterOf(file.path);
  if (interpreter == nullptr || arguments.empty()) return std::wstring(file.path);
  const bool isKnown = interpreter->served != nullptr && IsOfSystem(file.path);
  return isKnown ? interpreter->served(arguments, depth) : std::wstring();
}

// What follows the program part in the command, wherever that had its quotes; none when it is not at the
// beginning.
std::optional<std::wstring_view> ArgumentsOf(std::wstring_view command, std::wstring_view program) noexcept {
  const auto skipQuotes = [&command] {
    while (command.starts_with(L'"')) command.remove_prefix(1);
  };
  command = TrimmedPart(command);
  skipQuotes();
  command = WithoutBlanksBefore(command);
  for (const wchar_t unit : program) {
    skipQuotes();
    if (!command.starts_with(unit)) return std::nullopt;
    command.remove_prefix(1);
  }
  if (command.starts_with(L'"')) command.remove_prefix(1);
  return WithoutBlanksBefore(command);
}

// Split at blanks; double quotes hold an element together and are not part of it.
std::vector<std::wstring> SplitAtBlanks(std::wstring_view text) {
  std::vector<std::wstring> elements;
  std::wstring element;
  bool quoted = false;
  bool started = false;
  for (const wchar_t unit : text) {
    if (unit == L'"') {
      quoted = !quoted;
      started = true;
    } else if (unit <= L' ' && !quoted) {
      if (started) elements.push_back(std::move(element));
      element.clear();
      started = false;
    } else {
      element += unit;
      started = true;
    }
  }
  if (started) elements.push_back(std::move(element));
  return elements;
}

}  // namespace

StartedThrough WhatIsStarted(const SharedText& program, const SharedText& command) {
  const Interpreter* const interpreter = InterpreterOf(program);
  if (interpreter == nullptr) return {};
  const std::optional<std::wstring_view> arguments =
      ArgumentsOf(command, FileUtils::ProgramOfCommand(command.c_str()));
  if (arguments && arguments->empty()) return {};
  StartedThrough started;
  started.program = program;
  if (arguments && interpreter->served != nullptr && IsOfSystem(program))
    started.file = SharedText(interpreter->served(*arguments, 0));
  return started;
}

void TakeStartedThrough(const SharedText& program, const SharedText& command, ItemDetails& details) {
  StartedThrough started = WhatIsStarted(program, command);
  details.StartedThrough = std::move(started.program);
  details.ServedFile = std::move(started.file);
  details.SeenServed = {};
  if (!details.ServedFile.empty())
    details.SeenServed = ReachableStamp(details.ServedFile).value_or(FileStamp{});
}

bool IsRundll(std::wstring_view shortName) noexcept {
  return SameText(shortName, L"rundll") || SameText(shortName, L"rundll32");
}

std::wstring RundllTarget(std::wstring_view command,
                          const std::function<std::wstring(std::wstring_view)>& existingFile) {
  std::wstring text(command);
  if (const std::size_t comma = text.find(L','); comma != std::wstring::npos) text[comma] = L' ';
  std::vector<std::wstring> elements = SplitAtBlanks(text);
  if (!elements.empty()) elements.erase(elements.begin());
  if (elements.size() >= 2) elements.erase(elements.begin() + 1);
  for (std::size_t i = elements.size(); i > 0; --i) {
    if (std::wstring file = existingFile(elements[i - 1]); !file.empty()) return file;
  }
  return {};
}

SharedText RundllFileOf(const SharedText& program, const SharedText& command) {
  return IsRundll(ShortNameOf(program)) ? SharedText(RundllTarget(command, ExistingFile)) : SharedText();
}

}  // namespace smh

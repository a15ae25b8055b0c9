#include "siblings/basekit/program_part.h"

#include "core/contracts/intf_general.h"
#include "infra/runtime/text.h"
#include "siblings/basekit/environment.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <span>

namespace smh {

namespace {

constexpr std::size_t kLongestPrefix = 260;
constexpr std::wstring_view kBlanks = L" \t";

bool IsBlank(wchar_t unit) noexcept {
  return kBlanks.find(unit) != std::wstring_view::npos;
}

bool EndsAt(std::wstring_view command, std::size_t position) noexcept {
  return position == command.size() || IsBlank(command[position]);
}

std::wstring WithoutQuotes(std::wstring_view text) {
  std::wstring result(text);
  std::erase(result, L'"');
  return Trim(result);
}

bool IsOnDrive(std::wstring_view path) noexcept {
  if (path.size() < 3 || path[1] != L':') return false;
  const wchar_t letter = static_cast<wchar_t>(path[0] | 0x20);
  return letter >= L'a' && letter <= L'z';
}

using Extensions = std::span<const std::wstring_view>;

// What the system tries of every prefix, and what the shell tries when none of them is a file.
constexpr std::wstring_view kBySystem[] = {L"", kImpliedExtensions[0]};
constexpr Extensions kByShell = Extensions(kImpliedExtensions).subspan(1);

bool NamesProgram(std::wstring_view prefix, Extensions extensions, const FileTest& fileExists) {
  const std::wstring path = WithoutQuotes(ExpandEnvironment(prefix));
  if (!IsOnDrive(path)) return false;
  const bool isComplete = path.ends_with(L'\\') || !ExtensionPart(path).empty();
  return std::ranges::any_of(extensions, [&](std::wstring_view extension) {
    return (extension.empty() || !isComplete) && fileExists(std::wstring(path).append(extension));
  });
}

// Length of the first prefix that names a file; npos without one.
std::size_t ExistingPrefix(std::wstring_view command, Extensions extensions, const FileTest& fileExists) {
  const std::size_t longest = std::min(command.size(), kLongestPrefix);
  for (std::size_t end = 1; end <= longest; ++end) {
    if (!EndsAt(command, end) || IsBlank(command[end - 1])) continue;
    if (NamesProgram(command.substr(0, end), extensions, fileExists)) return end;
  }
  return std::wstring_view::npos;
}

// Length up to the end of the first executable extension; npos without one.
std::size_t ExtensionEnd(std::wstring_view command) {
  for (std::size_t dot = command.find(L'.'); dot != std::wstring_view::npos;
       dot = command.find(L'.', dot + 1)) {
    for (const std::wstring_view extension : kExecutableExtensions) {
      const std::size_t end = dot + extension.size();
      if (end <= command.size() && EndsAt(command, end) && StartsText(extension, command.substr(dot)))
        return end;
    }
  }
  return std::wstring_view::npos;
}

// Where the system has its own programs, below the folder that `get` tells.
struct SystemFolder {
  UINT(WINAPI* get)(wchar_t* folder, UINT units);
  const wchar_t* below;
};

// Length of the first element when it names a program of the system without its folder ("cmd /c x.bat"): the
// system finds that before it takes more of the command for a name. npos when it does not.
std::size_t SystemProgramEnd(std::wstring_view command, const FileTest& fileExists) {
  const std::wstring_view name = command.substr(0, command.find_first_of(kBlanks));
  if (name.find_first_of(L"\\/:\"%") != std::wstring_view::npos) return std::wstring_view::npos;
  const SystemFolder folders[] = {
      {GetSystemDirectoryW, L"\\"},
      {GetWindowsDirectoryW, L"\\"},
      {GetSystemDirectoryW, L"\\WindowsPowerShell\\v1.0\\"},
  };
  for (const SystemFolder& row : folders) {
    wchar_t folder[MAX_PATH] = {};
    const UINT units = row.get(folder, MAX_PATH);
    if (units == 0 || units >= MAX_PATH) continue;
    std::wstring path(folder);
    path.append(row.below).append(name);
    if (ExtensionPart(name).empty()) path.append(kImpliedExtensions[0]);
    if (fileExists(path)) return name.size();
  }
  return std::wstring_view::npos;
}

}  // namespace

std::wstring ProgramPart(std::wstring_view command, const FileTest& fileExists) {
  command.remove_prefix(std::min(command.find_first_not_of(kBlanks), command.size()));
  if (command.starts_with(L'"')) {
    command.remove_prefix(1);
    return Trim(command.substr(0, command.find(L'"')));
  }
  std::size_t end = ExistingPrefix(command, kBySystem, fileExists);
  if (end == std::wstring_view::npos) end = ExistingPrefix(command, kByShell, fileExists);
  if (end == std::wstring_view::npos) {
    end = ExtensionEnd(command);
    const bool hasBlank = end != std::wstring_view::npos && command.find_first_of(kBlanks) < end;
    if (const std::size_t first = hasBlank ? SystemProgramEnd(command, fileExists) : end;
        first != std::wstring_view::npos) {
      end = first;
    }
  }
  if (end == std::wstring_view::npos) end = command.find_first_of(kBlanks);
  return WithoutQuotes(command.substr(0, end));
}

}  // namespace smh

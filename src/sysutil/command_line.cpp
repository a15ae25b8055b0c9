#include "sysutil/command_line.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/text.h"
#include "sysutil/program_file.h"
#include "sysutil/uFileUtils.h"

#include <shellapi.h>

#include <algorithm>
#include <exception>

namespace smh {

namespace {

// The helper's look at a file. What is raised meanwhile waits in the context: it must not pass the helper.
HRESULT STDMETHODCALLTYPE ProbeFile(void* context, const wchar_t* path) noexcept {
  try {
    std::wstring tried(path);
    return FileUtils::FileExistsWow64(tried) ? S_OK : S_FALSE;
  } catch (...) {
    *static_cast<std::exception_ptr*>(context) = std::current_exception();
    return E_ABORT;
  }
}

// ShellExecuteW answers more than this when it worked.
constexpr INT_PTR kLastShellError = 32;

}  // namespace

std::wstring FileUtils::MakeCommandLine(std::wstring_view path, std::wstring_view arguments) {
  path = TrimmedPart(path);
  arguments = TrimmedPart(arguments);
  std::wstring command;
  if (path.find(L' ') != std::wstring_view::npos) {
    command = QuoteText(path);
  } else {
    command.reserve(path.size() + 1 + arguments.size());
    command = path;
  }
  if (!arguments.empty()) command.append(1, L' ').append(arguments);
  return command;
}

SharedText FileUtils::ProgramOfCommand(const wchar_t* command) {
  std::exception_ptr failure;
  SharedText program = TakeSharedText([&](BoundaryText* out) {
    return DLLGlobals::ShellHelper().GetProgramPartBy(command, ProbeFile, &failure, out);
  });
  if (failure) std::rethrow_exception(failure);
  const std::wstring_view trimmed = TrimmedPart(program);
  return trimmed.size() == program.size() ? program : SharedText(trimmed);
}

CommandParts FileUtils::SplitCommandLine(const wchar_t* command) {
  CommandParts parts;
  parts.path = ProgramOfCommand(command);
  // Kept on purpose: the path goes from the arguments too where it is named again.
  const std::wstring rest = Trim(ReplaceText(command, parts.path, L""));
  parts.arguments =
      Trim(std::wstring_view(rest).substr(std::min(rest.find_first_not_of(L"\" "), rest.size())));
  return parts;
}

CommandParts ResolveCommand(const wchar_t* command) {
  CommandParts parts = FileUtils::SplitCommandLine(command);
  parts.path = std::wstring(FindProgramFile(SharedText(parts.path)).path);
  return parts;
}

SharedText ResolveCommandToFile(const wchar_t* command) {
  return FindProgramFile(FileUtils::ProgramOfCommand(command)).path;
}

DWORD OpenWithShell(HWND owner, const std::wstring& file, const std::wstring& parameters,
                    const std::wstring& folder) {
  SetLastError(ERROR_SUCCESS);
  const auto result = reinterpret_cast<INT_PTR>(
      ShellExecuteW(owner, L"open", file.c_str(), parameters.empty() ? nullptr : parameters.c_str(),
                    folder.empty() ? nullptr : folder.c_str(), SW_SHOWNORMAL));
  if (result > kLastShellError) return ERROR_SUCCESS;
  const DWORD code = GetLastError();
  if (code != ERROR_SUCCESS) return code;
  // The shell may fail without a last error; its own codes are system codes too, but 0: out of memory.
  return result != 0 ? static_cast<DWORD>(result) : DWORD{ERROR_NOT_ENOUGH_MEMORY};
}

}  // namespace smh

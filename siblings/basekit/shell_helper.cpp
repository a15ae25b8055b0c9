#include "siblings/basekit/services.h"

#include "siblings/basekit/environment.h"
#include "siblings/basekit/program_part.h"
#include "siblings/basekit/redirected_twin.h"
#include "core/contracts/boundary_call.h"
#include "infra/files/paths.h"
#include "infra/runtime/text.h"

namespace smh {

HRESULT ShellHelper::GetSpecialFolder(std::int32_t csidl, std::uint32_t flags, BoundaryText* folder) {
  return GuardedText(folder, [&] { return ShellFolder(csidl | static_cast<std::int32_t>(flags)); });
}

HRESULT ShellHelper::GetProgramPart(const wchar_t* command, BoundaryText* program) {
  return GuardedText(program, [&] { return ProgramPart(TextArgument(command), FileOrTwinExists); });
}

HRESULT ShellHelper::ExpandPath(const wchar_t* text, BoundaryText* path) {
  return GuardedText(path, [&] { return ExpandEnvironment(TextArgument(text)); });
}

HRESULT ShellHelper::NormalizeCommand(const wchar_t* text, BoundaryText* command) {
  return GuardedText(command, [&] { return ExpandEnvironment(Trim(TextArgument(text))); });
}

}  // namespace smh

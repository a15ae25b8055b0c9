#include "siblings/guardkit/copy_source.h"

#include "siblings/guardkit/file_state.h"
#include "siblings/guardkit/format/state_content.h"
#include "siblings/guardkit/registry_place.h"
#include "siblings/guardkit/registry_state.h"

namespace smh {

std::optional<StepSource> SourceAt(HKEY key, const std::wstring& name) {
  const ValueState state = ReadValueState(key, name);
  if (!state.exists) return std::nullopt;
  return StepSource{StepSource::Kind::kValue, PlaceOf(key), name, ContentSum(state)};
}

std::optional<StepSource> SourceAt(HKEY key) {
  return StepSource{StepSource::Kind::kKey, PlaceOf(key), {}, ContentSum(ReadKeyState(key))};
}

std::optional<StepSource> SourceAt(const std::wstring& path) {
  const FileState state = ReadFileState(path);
  if (!state.exists) return std::nullopt;
  return StepSource{StepSource::Kind::kFile, path, {}, ContentSum(state)};
}

}  // namespace smh

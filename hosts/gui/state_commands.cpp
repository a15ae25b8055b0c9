#include "hosts/gui/state_commands.h"

#include "hosts/common/reading.h"
#include "hosts/common/snapshot_file.h"
#include "hosts/gui/file_kinds.h"
#include "hosts/gui/texts/dialog_texts.h"
#include "hosts/gui/texts/frame_texts.h"
#include "infra/runtime/text.h"

#include <commdlg.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace smh {

namespace {

using AskFile = BOOL(WINAPI*)(OPENFILENAMEW*);

std::optional<std::wstring> AskStateFile(HWND owner, AskFile ask, DWORD flags, const Text& title) {
  wchar_t file[MAX_PATH] = L"";
  const std::wstring kinds = FileKinds({{texts::kFilesState, L"*.json"}, {texts::kFilesAll, L"*.*"}});
  OPENFILENAMEW question = {};
  question.lStructSize = sizeof(question);
  question.hwndOwner = owner;
  question.lpstrTitle = title.Get();
  question.lpstrFilter = kinds.c_str();
  question.lpstrFile = file;
  question.nMaxFile = ARRAYSIZE(file);
  question.lpstrDefExt = L"json";
  question.Flags = flags | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (!ask(&question)) return std::nullopt;
  return file;
}

// A snapshot's time is "2026-01-31T12:00:00Z".
std::wstring TitleOf(const Snapshot& state, const std::wstring& file) {
  std::wstring time = state.time.substr(0, 16);
  std::replace(time.begin(), time.end(), L'T', L' ');
  const std::wstring_view name = FileNamePart(file);
  return state.machine.name.empty() ? Format(texts::kStateOfTime, name, time)
                                    : Format(texts::kStateOfMachine, name, state.machine.name, time);
}

}  // namespace

void SaveState(const Frame& frame, bool allLocations) {
  const auto file = AskStateFile(frame.window, GetSaveFileNameW, OFN_OVERWRITEPROMPT, texts::kSaveStateTitle);
  if (!file) return;
  frame.say(texts::kReadingAll.Get());
  frame.worker.Ask(
      [file = *file, allLocations](LibrarySession& session) {
        const std::vector<ItemRecord> items = ReadAllItems(session.Get());
        if (!allLocations) session.Refresh(false);
        WriteSnapshotFile(file, SnapshotOf(items));
        return items.size();
      },
      [&frame, file = *file](std::size_t count) {
        frame.say(Format(texts::kStateSaved.For(count), count, file));
      });
}

void LoadState(const Frame& frame, std::function<void(const std::shared_ptr<const SavedState>& state)> use) {
  const auto file =
      AskStateFile(frame.window, GetOpenFileNameW, OFN_FILEMUSTEXIST, texts::kCompareStateTitle);
  if (!file) return;
  frame.say(texts::kReadingAll.Get());
  frame.worker.Ask(
      [file = *file](LibrarySession& session) {
        auto state = std::make_shared<SavedState>();
        state->snapshot = ReadSnapshotFile(file);
        state->title = TitleOf(state->snapshot, file);
        AdaptTo(state->snapshot, ThisMachine());
        RequireListed(ReadToEnd(session.Get(), ReadScope::kAll));
        return std::shared_ptr<const SavedState>(std::move(state));
      },
      std::move(use));
}

}  // namespace smh

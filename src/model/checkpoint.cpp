#include "model/checkpoint.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace smh {

namespace {

// In the order of ChangeKind.
constexpr const wchar_t* kDefaultTexts[] = {
    L"Startup Manager: Adding %s",   L"Startup Manager: Moving %s",    L"Startup Manager: Deleting %s",
    L"Startup Manager: Enabling %s", L"Startup Manager: Disabling %s", L"Startup Manager: Changing %s",
};

}  // namespace

struct CheckpointTexts {
  CheckpointTexts() { std::ranges::copy(kDefaultTexts, texts.begin()); }

  // A leaf.
  CriticalSection lock;
  std::array<std::wstring, std::size(kDefaultTexts)> texts SMH_GUARDED_BY(lock);
};

constinit ModuleGlobal<CheckpointTexts> g_checkpointTexts(L"checkpoint");

std::wstring CheckpointText(ChangeKind kind) {
  ScopedLock lock(g_checkpointTexts->lock);
  return g_checkpointTexts->texts[static_cast<std::size_t>(kind)];
}

void SetCheckpointText(ChangeKind kind, std::wstring_view text) {
  ScopedLock lock(g_checkpointTexts->lock);
  g_checkpointTexts->texts[static_cast<std::size_t>(kind)] = text;
}

std::wstring CheckpointTitle(ChangeKind kind, std::wstring_view itemName) {
  std::wstring text = CheckpointText(kind);
  try {
    return Format(text, itemName);
  } catch (const EConvertError&) {
    return text;
  }
}

void BeginCheckpoint(ChangeKind kind, std::wstring_view itemName) {
  CheckStatus(DLLGlobals::Safeguard().BeginCheckpoint(CheckpointTitle(kind, itemName).c_str()));
}

void EndCheckpoint() noexcept {
  // Begin fetched the service, so this cannot fail to find it.
  DLLGlobals::Safeguard().EndCheckpoint();
}

ChangeCheckpoint::ChangeCheckpoint(ChangeKind kind, std::wstring_view itemName)
    : recorded_(DLLGlobals::UseBackupCheckpoints()) {
  if (recorded_) BeginCheckpoint(kind, itemName);
}

ChangeCheckpoint::~ChangeCheckpoint() {
  if (recorded_) EndCheckpoint();
}

void ChangeCheckpoint::Fail() noexcept {
  if (recorded_) DLLGlobals::Safeguard().FailCheckpoint();
}

}  // namespace smh

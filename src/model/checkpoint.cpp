#include "model/checkpoint.h"

#include "core/contracts/uDllGlobals.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/exceptions.h"
#include "infra/runtime/format.h"

#include <array>
#include <utility>

namespace smh {

namespace {

// In the order of ChangeKind.
constexpr const wchar_t* kDefaultTexts[] = {
    L"Startup Manager: Adding %s",   L"Startup Manager: Moving %s",    L"Startup Manager: Deleting %s",
    L"Startup Manager: Enabling %s", L"Startup Manager: Disabling %s", L"Startup Manager: Changing %s",
};

struct CheckpointTexts {
  // Guards the texts. A leaf.
  CriticalSection lock;
  std::array<std::wstring, std::size(kDefaultTexts)> texts;
};

CheckpointTexts* g_texts = nullptr;

}  // namespace

std::wstring CheckpointText(ChangeKind kind) {
  ScopedLock lock(g_texts->lock);
  return g_texts->texts[static_cast<std::size_t>(kind)];
}

void SetCheckpointText(ChangeKind kind, std::wstring_view text) {
  ScopedLock lock(g_texts->lock);
  g_texts->texts[static_cast<std::size_t>(kind)] = text;
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

void StartCheckpointTexts() {
  g_texts = new CheckpointTexts();
  for (std::size_t i = 0; i < std::size(kDefaultTexts); ++i) g_texts->texts[i] = kDefaultTexts[i];
}

void StopCheckpointTexts() noexcept {
  delete std::exchange(g_texts, nullptr);
}

}  // namespace smh

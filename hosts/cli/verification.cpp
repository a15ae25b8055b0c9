#include "hosts/cli/verification.h"

#include "hosts/cli/consent.h"
#include "hosts/cli/texts/message_texts.h"
#include "hosts/cli/texts/table_texts.h"
#include "hosts/common/file_trust.h"
#include "hosts/common/operations.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/scoped_com.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <new>
#include <vector>

namespace smh {

namespace {

// Hashing waits for the disk, and a share that does not answer for two seconds.
constexpr std::size_t kThreads = 4;

struct Work {
  const FileTrust& trust;
  std::span<ItemRecord> items;
  std::atomic<std::size_t> next{0};
  std::atomic<bool> hasFailed{false};

  void Run() noexcept {
    try {
      for (std::size_t at = next++; at < items.size(); at = next++) items[at].trust = trust.Verify(items[at]);
    } catch (...) {
      hasFailed = true;
    }
  }
};

DWORD WINAPI RunWork(void* work) {
  // What reads the signatures of scripts uses it.
  const ScopedCom com(COINIT_MULTITHREADED);
  static_cast<Work*>(work)->Run();
  return 0;
}

}  // namespace

void VerifyItems(std::span<ItemRecord> items) {
  const FileTrust trust;
  Work work{.trust = trust, .items = items};
  std::vector<ScopedHandle> threads;
  threads.reserve(kThreads);
  for (std::size_t i = 1; i < std::min(kThreads, items.size()); ++i) {
    threads.emplace_back(CreateThread(nullptr, 0, RunWork, &work, 0, nullptr));
  }
  work.Run();
  for (const ScopedHandle& thread : threads) {
    if (thread) WaitForSingleObject(thread.Get(), INFINITE);
  }
  if (work.hasFailed) throw std::bad_alloc();
}

std::wstring TrustText(const ItemRecord& item) {
  if (!item.trust) return RatingText(item.rating).Get();
  const Text& word = TrustWordText(item.trust->word);
  if (item.trust->file.empty()) return word.Get();
  return Format(texts::kTrustFor, word, SignatureText(item.trust->signature, item.trust->Signer()));
}

bool IsDangerous(const ItemRecord& item) noexcept {
  if (!item.trust) return item.rating == kRatingRisky;
  return IsAlarming(item.trust->word, item.trust->signature);
}

bool IsElevated() noexcept {
  HANDLE opened = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened)) return false;
  const ScopedHandle token(opened);
  TOKEN_ELEVATION elevation = {};
  DWORD size = 0;
  return GetTokenInformation(token.Get(), TokenElevation, &elevation, sizeof(elevation), &size) &&
         elevation.TokenIsElevated != 0;
}

void RequireStartConsent(const ItemRecord& item, bool isElevated, bool isGiven) {
  if (!isElevated || !item.trust || !NeedsConsent(item.trust->word, item.trust->signature)) return;
  RequireConsent(Format(texts::kWouldStart, Describe(item), TrustText(item)), isGiven, {});
}

}  // namespace smh

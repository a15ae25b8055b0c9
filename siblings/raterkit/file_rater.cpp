#include "siblings/raterkit/file_rater.h"

#include "core/contracts/boundary_call.h"
#include "infra/runtime/module_path.h"
#include "infra/runtime/text.h"
#include "siblings/common/data_folder.h"
#include "siblings/raterkit/rating_store.h"

#include <memory>
#include <utility>

namespace smh {

namespace {

constexpr std::wstring_view kFileName = L"ratings.ini";

struct RatingsState {
  // Held while the store is made; the store's own lock is never held meanwhile.
  CriticalSection lock;
  std::unique_ptr<RatingStore> store;
};

RatingsState* state = nullptr;

// Made by the first call: the shell must not be asked for folders while the module loads.
RatingStore& Store() {
  const ScopedLock guard(state->lock);
  if (state->store == nullptr) {
    const std::wstring folder = DataFolder();
    const std::wstring moduleFolder(FolderPart(ModuleFileName(ThisModule())));
    state->store = std::make_unique<RatingStore>(folder.empty() ? folder : folder + std::wstring(kFileName),
                                                 moduleFolder + std::wstring(kFileName));
  }
  return *state->store;
}

}  // namespace

std::int32_t FileRater::RateFile(const wchar_t* name) {
  return GuardedValue<std::int32_t>(kRatingUnknown, [&] { return Store().OfFile(TextArgument(name)); });
}

HRESULT FileRater::Reserved2() {
  return E_NOTIMPL;
}

std::int32_t FileRater::RateCompany(const wchar_t* company) {
  return GuardedValue<std::int32_t>(kRatingUnknown, [&] { return Store().OfCompany(TextArgument(company)); });
}

void StartRatings() {
  state = new RatingsState;
}

void StopRatings() noexcept {
  delete std::exchange(state, nullptr);
}

}  // namespace smh

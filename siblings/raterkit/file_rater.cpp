#include "siblings/raterkit/file_rater.h"

#include "core/contracts/boundary_call.h"
#include "infra/runtime/lazy.h"
#include "infra/runtime/module_path.h"
#include "infra/runtime/text.h"
#include "siblings/common/data_folder.h"
#include "siblings/raterkit/rating_store.h"

namespace smh {

namespace {

constexpr std::wstring_view kFileName = L"ratings.ini";

}  // namespace

struct Ratings {
  // Held while the store is made, for which the shell is asked for a folder; the store's own lock is never
  // held meanwhile.
  CriticalSection lock;
  // Made by the first call: the shell must not be asked while the module loads.
  Lazy<RatingStore> store{lock};
};

constinit ModuleGlobal<Ratings> g_ratings(L"file_rater");

namespace {

RatingStore MakeStore() {
  const std::wstring folder = DataFolder();
  const std::wstring moduleFolder(FolderPart(ModuleFileName(ThisModule())));
  return RatingStore(folder.empty() ? folder : folder + std::wstring(kFileName),
                     moduleFolder + std::wstring(kFileName));
}

RatingStore& Store() {
  return g_ratings->store.Get(MakeStore);
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

}  // namespace smh

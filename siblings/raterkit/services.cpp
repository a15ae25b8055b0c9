#include "core/contracts/boundary_call.h"
#include "core/contracts/com_object.h"
#include "core/contracts/intf_FileRater.h"
#include "infra/runtime/lazy.h"
#include "infra/runtime/module_global.h"
#include "infra/runtime/module_path.h"
#include "infra/runtime/text.h"
#include "siblings/common/module.h"
#include "siblings/common/product.h"
#include "siblings/raterkit/rating_store.h"

namespace smh {

namespace {

constexpr std::wstring_view kFileName = L"ratings.ini";

// The ratings, which live from the module's start to its stop; the files are read on first use.
struct Ratings {
  // Held while the store is made, for which the shell is asked for a folder; the store's own lock is never
  // held meanwhile.
  CriticalSection lock;
  // Made by the first call: the shell must not be asked while the module loads.
  Lazy<RatingStore> store{lock};
};

constinit ModuleGlobal<Ratings> g_ratings(L"raterkit");

RatingStore MakeStore() {
  const std::wstring folder = DataFolder();
  const std::wstring moduleFolder(FolderPart(ModuleFileName(ThisModule())));
  return RatingStore(folder.empty() ? folder : folder + std::wstring(kFileName),
                     moduleFolder + std::wstring(kFileName));
}

RatingStore& Store() {
  return g_ratings->store.Get(MakeStore);
}

// The object behind raterkit's service; intf_FileRater.h has the contract. Any thread may call. What cannot
// be rated, for whatever reason, is unknown.
class FileRater final : public ServiceObject<IFileRater> {
 public:
  std::int32_t STDMETHODCALLTYPE RateFile(const wchar_t* name) override;
  HRESULT STDMETHODCALLTYPE Reserved2() override;
  std::int32_t STDMETHODCALLTYPE RateCompany(const wchar_t* company) override;
};

std::int32_t FileRater::RateFile(const wchar_t* name) {
  return GuardedValue<std::int32_t>(kRatingUnknown, [&] { return Store().OfFile(TextArgument(name)); });
}

HRESULT FileRater::Reserved2() {
  return E_NOTIMPL;
}

std::int32_t FileRater::RateCompany(const wchar_t* company) {
  return GuardedValue<std::int32_t>(kRatingUnknown, [&] { return Store().OfCompany(TextArgument(company)); });
}

constinit FileRater fileRater;

constinit const ServiceRow kServices[] = {{IFileRater::kId, &fileRater}};

constexpr ModuleStep kSteps[] = {StepOf<g_ratings>(L"ratings")};

}  // namespace

std::span<const ServiceRow> SiblingServices() noexcept {
  return kServices;
}

std::span<const ModuleStep> SiblingSteps() noexcept {
  return kSteps;
}

}  // namespace smh

#include "core/contracts/boundary_call.h"
#include "core/contracts/com_object.h"
#include "core/contracts/intf_FileRater.h"
#include "core/contracts/intf_FileTrust.h"
#include "infra/runtime/lazy.h"
#include "infra/runtime/module_global.h"
#include "infra/runtime/module_path.h"
#include "infra/runtime/text.h"
#include "siblings/common/module.h"
#include "siblings/common/product.h"
#include "siblings/raterkit/rating_store.h"
#include "siblings/raterkit/system_trust.h"
#include "siblings/raterkit/trust_store.h"
#include "sysutil/network_roots.h"

#include <memory>
#include <optional>

namespace smh {

namespace {

constexpr std::wstring_view kFileName = L"ratings.ini";
constexpr std::wstring_view kSignatureFileName = L"signatures.txt";

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

// What is known of signatures, as the ratings above; the system is asked on first use.
struct Trust {
  // As the ratings' one.
  CriticalSection lock;
  Lazy<TrustStore> store{lock};
};

constinit ModuleGlobal<Trust> g_trust(L"raterkit");

TrustStore& Signatures() {
  return g_trust->store.Get([] {
    const std::wstring folder = DataFolder();
    const bool hasFolder = !folder.empty();
    const std::size_t base = hasFolder ? folder.size() - kVendorName.size() - kProductName.size() - 2 : 0;
    return TrustStore(std::make_unique<WindowsTrust>(),
                      hasFolder ? folder + std::wstring(kSignatureFileName) : folder, base);
  });
}

// The object behind the signature service; intf_FileTrust.h has the contract.
class FileTrust final : public ServiceObject<IFileTrust> {
 public:
  HRESULT STDMETHODCALLTYPE Verify(const wchar_t* path, FileTrustFacts* facts) override;
  HRESULT STDMETHODCALLTYPE GetTrustedSigner(const wchar_t* company, const wchar_t* name,
                                             BoundaryText* organisation) override;
};

HRESULT FileTrust::Verify(const wchar_t* path, FileTrustFacts* facts) {
  if (facts == nullptr || facts->size != sizeof(FileTrustFacts)) return E_INVALIDARG;
  *facts = {sizeof(FileTrustFacts), kSignatureUnreadable, E_FAIL, {}, nullptr, nullptr, nullptr};
  return GuardedResult([&] {
    const TrustedFile file = Signatures().Verify(TextArgument(path));
    BoundaryString organisation(file.organisation);
    BoundaryString commonName(file.commonName);
    BoundaryString sha256(file.hash ? TextOf(*file.hash) : std::wstring());
    facts->state = file.state;
    facts->systemCode = file.code;
    facts->signingTime = file.signingTime;
    facts->organisation = organisation.Detach();
    facts->commonName = commonName.Detach();
    facts->sha256 = sha256.Detach();
  });
}

HRESULT FileTrust::GetTrustedSigner(const wchar_t* company, const wchar_t* name, BoundaryText* organisation) {
  if (organisation == nullptr) return E_POINTER;
  *organisation = nullptr;
  return GuardedResult([&] {
    *organisation = MakeBoundaryText(Store().TrustedSigner(TextArgument(company), TextArgument(name)));
  });
}

constinit FileRater fileRater;
constinit FileTrust fileTrust;

constinit const ServiceRow kServices[] = {{IFileRater::kId, &fileRater}, {IFileTrust::kId, &fileTrust}};

constexpr ModuleStep kSteps[] = {StepOf<g_networkRoots>(L"network roots"), StepOf<g_ratings>(L"ratings"),
                                 StepOf<g_trust>(L"signatures")};

}  // namespace

std::span<const ServiceRow> SiblingServices() noexcept {
  return kServices;
}

std::span<const ModuleStep> SiblingSteps() noexcept {
  return kSteps;
}

}  // namespace smh

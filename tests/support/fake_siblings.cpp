#include "tests/support/fake_siblings.h"

#include "infra/runtime/import_function.h"
#include "tests/support/child_process.h"

#include <stdexcept>

namespace smh::test {

void InstallFakeSibling(const wchar_t* library, const wchar_t* id, IUnknown* object) {
  const HMODULE module = LoadLibraryW((ThisFolder() + L"fakes\\" + library).c_str());
  using Function = void(STDMETHODCALLTYPE*)(const wchar_t*, IUnknown*);
  const auto set = ImportFunction<Function>(module, "SetService");
  if (set == nullptr) throw std::runtime_error("a stand-in library cannot be set up");
  set(id, object);
}

class FakeSettings::Application : public ComObject<IApplicationSettings> {
 public:
  explicit Application(FakeSettings* owner) : owner_(owner) {}

  BOOL STDMETHODCALLTYPE GetUseCheckpoints(const wchar_t* hostFileName) override {
    const std::scoped_lock lock(owner_->lock_);
    owner_->asked_.emplace_back(TextArgument(hostFileName));
    return owner_->useCheckpoints;
  }
  DWORD STDMETHODCALLTYPE GetKeptCheckpoints(const wchar_t*) override { return 200; }
  DWORD STDMETHODCALLTYPE GetKeptMegabytes(const wchar_t*) override { return 64; }

 private:
  ComPtr<FakeSettings> owner_;
};

std::vector<std::wstring> FakeSettings::Asked() const {
  const std::scoped_lock lock(lock_);
  return asked_;
}

HRESULT FakeSettings::GetApplicationSettings(IApplicationSettings** settings) {
  *settings = new Application(this);
  return S_OK;
}

void FakeFileRater::Rate(const std::wstring& name, FileRating rating) {
  const std::scoped_lock lock(lock_);
  ratings_[name] = rating;
}

std::vector<std::wstring> FakeFileRater::Asked() const {
  const std::scoped_lock lock(lock_);
  return asked_;
}

std::int32_t FakeFileRater::RatingOf(const wchar_t* kind, const wchar_t* text) {
  const std::scoped_lock lock(lock_);
  asked_.push_back(kind + std::wstring(TextArgument(text)));
  const auto found = ratings_.find(std::wstring(TextArgument(text)));
  return found == ratings_.end() ? kRatingUnknown : found->second;
}

}  // namespace smh::test

#include "tests/support/fake_siblings.h"

#include "infra/runtime/import_function.h"
#include "infra/runtime/text.h"
#include "tests/support/child_process.h"
#include "tests/support/import_patch.h"

#include <stdexcept>

namespace smh::test {

namespace {

std::wstring StandIn(std::wstring_view library) {
  return ThisFolder().append(L"fakes\\").append(library);
}

// Leads to the stand-in of a library beside this program once there is one.
HMODULE WINAPI LoadStandIn(const wchar_t* file, HANDLE reserved, DWORD flags) {
  const std::wstring standIn = StandIn(FileNamePart(file));
  const bool isReplaced =
      SameText(FolderPart(file), ThisFolder()) && GetModuleHandleW(standIn.c_str()) != nullptr;
  static const auto load = RealFunction<decltype(LoadLibraryExW)>(L"kernel32.dll", "LoadLibraryExW");
  return load(isReplaced ? standIn.c_str() : file, reserved, flags);
}

}  // namespace

void InstallFakeSibling(const wchar_t* library, const wchar_t* id, IUnknown* object) {
  // Left in place: what was loaded stays loaded, too.
  static const auto* const patch = new ImportPatch("LoadLibraryExW", &LoadStandIn);
  static_cast<void>(patch);
  const HMODULE module = LoadLibraryW(StandIn(library).c_str());
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
  DWORD STDMETHODCALLTYPE GetKeptDays(const wchar_t*) override { return 180; }
  DWORD STDMETHODCALLTYPE GetKeptMegabytes(const wchar_t*) override { return 256; }

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

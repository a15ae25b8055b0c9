// Stand-ins of the sibling libraries' services.
//
// A stand-in library of the sibling's name (bin/fakes) is loaded; from then on this program loads it instead
// of the one beside it. What a test does not replace comes from that real library.
#pragma once

#include "core/contracts/com_object.h"
#include "core/contracts/intf_FileRater.h"
#include "core/contracts/intf_settings.h"
#include "infra/siblings/uInterfacesRoutines.h"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace smh::test {

// Makes `object` the answer of `library` ("guardkit.dll") for `id` (ISafeguard::kId); null removes it. Call
// it before the service is fetched for the first time. Throws std::runtime_error.
void InstallFakeSibling(const wchar_t* library, const wchar_t* id, IUnknown* object);

// The siblings are started for one test, and what it installs goes with it.
class SiblingTest : public testing::Test {
 protected:
  SiblingTest() { g_siblings.Start(); }
  ~SiblingTest() override {
    g_siblings.Stop();
    for (const auto& [library, id] : installed_) InstallFakeSibling(library, id, nullptr);
  }

  void Install(const wchar_t* library, const wchar_t* id, IUnknown* object) {
    InstallFakeSibling(library, id, object);
    installed_.emplace_back(library, id);
  }

 private:
  std::vector<std::pair<const wchar_t*, const wchar_t*>> installed_;
};

// The checkpoint switch, and a record of who asked for it.
class FakeSettings : public ComObject<ISettings> {
 public:
  std::atomic<bool> useCheckpoints{true};
  std::vector<std::wstring> Asked() const;

  HRESULT STDMETHODCALLTYPE Reserved1() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reserved2() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Reserved3() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetApplicationSettings(IApplicationSettings** settings) override;

 private:
  class Application;

  mutable std::mutex lock_;
  std::vector<std::wstring> asked_;
};

// Ratings by exact text; "unknown" for any other.
class FakeFileRater : public ComObject<IFileRater> {
 public:
  void Rate(const std::wstring& name, FileRating rating);
  std::vector<std::wstring> Asked() const;

  std::int32_t STDMETHODCALLTYPE RateFile(const wchar_t* name) override { return RatingOf(L"file ", name); }
  HRESULT STDMETHODCALLTYPE Reserved2() override { return E_NOTIMPL; }
  std::int32_t STDMETHODCALLTYPE RateCompany(const wchar_t* company) override {
    return RatingOf(L"company ", company);
  }

 private:
  std::int32_t RatingOf(const wchar_t* kind, const wchar_t* text);

  mutable std::mutex lock_;
  std::map<std::wstring, FileRating> ratings_;
  std::vector<std::wstring> asked_;
};

}  // namespace smh::test

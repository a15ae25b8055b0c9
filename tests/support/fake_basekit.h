// Stand-ins of the general helpers and the product's names, for tests that look at what is made of them.
// Their fields are set before use.
#pragma once

#include "infra/com_object.h"
#include "infra/intf_general.h"

#include <map>
#include <string>

namespace smh::test {

inline HRESULT Give(std::wstring_view from, BoundaryText* to) {
  *to = MakeBoundaryText(from);
  return S_OK;
}

// Operations without a field are E_NOTIMPL.
class FakeHelper : public ComObject<IHelper> {
 public:
  std::wstring baseFolder;
  std::wstring userText;
  bool userIsAdmin = false;
  // By name of the version string, for any file.
  std::map<std::wstring, std::wstring> versionStrings;

  HRESULT STDMETHODCALLTYPE GetWindowsFolder(BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetSystemFolder(BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetFileNameWithoutExt(const wchar_t*, BoundaryText*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE CanonicalizePath(const wchar_t*, BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetExecutableExtensions(BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetBaseFolder(BoundaryText* folder) override { return Give(baseFolder, folder); }
  HRESULT STDMETHODCALLTYPE GetVersionString(const wchar_t*, const wchar_t* name,
                                             BoundaryText* text) override {
    return Give(versionStrings[name], text);
  }
  HRESULT STDMETHODCALLTYPE GetVersionNumber(const wchar_t*, BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FileTimeToDateTime(const FILETIME*, double*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SplitIndirectString(const wchar_t*, BoundaryText*, std::int32_t*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ExpandEnvironment(const wchar_t*, BoundaryText*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetCurrentUserText(BoundaryText* text) override { return Give(userText, text); }
  BOOL STDMETHODCALLTYPE IsUserAdmin() override { return userIsAdmin; }
  HRESULT STDMETHODCALLTYPE GetVersionStrings(const wchar_t*, const wchar_t* const*, std::uint32_t,
                                              BoundaryText*) override {
    return E_NOTIMPL;
  }
};

class FakeGlobals : public ComObject<IGlobals> {
 public:
  HRESULT STDMETHODCALLTYPE Reserved1() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetVendorName(BoundaryText* name) override { return Give(L"Quillmark", name); }
  HRESULT STDMETHODCALLTYPE GetProductName(BoundaryText* name) override {
    return Give(L"Startup Manager", name);
  }
  HRESULT STDMETHODCALLTYPE GetProductVersion(BoundaryText* text) override { return Give(L"1.2.3.4", text); }
};

}  // namespace smh::test

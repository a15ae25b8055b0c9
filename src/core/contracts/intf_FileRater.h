// The file reputation service of raterkit.dll. Calls are stdcall; slots are numbered after IUnknown's three.
// Any thread may call; the user's and the product's rating file are read on first use and when they change.
#pragma once

#include "core/contracts/boundary_string.h"

#include <unknwn.h>

namespace smh {

// What is known of a file's reputation.
enum FileRating : std::int32_t { kRatingTrusted = 0, kRatingUnknown = 1, kRatingRisky = 2 };

// Both answer a FileRating; unknown for what is not listed, and when no file can be read.
struct IFileRater : IUnknown {
  static constexpr wchar_t kId[] = L"{A90B8362-CEEF-4902-A639-A0125EDD0201}";
  static constexpr wchar_t kLibrary[] = L"raterkit.dll";
  static constexpr wchar_t kLocator[] = L"raterkit.dll::File Rater";
  static constexpr GUID iid = {0xA90B8362, 0xCEEF, 0x4902, {0xA6, 0x39, 0xA0, 0x12, 0x5E, 0xDD, 0x02, 0x01}};

  // 1: by the file's name without folder.
  virtual std::int32_t STDMETHODCALLTYPE RateFile(const wchar_t* name) = 0;
  // 2: E_NOTIMPL.
  virtual HRESULT STDMETHODCALLTYPE Reserved2() = 0;
  // 3: by the company of the file's version record.
  virtual std::int32_t STDMETHODCALLTYPE RateCompany(const wchar_t* company) = 0;
};

}  // namespace smh

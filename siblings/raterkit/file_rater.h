// The object behind raterkit's service; intf_FileRater.h has the contract.
#pragma once

#include "core/contracts/com_object.h"
#include "core/contracts/intf_FileRater.h"
#include "infra/runtime/module_global.h"

namespace smh {

// Any thread may call. What cannot be rated, for whatever reason, is unknown.
class FileRater final : public ServiceObject<IFileRater> {
 public:
  std::int32_t STDMETHODCALLTYPE RateFile(const wchar_t* name) override;
  HRESULT STDMETHODCALLTYPE Reserved2() override;
  std::int32_t STDMETHODCALLTYPE RateCompany(const wchar_t* company) override;
};

// The ratings, which live from the module's start to its stop; the files are read on first use.
struct Ratings;
extern ModuleGlobal<Ratings> g_ratings;

}  // namespace smh

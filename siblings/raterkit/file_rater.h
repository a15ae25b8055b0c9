// The object behind raterkit's service.
#pragma once

#include "core/contracts/service_object.h"
#include "core/contracts/intf_FileRater.h"

namespace smh {

class FileRater final : public ServiceObject<IFileRater> {
 public:
  std::int32_t STDMETHODCALLTYPE RateFile(const wchar_t* name) override;
  HRESULT STDMETHODCALLTYPE Reserved2() override;
  std::int32_t STDMETHODCALLTYPE RateCompany(const wchar_t* company) override;
};

// Module start-up and shut-down of the ratings.
void StartRatings();
void StopRatings() noexcept;

}  // namespace smh

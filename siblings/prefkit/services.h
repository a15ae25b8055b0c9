// The objects behind prefkit's services. They hold nothing: every question reads the registry.
#pragma once

#include "core/contracts/service_object.h"
#include "core/contracts/intf_settings.h"

namespace smh {

class ApplicationSettings final : public ServiceObject<IApplicationSettings> {
 public:
  BOOL STDMETHODCALLTYPE GetUseCheckpoints(const wchar_t* hostFileName) override;
  DWORD STDMETHODCALLTYPE GetKeptCheckpoints(const wchar_t* hostFileName) override;
  DWORD STDMETHODCALLTYPE GetKeptMegabytes(const wchar_t* hostFileName) override;
};

class Settings final : public ServiceObject<ISettings> {
 public:
  explicit constexpr Settings(ApplicationSettings& application) noexcept : application_(application) {}

  HRESULT STDMETHODCALLTYPE Reserved1() override;
  HRESULT STDMETHODCALLTYPE Reserved2() override;
  HRESULT STDMETHODCALLTYPE Reserved3() override;
  HRESULT STDMETHODCALLTYPE GetApplicationSettings(IApplicationSettings** settings) override;

 private:
  ApplicationSettings& application_;
};

}  // namespace smh

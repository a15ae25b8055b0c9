// The objects behind prefkit's services; intf_settings.h has their contracts. They hold nothing: every
// question reads the registry, so any thread may call and sees the settings of the moment. They are DWORD
// values of "Software\Quillmark\Startup Manager\Settings\<host file>" of the current user.
#pragma once

#include "core/contracts/com_object.h"
#include "core/contracts/intf_settings.h"

namespace smh {

// What cannot be read answers its default. `hostFileName` may have a folder, which does not count.
class ApplicationSettings final : public ServiceObject<IApplicationSettings> {
 public:
  BOOL STDMETHODCALLTYPE GetUseCheckpoints(const wchar_t* hostFileName) override;
  DWORD STDMETHODCALLTYPE GetKeptDays(const wchar_t* hostFileName) override;
  DWORD STDMETHODCALLTYPE GetKeptMegabytes(const wchar_t* hostFileName) override;
};

// Hands out the settings, one reference for the caller.
class Settings final : public ServiceObject<ISettings> {
 public:
  // `application` is the module's object and lives as long.
  explicit constexpr Settings(ApplicationSettings& application) noexcept : application_(application) {}

  HRESULT STDMETHODCALLTYPE Reserved1() override;
  HRESULT STDMETHODCALLTYPE Reserved2() override;
  HRESULT STDMETHODCALLTYPE Reserved3() override;
  HRESULT STDMETHODCALLTYPE GetApplicationSettings(IApplicationSettings** answer) override;

 private:
  ApplicationSettings& application_;
};

}  // namespace smh

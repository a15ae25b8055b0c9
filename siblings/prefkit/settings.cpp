#include "siblings/prefkit/services.h"

namespace smh {

HRESULT Settings::Reserved1() {
  return E_NOTIMPL;
}

HRESULT Settings::Reserved2() {
  return E_NOTIMPL;
}

HRESULT Settings::Reserved3() {
  return E_NOTIMPL;
}

HRESULT Settings::GetApplicationSettings(IApplicationSettings** settings) {
  return AnswerService<IApplicationSettings>(settings, application_);
}

}  // namespace smh

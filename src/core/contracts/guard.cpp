#include "core/contracts/guard.h"

#include "infra/runtime/exceptions.h"

namespace smh {

HRESULT CurrentExceptionResult() noexcept {
  try {
    throw;
  } catch (const Exception& exception) {
    return exception.Result();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

}  // namespace smh

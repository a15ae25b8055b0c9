// Numbers, handed out one after the other as the system's collections are.
#pragma once

#include "core/contracts/com_object.h"

#include <oaidl.h>

#include <vector>

namespace smh {

// Counted; made by MakeComObject. For one thread at a time.
class NumberEnumerator final : public IEnumVARIANT, protected CountedLifetime {
 public:
  explicit NumberEnumerator(std::vector<int> numbers) noexcept : numbers_(std::move(numbers)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return Acquire(); }
  ULONG STDMETHODCALLTYPE Release() override { return Drop(); }

  // As Windows documents them; the variants are numbers (VT_I4).
  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) override;
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
  HRESULT STDMETHODCALLTYPE Reset() override;
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override;

 private:
  ~NumberEnumerator() override = default;

  const std::vector<int> numbers_;
  std::size_t next_ = 0;
};

}  // namespace smh

// The pixels of icons.
#pragma once

#include "core/contracts/icon_exchange.h"
#include "infra/runtime/handle.h"

namespace smh {

struct MemoryContextTraits {
  using Type = HDC;
  static constexpr Type kNone = nullptr;
  static bool IsValid(Type value) noexcept { return value != nullptr; }
  static void Close(Type value) noexcept { DeleteDC(value); }
};
using ScopedMemoryContext = ScopedResource<MemoryContextTraits>;

// Keeps the drawing context that bitmaps are read through. For one thread.
class IconPixelReader {
 public:
  IconPixelReader() noexcept : context_(CreateCompatibleDC(nullptr)) {}

  // The icon's pixels, scaled to the size of `pixels`; none when it has none to read. The icon stays the
  // caller's.
  void Take(HICON icon, IconPixels<kLargeIconSide>& pixels) const noexcept;
  void Take(HICON icon, IconPixels<kSmallIconSide>& pixels) const noexcept;

 private:
  const ScopedMemoryContext context_;
};

}  // namespace smh

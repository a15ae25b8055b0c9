// The pixels of an icon.
#pragma once

#include "core/contracts/icon_exchange.h"

namespace smh {

// Those of the icon, scaled to the size of `pixels`; none when it has none to read. The icon stays the
// caller's. Any thread.
void TakePixels(HICON icon, IconPixels<kLargeIconSide>& pixels) noexcept;
void TakePixels(HICON icon, IconPixels<kSmallIconSide>& pixels) noexcept;

}  // namespace smh

#include "core/item_properties.h"

#include "core/contracts/variant_values.h"
#include "core/detail_properties.h"

namespace smh {

VARIANT ItemPropertyValue(const TStartupItem& item, std::int32_t index) {
  if (index == kPropertyLocation) return NumberVariant(item.Location());
  return item.Get([&](const ItemState& state) {
    return index == kPropertyEnabled ? BooleanVariant(state.isEnabled)
                                     : DetailPropertyValue(state.details, index);
  });
}

}  // namespace smh

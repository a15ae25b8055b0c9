// The order of the location list.
#pragma once

namespace smh {

// Registers every location class; the order of registration is the order of the list and of reading.
void RegisterLocationClasses();

}  // namespace smh

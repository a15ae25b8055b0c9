// From a row of the location table to the location: the one place that knows all location classes.
#pragma once

#include "model/uLocationStartup.h"

namespace smh {

// A new location of the row, which may be any but that of sulNone and outlives it; its watches are armed.
// Raises EOSError when that fails, EAssertionFailed for the row of sulNone. Any thread, but not while another
// makes a location or asks one whether it changed: they share watches. Takes no lock of its own.
std::unique_ptr<TLocationStartup> MakeLocation(const LocationRow& row);

}  // namespace smh

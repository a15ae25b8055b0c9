// What a sibling supplies to the one entry point and the one export that all of them share (module.cpp). Each
// defines both in its services.cpp.
#pragma once

#include "core/contracts/service_entry.h"

#include <span>

namespace smh {

// The services, which live as long as the module, by their identifiers.
std::span<const ServiceRow> SiblingServices() noexcept;
// The module's start-up and shut-down, in the order of starting. May be empty.
std::span<const ModuleStep> SiblingSteps() noexcept;

}  // namespace smh

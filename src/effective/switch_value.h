// The data of one of the system's switches (a value of StartupApproved), as Task Manager writes them.
//
// See startup_approved.h; the time is mostly zero when it is on. Longer data is taken for the same with
// something behind. Shorter data and other types are nobody's known format: what they say cannot be told, and
// they are left alone. Pure functions.
#pragma once

#include "infra/registry/registry_values.h"

#include <cstddef>
#include <optional>
#include <span>

namespace smh {

// A yes or no that may be unreadable or in an unknown form.
enum class Told { kNo, kYes, kUntold };

struct SwitchValue {
  Told isOff = Told::kNo;
  // UTC; zero while it is on.
  FILETIME since = {};
};

SwitchValue ReadSwitchValue(DWORD type, std::span<const std::byte> data) noexcept;
// `before` with another low bit and time, and everything else as it is; of nothing a new one. None for data
// that cannot be told.
std::optional<RegistryData> WithSwitch(const std::optional<RegistryData>& before, bool off,
                                       const FILETIME& now);

}  // namespace smh

#include "effective/switch_value.h"

#include "core/contracts/startup_approved.h"

#include <cstring>

namespace smh {

namespace {

// What Task Manager writes where there was nothing: on, with the bit that everybody sets.
constexpr std::byte kNewFlags{2};

}  // namespace

SwitchValue ReadSwitchValue(DWORD type, std::span<const std::byte> data) noexcept {
  SwitchValue value;
  if (type != REG_BINARY || data.size() < kLeastSwitchBytes) {
    value.isOff = Told::kUntold;
  } else if ((data.front() & kSwitchOffBit) != std::byte{0}) {
    value.isOff = Told::kYes;
    std::memcpy(&value.since, &data[kSwitchTimeAt], sizeof(value.since));
  }
  return value;
}

std::optional<RegistryData> WithSwitch(const std::optional<RegistryData>& before, bool off,
                                       const FILETIME& now) {
  RegistryData data{REG_BINARY, std::vector<std::byte>(kLeastSwitchBytes)};
  if (before) {
    data = *before;
    if (ReadSwitchValue(data.type, data.bytes).isOff == Told::kUntold) return std::nullopt;
  } else {
    data.bytes.front() = kNewFlags;
  }
  std::byte& flags = data.bytes.front();
  flags = off ? flags | kSwitchOffBit : flags & ~kSwitchOffBit;
  const FILETIME time = off ? now : FILETIME{};
  std::memcpy(&data.bytes[kSwitchTimeAt], &time, sizeof(time));
  return data;
}

}  // namespace smh

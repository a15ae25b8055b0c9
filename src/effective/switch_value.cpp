#include "effective/switch_value.h"

#include <cstring>

namespace smh {

namespace {

constexpr std::size_t kTimeAt = 4;
constexpr std::size_t kLeastBytes = kTimeAt + sizeof(FILETIME);
constexpr std::byte kOffBit{1};
// What Task Manager writes where there was nothing: on, with the bit that everybody sets.
constexpr std::byte kNewFlags{2};

}  // namespace

SwitchValue ReadSwitchValue(DWORD type, std::span<const std::byte> data) noexcept {
  SwitchValue value;
  if (type != REG_BINARY || data.size() < kLeastBytes) {
    value.isOff = Told::kUntold;
  } else if ((data.front() & kOffBit) != std::byte{0}) {
    value.isOff = Told::kYes;
    std::memcpy(&value.since, &data[kTimeAt], sizeof(value.since));
  }
  return value;
}

std::optional<RegistryData> WithSwitch(const std::optional<RegistryData>& before, bool off,
                                       const FILETIME& now) {
  RegistryData data{REG_BINARY, std::vector<std::byte>(kLeastBytes)};
  if (before) {
    data = *before;
    if (ReadSwitchValue(data.type, data.bytes).isOff == Told::kUntold) return std::nullopt;
  } else {
    data.bytes.front() = kNewFlags;
  }
  std::byte& flags = data.bytes.front();
  flags = off ? flags | kOffBit : flags & ~kOffBit;
  const FILETIME time = off ? now : FILETIME{};
  std::memcpy(&data.bytes[kTimeAt], &time, sizeof(time));
  return data;
}

}  // namespace smh

#include "effective/switch_value.h"
#include "tests/effective/effective_fixture.h"

namespace smh::test {
namespace {

RegistryData Data(const RawValue& value) {
  return {value.type, value.bytes};
}

// What is read of a switch, and what becomes of its bytes when it is put off or on.
TEST(SwitchValueTest, OddValuesAreReadSafelyAndNothingUnknownIsDestroyed) {
  const FILETIME now{0x11111111, 0x22222222};
  const std::string time = "\x11\x11\x11\x11\x22\x22\x22\x22";
  const std::string none(8, '\0');
  const auto flags = [](char flag, const std::string& rest) { return std::string{flag, 0, 0, 0} + rest; };
  const std::string tail(188, 'x');
  const struct {
    RawValue value;
    Told isOff;
    std::optional<std::string> off, on;
  } rows[] = {
      {kOn, Told::kNo, flags(3, time), kOnBytes},
      {kOff, Told::kYes, flags(3, time), flags(2, none)},
      {Binary(flags(6, none)), Told::kNo, flags(7, time), flags(6, none)},
      {Binary(flags(9, std::string(8, '\xFF'))), Told::kYes, flags(9, time), flags(8, none)},
      {Binary(flags(0, none) + "z"), Told::kNo, flags(1, time) + "z", flags(0, none) + "z"},
      {Binary(flags(1, none) + tail), Told::kYes, flags(1, time) + tail, flags(0, none) + tail},
      {Binary(""), Told::kUntold, {}, {}},
      {Binary("\x03"), Told::kUntold, {}, {}},
      {Binary(kOffBytes.substr(0, 3)), Told::kUntold, {}, {}},
      {Binary(kOffBytes.substr(0, 11)), Told::kUntold, {}, {}},
      {Dword(3), Told::kUntold, {}, {}},
      {Sz(L"disabled for good"), Told::kUntold, {}, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const RegistryData data = Data(row.value);
    EXPECT_EQ(ReadSwitchValue(data.type, data.bytes).isOff, row.isOff);
    for (const bool off : {true, false}) {
      const auto& wanted = off ? row.off : row.on;
      EXPECT_EQ(WithSwitch(data, off, now), wanted ? std::optional(Data(Binary(*wanted))) : std::nullopt);
    }
  }
  EXPECT_EQ(WithSwitch(std::nullopt, true, now), Data(Binary(flags(3, time))));
  EXPECT_EQ(WithSwitch(std::nullopt, false, now), Data(kOn));
  const SwitchValue off = ReadSwitchValue(REG_BINARY, Data(kOff).bytes);
  EXPECT_EQ(off.since.dwHighDateTime, 0x01d80f1du);
}

}  // namespace
}  // namespace smh::test

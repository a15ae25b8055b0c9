// Whether the colours of the window can be told apart.
#include "hosts/gui/theme.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace smh::test {

namespace {

// Relative luminance and contrast as the web's guidelines for accessible content define them.
double Luminance(COLORREF color) {
  const auto linear = [](int value) {
    const double part = value / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(GetRValue(color)) + 0.7152 * linear(GetGValue(color)) +
         0.0722 * linear(GetBValue(color));
}

double Contrast(const ColorPair& pair, Appearance appearance) {
  const double front = Luminance(ColorOf(pair.front, appearance));
  const double back = Luminance(ColorOf(pair.back, appearance));
  return (std::max(front, back) + 0.05) / (std::min(front, back) + 0.05);
}

TEST(ThemeTest, EveryTextAndPictureStandsOut) {
  for (const Appearance appearance : {Appearance::kLight, Appearance::kDark}) {
    const auto check = [&](std::span<const ColorPair> pairs, double least) {
      for (const ColorPair& pair : pairs) {
        EXPECT_GE(Contrast(pair, appearance), least)
            << static_cast<int>(pair.front) << " on " << static_cast<int>(pair.back) << " in "
            << (appearance == Appearance::kDark ? "dark" : "light");
      }
    };
    check(TextPairs(), 4.5);
    check(PicturePairs(), 3.0);
  }
}

}  // namespace
}  // namespace smh::test

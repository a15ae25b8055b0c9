// What was probably meant by a name that does not exist. Pure functions, for any thread.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace smh {

// How many letters have to be put in, left out, replaced or exchanged with their neighbour to make one text
// of the other, ASCII case ignored. Takes time by the product of both lengths.
std::size_t EditDistance(std::wstring_view a, std::wstring_view b);

// " Did you mean "list"?", with the nearest of `known`; empty when none of them is near.
std::wstring DidYouMean(std::wstring_view given, std::span<const std::wstring> known);

}  // namespace smh

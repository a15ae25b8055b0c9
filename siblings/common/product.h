// The product's names: the caption of message boxes and the levels of the data folder and the settings key.
#pragma once

#include <string_view>

namespace smh {

inline constexpr std::wstring_view kVendorName = L"Quillmark";
inline constexpr std::wstring_view kProductName = L"Startup Manager";

}  // namespace smh

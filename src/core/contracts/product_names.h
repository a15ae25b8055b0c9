// The product's names, for the library's siblings and for its hosts.
#pragma once

#include <string_view>

namespace smh {

// The caption of message boxes and the levels of the data folder and the settings key. Never change them:
// settings and journals of earlier versions lie under these names.
inline constexpr std::wstring_view kVendorName = L"Quillmark";
inline constexpr std::wstring_view kProductName = L"Startup Manager";

}  // namespace smh

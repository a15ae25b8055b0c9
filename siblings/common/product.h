// The product's names: the caption of message boxes and the levels of the data folder and the settings key.
#pragma once

#include <string_view>

namespace smh {

// Never change them: settings and journals of earlier versions lie under these names.
inline constexpr std::wstring_view kVendorName = L"Quillmark";
inline constexpr std::wstring_view kProductName = L"Startup Manager";

}  // namespace smh

#include "hosts/gui/search_text.h"

#include <windows.h>

namespace smh {

std::wstring LowerCase(std::wstring text) {
  CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

}  // namespace smh

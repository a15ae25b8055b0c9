#include "model/rundll_rule.h"

#include "infra/runtime/text.h"

#include <vector>

namespace smh {

namespace {

// Split at blanks; double quotes hold an element together and are not part of it.
std::vector<std::wstring> SplitAtBlanks(std::wstring_view text) {
  std::vector<std::wstring> elements;
  std::wstring element;
  bool quoted = false;
  bool started = false;
  for (const wchar_t unit : text) {
    if (unit == L'"') {
      quoted = !quoted;
      started = true;
    } else if (unit <= L' ' && !quoted) {
      if (started) elements.push_back(std::move(element));
      element.clear();
      started = false;
    } else {
      element += unit;
      started = true;
    }
  }
  if (started) elements.push_back(std::move(element));
  return elements;
}

}  // namespace

bool IsRundll(std::wstring_view shortName) noexcept {
  return SameText(shortName, L"rundll") || SameText(shortName, L"rundll32");
}

std::wstring RundllTarget(std::wstring_view command,
                          const std::function<std::wstring(std::wstring_view)>& existingFile) {
  std::wstring text(command);
  if (const std::size_t comma = text.find(L','); comma != std::wstring::npos) text[comma] = L' ';
  std::vector<std::wstring> elements = SplitAtBlanks(text);
  if (!elements.empty()) elements.erase(elements.begin());
  if (elements.size() >= 2) elements.erase(elements.begin() + 1);
  for (std::size_t i = elements.size(); i > 0; --i) {
    if (std::wstring file = existingFile(elements[i - 1]); !file.empty()) return file;
  }
  return {};
}

}  // namespace smh

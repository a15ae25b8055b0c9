// The kinds of files that the system's dialogs offer.
#pragma once

#include "hosts/common/text.h"

#include <initializer_list>
#include <string>

namespace smh {

struct FileKind {
  const Text& title;
  const wchar_t* pattern;  // "*.exe;*.com"
};

// As OPENFILENAME::lpstrFilter wants them: each part ends with a NUL, and one more stands at the end.
inline std::wstring FileKinds(std::initializer_list<FileKind> kinds) {
  std::wstring filter;
  for (const FileKind& kind : kinds) {
    filter.append(kind.title.Get()).append(1, L'\0').append(kind.pattern).append(1, L'\0');
  }
  return filter;
}

}  // namespace smh

#include "locations/folders/temporary_shortcut.h"

#include "locations/folders/folder_files.h"

#include <windows.h>

namespace smh {

ScopedFile::~ScopedFile() {
  DeleteFileW(path_.c_str());
}

TemporaryShortcut::TemporaryShortcut(const FolderSet& folders, std::wstring_view name,
                                     const ShortcutFields& fields)
    : file_(MakeUniqueFileName(folders.TemporaryFolder() + WithLinkExtension(name))) {
  WriteShortcut(fields, file_.Path());
}

}  // namespace smh

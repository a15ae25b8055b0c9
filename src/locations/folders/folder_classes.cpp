#include "locations/folders/folder_classes.h"

#include <shlobj.h>

namespace smh {

namespace {

constexpr FolderClass kFolderClasses[kFolderClassCount] = {
    {L"TLocationFolderUserRun", sulFolderUser, CSIDL_STARTUP, CSIDL_APPDATA, false},
    {L"TLocationFolderCommonRun", sulFolderCommon, CSIDL_COMMON_STARTUP, CSIDL_COMMON_APPDATA, true},
};

}  // namespace

const FolderClass (&FolderClasses() noexcept)[kFolderClassCount] {
  return kFolderClasses;
}

}  // namespace smh

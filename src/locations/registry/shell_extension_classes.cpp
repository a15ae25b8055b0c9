#include "locations/registry/shell_extension_classes.h"

// A key path and its side key.
#define SMH_HANDLER_LIST(path) path, path L"\\AutorunsDisabled"

namespace smh {

namespace {

// The handlers in the order of the enumeration, then the browser helper objects, which are handlers too.
constexpr HandlerClass kHandlerClasses[kHandlerClassCount] = {
    {L"TLocationRegistryAllRegContextMenuHandlers", sulRegistryAllRegContextMenuHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\*\\shellex\\ContextMenuHandlers")},
    {L"TLocationRegistryAllContextMenuHandlers", sulRegistryAllContextMenuHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\AllFilesystemObjects\\shellex\\ContextMenuHandlers")},
    {L"TLocationRegistryDirectoryContextMenuHandlers", sulRegistryDirectoryContextMenuHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Directory\\shellex\\ContextMenuHandlers")},
    {L"TLocationRegistryFolderContextMenuHandlers", sulRegistryFolderContextMenuHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Folder\\shellex\\ContextMenuHandlers")},
    {L"TLocationRegistryBackgroundContextMenuHandlers", sulRegistryBackgroundContextMenuHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Directory\\Background\\shellex\\ContextMenuHandlers")},
    {L"TLocationRegistryAllRegDragDropHandlers", sulRegistryAllRegDragDropHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\*\\shellex\\DragDropHandlers")},
    {L"TLocationRegistryAllDragDropHandlers", sulRegistryAllDragDropHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\AllFilesystemObjects\\shellex\\DragDropHandlers")},
    {L"TLocationRegistryDirectoryDragDropHandlers", sulRegistryDirectoryDragDropHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Directory\\shellex\\DragDropHandlers")},
    {L"TLocationRegistryFolderDragDropHandlers", sulRegistryFolderDragDropHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Folder\\shellex\\DragDropHandlers")},
    {L"TLocationRegistryBackgroundDragDropHandlers", sulRegistryBackgroundDragDropHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Directory\\Background\\shellex\\DragDropHandlers")},
    {L"TLocationRegistryAllRegColumnHandlers", sulRegistryAllRegColumnHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\*\\shellex\\ColumnHandlers")},
    {L"TLocationRegistryAllColumnHandlers", sulRegistryAllColumnHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\AllFilesystemObjects\\shellex\\ColumnHandlers")},
    {L"TLocationRegistryDirectoryColumnHandlers", sulRegistryDirectoryColumnHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Directory\\shellex\\ColumnHandlers")},
    {L"TLocationRegistryFolderColumnHandlers", sulRegistryFolderColumnHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Folder\\shellex\\ColumnHandlers")},
    {L"TLocationRegistryBackgroundColumnHandlers", sulRegistryBackgroundColumnHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Directory\\Background\\shellex\\ColumnHandlers")},
    {L"TLocationRegistryAllRegPropertyHandlers", sulRegistryAllRegPropertyHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\*\\shellex\\PropertySheetHandlers")},
    {L"TLocationRegistryAllPropertyHandlers", sulRegistryAllPropertyHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\AllFilesystemObjects\\shellex\\PropertySheetHandlers")},
    {L"TLocationRegistryDirectoryPropertyHandlers", sulRegistryDirectoryPropertyHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Directory\\shellex\\PropertySheetHandlers")},
    {L"TLocationRegistryFolderPropertyHandlers", sulRegistryFolderPropertyHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Folder\\shellex\\PropertySheetHandlers")},
    {L"TLocationRegistryBackgroundPropertyHandlers", sulRegistryBackgroundPropertyHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Directory\\Background\\shellex\\PropertySheetHandlers")},
    {L"TLocationRegistryAllRegCopyHandlers", sulRegistryAllRegCopyHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\*\\shellex\\CopyHookHandlers")},
    {L"TLocationRegistryAllCopyHandlers", sulRegistryAllCopyHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\AllFilesystemObjects\\shellex\\CopyHookHandlers")},
    {L"TLocationRegistryDirectoryCopyHandlers", sulRegistryDirectoryCopyHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Directory\\shellex\\CopyHookHandlers")},
    {L"TLocationRegistryFolderCopyHandlers", sulRegistryFolderCopyHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Folder\\shellex\\CopyHookHandlers")},
    {L"TLocationRegistryBackgroundCopyHandlers", sulRegistryBackgroundCopyHandlers,
     SMH_HANDLER_LIST(L"Software\\Classes\\Directory\\Background\\shellex\\CopyHookHandlers")},
    {L"TLocationRegistryIEBrowserObjects", sulRegistryIEBrowserObjects,
     SMH_HANDLER_LIST(L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects")},
};

constexpr ShellExtClass kShellExtClasses[kShellExtClassCount] = {
    {L"TLocationRegistryShellExtApproved", sulRegistryShellExtApproved, RegistryRoot::kLocalMachine,
     SMH_HANDLER_LIST(L"Software\\Microsoft\\Windows\\CurrentVersion\\Shell Extensions\\Approved"), false},
    {L"TLocationRegistryUserIEURLSearchHooks", sulRegistryUserIEURLSearchHooks, RegistryRoot::kCurrentUser,
     SMH_HANDLER_LIST(L"Software\\Microsoft\\Internet Explorer\\URLSearchHooks"), true},
    {L"TLocationRegistryCommonIEURLSearchHooks", sulRegistryCommonIEURLSearchHooks,
     RegistryRoot::kLocalMachine, SMH_HANDLER_LIST(L"Software\\Microsoft\\Internet Explorer\\URLSearchHooks"),
     true},
};

}  // namespace

const HandlerClass (&HandlerClasses() noexcept)[kHandlerClassCount] {
  return kHandlerClasses;
}

const ShellExtClass (&ShellExtClasses() noexcept)[kShellExtClassCount] {
  return kShellExtClasses;
}

}  // namespace smh

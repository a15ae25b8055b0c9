// The rows of location_table.h: the places from which Windows starts programs, in the order of ordinals.
//
//   ROW(ordinal, member of TTypeStartupLocation, class,
//       key path below the root, or folder,
//       family, root, group, title within the group, when it is read, position in the location list)
//
// Once published an ordinal, a member and a class name never change: ordinals cross the module boundary, the
// names stand in logs and scripts. The list is the order of reading; its positions count from 0 without a
// gap. A new location takes the next ordinal and, unless others are to be renumbered, the next position.
#pragma once

// A row keeps its three lines.
// clang-format off
#define SMH_LOCATIONS(ROW)                                                                                  \
  ROW(1, sulFolderUser, TLocationFolderUserRun,                                                             \
      L"shell:startup",                                                                                     \
      kStartupFolder, kUser, L"Startup folders", L"Startup folder, this user", kByDefault, 0)               \
  ROW(2, sulFolderCommon, TLocationFolderCommonRun,                                                         \
      L"shell:common startup",                                                                              \
      kStartupFolder, kMachine, L"Startup folders", L"Startup folder, all users", kByDefault, 1)            \
  ROW(3, sulRegistryRunServices, TLocationRegistryCommonRunServices,                                        \
      L"Software\\Microsoft\\Windows\\CurrentVersion\\RunServices",                                         \
      kRunKey, kMachine, L"Run keys", L"Run services", kOnRequest, 34)                                      \
  ROW(4, sulRegistryRunServicesOnce, TLocationRegistryCommonRunServicesOnce,                                \
      L"Software\\Microsoft\\Windows\\CurrentVersion\\RunServicesOnce",                                     \
      kRunKey, kMachine, L"Run keys", L"Run services once", kOnRequest, 35)                                 \
  ROW(5, sulRegistryUserRun, TLocationRegistryUserRun,                                                      \
      L"Software\\Microsoft\\Windows\\CurrentVersion\\Run",                                                 \
      kRunKey, kUser, L"Run keys", L"Run, this user", kByDefault, 28)                                       \
  ROW(6, sulRegistryUserRunOnce, TLocationRegistryUserRunOnce,                                              \
      L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce",                                             \
      kRunKey, kUser, L"Run keys", L"Run once, this user", kByDefault, 29)                                  \
  ROW(7, sulRegistryUserRunOnceSetup, TLocationRegistryUserRunOnceSetup,                                    \
      L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce\\Setup",                                      \
      kRunKey, kUser, L"Run keys", L"Run once setup, this user", kOnRequest, 32)                            \
  ROW(8, sulRegistryCommonRun, TLocationRegistryCommonRun,                                                  \
      L"Software\\Microsoft\\Windows\\CurrentVersion\\Run",                                                 \
      kRunKey, kMachine, L"Run keys", L"Run, all users", kByDefault, 30)                                    \
  ROW(9, sulRegistryCommonRunOnce, TLocationRegistryCommonRunOnce,                                          \
      L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce",                                             \
      kRunKey, kMachine, L"Run keys", L"Run once, all users", kByDefault, 31)                               \
  ROW(10, sulRegistryCommonRunOnceSetup, TLocationRegistryCommonRunOnceSetup,                               \
      L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce\\Setup",                                      \
      kRunKey, kMachine, L"Run keys", L"Run once setup, all users", kOnRequest, 33)                         \
  ROW(11, sulRegistryAllRegContextMenuHandlers, TLocationRegistryAllRegContextMenuHandlers,                 \
      L"Software\\Classes\\*\\shellex\\ContextMenuHandlers",                                                \
      kHandlers, kBoth, L"Context menu", L"files", kOnRequest, 3)                                           \
  ROW(12, sulRegistryAllContextMenuHandlers, TLocationRegistryAllContextMenuHandlers,                       \
      L"Software\\Classes\\AllFilesystemObjects\\shellex\\ContextMenuHandlers",                             \
      kHandlers, kBoth, L"Context menu", L"files and folders", kOnRequest, 4)                               \
  ROW(13, sulRegistryDirectoryContextMenuHandlers, TLocationRegistryDirectoryContextMenuHandlers,           \
      L"Software\\Classes\\Directory\\shellex\\ContextMenuHandlers",                                        \
      kHandlers, kBoth, L"Context menu", L"folders on disk", kOnRequest, 5)                                 \
  ROW(14, sulRegistryFolderContextMenuHandlers, TLocationRegistryFolderContextMenuHandlers,                 \
      L"Software\\Classes\\Folder\\shellex\\ContextMenuHandlers",                                           \
      kHandlers, kBoth, L"Context menu", L"all folders", kOnRequest, 6)                                     \
  ROW(15, sulRegistryBackgroundContextMenuHandlers, TLocationRegistryBackgroundContextMenuHandlers,         \
      L"Software\\Classes\\Directory\\Background\\shellex\\ContextMenuHandlers",                            \
      kHandlers, kBoth, L"Context menu", L"folder background", kOnRequest, 7)                               \
  ROW(16, sulRegistryAllRegDragDropHandlers, TLocationRegistryAllRegDragDropHandlers,                       \
      L"Software\\Classes\\*\\shellex\\DragDropHandlers",                                                   \
      kHandlers, kBoth, L"Drag and drop", L"files", kOnRequest, 8)                                          \
  ROW(17, sulRegistryAllDragDropHandlers, TLocationRegistryAllDragDropHandlers,                             \
      L"Software\\Classes\\AllFilesystemObjects\\shellex\\DragDropHandlers",                                \
      kHandlers, kBoth, L"Drag and drop", L"files and folders", kOnRequest, 9)                              \
  ROW(18, sulRegistryDirectoryDragDropHandlers, TLocationRegistryDirectoryDragDropHandlers,                 \
      L"Software\\Classes\\Directory\\shellex\\DragDropHandlers",                                           \
      kHandlers, kBoth, L"Drag and drop", L"folders on disk", kOnRequest, 10)                               \
  ROW(19, sulRegistryFolderDragDropHandlers, TLocationRegistryFolderDragDropHandlers,                       \
      L"Software\\Classes\\Folder\\shellex\\DragDropHandlers",                                              \
      kHandlers, kBoth, L"Drag and drop", L"all folders", kOnRequest, 11)                                   \
  ROW(20, sulRegistryBackgroundDragDropHandlers, TLocationRegistryBackgroundDragDropHandlers,               \
      L"Software\\Classes\\Directory\\Background\\shellex\\DragDropHandlers",                               \
      kHandlers, kBoth, L"Drag and drop", L"folder background", kOnRequest, 12)                             \
  ROW(21, sulRegistryAllRegColumnHandlers, TLocationRegistryAllRegColumnHandlers,                           \
      L"Software\\Classes\\*\\shellex\\ColumnHandlers",                                                     \
      kHandlers, kBoth, L"Columns", L"files", kOnRequest, 13)                                               \
  ROW(22, sulRegistryAllColumnHandlers, TLocationRegistryAllColumnHandlers,                                 \
      L"Software\\Classes\\AllFilesystemObjects\\shellex\\ColumnHandlers",                                  \
      kHandlers, kBoth, L"Columns", L"files and folders", kOnRequest, 14)                                   \
  ROW(23, sulRegistryDirectoryColumnHandlers, TLocationRegistryDirectoryColumnHandlers,                     \
      L"Software\\Classes\\Directory\\shellex\\ColumnHandlers",                                             \
      kHandlers, kBoth, L"Columns", L"folders on disk", kOnRequest, 15)                                     \
  ROW(24, sulRegistryFolderColumnHandlers, TLocationRegistryFolderColumnHandlers,                           \
      L"Software\\Classes\\Folder\\shellex\\ColumnHandlers",                                                \
      kHandlers, kBoth, L"Columns", L"all folders", kOnRequest, 16)                                         \
  ROW(25, sulRegistryBackgroundColumnHandlers, TLocationRegistryBackgroundColumnHandlers,                   \
      L"Software\\Classes\\Directory\\Background\\shellex\\ColumnHandlers",                                 \
      kHandlers, kBoth, L"Columns", L"folder background", kOnRequest, 17)                                   \
  ROW(26, sulRegistryAllRegPropertyHandlers, TLocationRegistryAllRegPropertyHandlers,                       \
      L"Software\\Classes\\*\\shellex\\PropertySheetHandlers",                                              \
      kHandlers, kBoth, L"Property pages", L"files", kOnRequest, 18)                                        \
  ROW(27, sulRegistryAllPropertyHandlers, TLocationRegistryAllPropertyHandlers,                             \
      L"Software\\Classes\\AllFilesystemObjects\\shellex\\PropertySheetHandlers",                           \
      kHandlers, kBoth, L"Property pages", L"files and folders", kOnRequest, 19)                            \
  ROW(28, sulRegistryDirectoryPropertyHandlers, TLocationRegistryDirectoryPropertyHandlers,                 \
      L"Software\\Classes\\Directory\\shellex\\PropertySheetHandlers",                                      \
      kHandlers, kBoth, L"Property pages", L"folders on disk", kOnRequest, 20)                              \
  ROW(29, sulRegistryFolderPropertyHandlers, TLocationRegistryFolderPropertyHandlers,                       \
      L"Software\\Classes\\Folder\\shellex\\PropertySheetHandlers",                                         \
      kHandlers, kBoth, L"Property pages", L"all folders", kOnRequest, 21)                                  \
  ROW(30, sulRegistryBackgroundPropertyHandlers, TLocationRegistryBackgroundPropertyHandlers,               \
      L"Software\\Classes\\Directory\\Background\\shellex\\PropertySheetHandlers",                          \
      kHandlers, kBoth, L"Property pages", L"folder background", kOnRequest, 22)                            \
  ROW(31, sulRegistryAllRegCopyHandlers, TLocationRegistryAllRegCopyHandlers,                               \
      L"Software\\Classes\\*\\shellex\\CopyHookHandlers",                                                   \
      kHandlers, kBoth, L"Copy hooks", L"files", kOnRequest, 23)                                            \
  ROW(32, sulRegistryAllCopyHandlers, TLocationRegistryAllCopyHandlers,                                     \
      L"Software\\Classes\\AllFilesystemObjects\\shellex\\CopyHookHandlers",                                \
      kHandlers, kBoth, L"Copy hooks", L"files and folders", kOnRequest, 24)                                \
  ROW(33, sulRegistryDirectoryCopyHandlers, TLocationRegistryDirectoryCopyHandlers,                         \
      L"Software\\Classes\\Directory\\shellex\\CopyHookHandlers",                                           \
      kHandlers, kBoth, L"Copy hooks", L"folders on disk", kOnRequest, 25)                                  \
  ROW(34, sulRegistryFolderCopyHandlers, TLocationRegistryFolderCopyHandlers,                               \
      L"Software\\Classes\\Folder\\shellex\\CopyHookHandlers",                                              \
      kHandlers, kBoth, L"Copy hooks", L"all folders", kOnRequest, 26)                                      \
  ROW(35, sulRegistryBackgroundCopyHandlers, TLocationRegistryBackgroundCopyHandlers,                       \
      L"Software\\Classes\\Directory\\Background\\shellex\\CopyHookHandlers",                               \
      kHandlers, kBoth, L"Copy hooks", L"folder background", kOnRequest, 27)                                \
  ROW(36, sulRegistryShellExtApproved, TLocationRegistryShellExtApproved,                                   \
      L"Software\\Microsoft\\Windows\\CurrentVersion\\Shell Extensions\\Approved",                          \
      kApproved, kMachine, L"Other extensions", L"Approved shell extensions", kOnRequest, 2)                \
  ROW(37, sulRegistryIEBrowserObjects, TLocationRegistryIEBrowserObjects,                                   \
      L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Browser Helper Objects",                    \
      kBrowserObjects, kBoth, L"Other extensions", L"Browser helper objects", kOnRequest, 36)               \
  ROW(38, sulRegistryUserIEURLSearchHooks, TLocationRegistryUserIEURLSearchHooks,                           \
      L"Software\\Microsoft\\Internet Explorer\\URLSearchHooks",                                            \
      kSearchHooks, kUser, L"Other extensions", L"URL search hooks, this user", kOnRequest, 37)             \
  ROW(39, sulRegistryCommonIEURLSearchHooks, TLocationRegistryCommonIEURLSearchHooks,                       \
      L"Software\\Microsoft\\Internet Explorer\\URLSearchHooks",                                            \
      kSearchHooks, kMachine, L"Other extensions", L"URL search hooks, all users", kOnRequest, 38)
// clang-format on

// The four services of basekit.dll: general helpers, the product's names, shell helpers and shell dialogs.
//
// Calls are stdcall; slots are numbered after IUnknown's three. Operations without a result return an
// HRESULT; texts are boundary strings (boundary_string.h). Every service may be called from any thread.
//
// `GetInstance` of the library `kLibrary` answers the identifier `kId` with the one object of the process,
// uncounted: it lives as long as the library is loaded. `kLocator` names the service in messages. So it is
// with the services of the other libraries.
#pragma once

#include "core/contracts/boundary_string.h"

#include <unknwn.h>

#include <string_view>

namespace smh {

// General helpers: folders, version records, texts. When a slot fails its text is empty.
struct IHelper : IUnknown {
  static constexpr wchar_t kId[] = L"{5C9ABD04-59E8-4686-8E32-FF648BB7FDD5}";
  static constexpr wchar_t kLibrary[] = L"basekit.dll";
  static constexpr wchar_t kLocator[] = L"basekit.dll::Helper";
  static constexpr GUID iid = {0x5C9ABD04, 0x59E8, 0x4686, {0x8E, 0x32, 0xFF, 0x64, 0x8B, 0xB7, 0xFD, 0xD5}};

  // 1, 2: folders without a trailing backslash.
  virtual HRESULT STDMETHODCALLTYPE GetWindowsFolder(BoundaryText* folder) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetSystemFolder(BoundaryText* folder) = 0;
  // 3: the file name without folder and extension.
  virtual HRESULT STDMETHODCALLTYPE GetFileNameWithoutExt(const wchar_t* file, BoundaryText* name) = 0;
  // 4: a full path for a text with a folder part; a bare name comes back as it is.
  virtual HRESULT STDMETHODCALLTYPE CanonicalizePath(const wchar_t* text, BoundaryText* path) = 0;
  // 5: separated by ";", each with its dot, in lower case.
  virtual HRESULT STDMETHODCALLTYPE GetExecutableExtensions(BoundaryText* extensions) = 0;
  // 6: the per-user application data folder, without a trailing backslash.
  virtual HRESULT STDMETHODCALLTYPE GetBaseFolder(BoundaryText* folder) = 0;
  // 7: a string of the file's version record ("FileDescription", "CompanyName", ...); empty without one.
  virtual HRESULT STDMETHODCALLTYPE GetVersionString(const wchar_t* file, const wchar_t* name,
                                                     BoundaryText* text) = 0;
  // 8: the fixed file version as "a.b.c.d"; empty without a version record.
  virtual HRESULT STDMETHODCALLTYPE GetVersionNumber(const wchar_t* file, BoundaryText* version) = 0;
  // 9: local time as an OLE date.
  virtual HRESULT STDMETHODCALLTYPE FileTimeToDateTime(const FILETIME* time, double* date) = 0;
  // 10: "file,number" at its last comma, environment variables in the file part expanded; number 0 without
  // one.
  virtual HRESULT STDMETHODCALLTYPE SplitIndirectString(const wchar_t* text, BoundaryText* file,
                                                        std::int32_t* number) = 0;
  // 11: "%name%" of every variable that is set replaced by its value, once; any length.
  virtual HRESULT STDMETHODCALLTYPE ExpandEnvironment(const wchar_t* text, BoundaryText* expanded) = 0;
  // 12: the account's name for people.
  virtual HRESULT STDMETHODCALLTYPE GetCurrentUserText(BoundaryText* text) = 0;
  // 13: whether the calling thread has the rights of the administrators' group now: 0 or 1.
  virtual BOOL STDMETHODCALLTYPE IsUserAdmin() = 0;
  // 14: `count` strings of one version record, as 7 and, for a null name, 8 give them, with one look at the
  // file. When it fails every text is empty.
  virtual HRESULT STDMETHODCALLTYPE GetVersionStrings(const wchar_t* file, const wchar_t* const* names,
                                                      std::uint32_t count, BoundaryText* texts) = 0;
};

// The product's names and version.
struct IGlobals : IUnknown {
  static constexpr wchar_t kId[] = L"{E3B78765-F359-4D65-86A3-5FE2CA92922E}";
  static constexpr wchar_t kLibrary[] = L"basekit.dll";
  static constexpr wchar_t kLocator[] = L"basekit.dll::Globals";
  static constexpr GUID iid = {0xE3B78765, 0xF359, 0x4D65, {0x86, 0xA3, 0x5F, 0xE2, 0xCA, 0x92, 0x92, 0x2E}};

  // 1: E_NOTIMPL.
  virtual HRESULT STDMETHODCALLTYPE Reserved1() = 0;
  // 2: "Quillmark"; 3: "Startup Manager". Together the caption of message boxes and the data folder's levels.
  virtual HRESULT STDMETHODCALLTYPE GetVendorName(BoundaryText* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetProductName(BoundaryText* name) = 0;
  // 4: "a.b.c.d".
  virtual HRESULT STDMETHODCALLTYPE GetProductVersion(BoundaryText* version) = 0;
};

// What the shell knows of folders and commands.
struct IShellHelper : IUnknown {
  // Whether a path is a file: S_OK or S_FALSE; a failure ends the call that asks.
  using FileProbe = HRESULT(STDMETHODCALLTYPE*)(void* context, const wchar_t* path);

  static constexpr wchar_t kId[] = L"{6773075A-4E7A-4292-A6B9-12F24F316C36}";
  static constexpr wchar_t kLibrary[] = L"basekit.dll";
  static constexpr wchar_t kLocator[] = L"basekit.dll::ShellHelper";
  static constexpr GUID iid = {0x6773075A, 0x4E7A, 0x4292, {0xA6, 0xB9, 0x12, 0xF2, 0x4F, 0x31, 0x6C, 0x36}};

  // 1: a special folder by CSIDL, without a trailing backslash; empty when the shell gives none.
  virtual HRESULT STDMETHODCALLTYPE GetSpecialFolder(std::int32_t csidl, std::uint32_t flags,
                                                     BoundaryText* folder) = 0;
  // 2: the program at the start of a command line, as it is named, never with quotes. Looks for files on
  // drives, never on network paths.
  virtual HRESULT STDMETHODCALLTYPE GetProgramPart(const wchar_t* command, BoundaryText* program) = 0;
  // 3: environment references expanded.
  virtual HRESULT STDMETHODCALLTYPE ExpandPath(const wchar_t* text, BoundaryText* path) = 0;
  // 4: a command trimmed, with its environment references expanded.
  virtual HRESULT STDMETHODCALLTYPE NormalizeCommand(const wchar_t* text, BoundaryText* command) = 0;
  // 5: as 2, but `probe` is asked, on the calling thread, with full paths on drives; answers its failure. It
  // is never null, `context` is its own.
  virtual HRESULT STDMETHODCALLTYPE GetProgramPartBy(const wchar_t* command, FileProbe probe, void* context,
                                                     BoundaryText* program) = 0;
};

// What is tried behind a program's name that has no extension, in this order: the first by every way to start
// a program, the others by the shell, when that has found nothing.
inline constexpr std::wstring_view kImpliedExtensions[] = {L".exe", L".com", L".bat", L".cmd"};

// The shell's dialogs.
struct IShellDialogsHelper : IUnknown {
  static constexpr wchar_t kId[] = L"{77E19BE1-1240-496E-9650-2D951D7396DF}";
  static constexpr wchar_t kLibrary[] = L"basekit.dll";
  static constexpr wchar_t kLocator[] = L"basekit.dll::ShellDialogsHelper";
  static constexpr GUID iid = {0x77E19BE1, 0x1240, 0x496E, {0x96, 0x50, 0x2D, 0x95, 0x1D, 0x73, 0x96, 0xDF}};

  // 1: called once, before any other.
  virtual HRESULT STDMETHODCALLTYPE Initialize() = 0;
  // 2: shows the shell's property sheet of a file; text and number choose a page and are empty and 0 here.
  // The thread needs no COM; it may be kept as long as the sheet is open.
  virtual HRESULT STDMETHODCALLTYPE ShowFileDetails(HWND window, const wchar_t* file, const wchar_t* text,
                                                    std::int32_t number) = 0;
};

}  // namespace smh

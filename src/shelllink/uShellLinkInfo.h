// The reader of shell links (.lnk), by Microsoft's published Shell Link Binary File Format. It never resolves
// a link, so a broken or foreign one starts no search and no dialog.
//
// A link is read at once, then only queried. One object serves one thread at a time.
#pragma once

#include "infra/files/file_facts.h"
#include "infra/runtime/exceptions.h"
#include "shelllink/format/link_sections.h"

#include <memory>
#include <string>
#include <string_view>

namespace smh {

// A file that is no link, or a damaged one. The message ends with the file's name.
class TShellLinkInfoException : public Exception {
 public:
  using Exception::Exception;
  const wchar_t* ClassName() const noexcept override { return L"TShellLinkInfoException"; }
};

class TShellLinkInfo {
 public:
  // Without a file; everything is empty.
  TShellLinkInfo() = default;
  // Sets the file name, which loads the file.
  explicit TShellLinkInfo(std::wstring_view fileName) { SetFileName(fileName); }

  const std::wstring& FileName() const noexcept { return fileName_; }
  // Drops what was read and loads the file. A name that equals the present one, ignoring case, does nothing,
  // the empty name only drops. Raises TShellLinkInfoException, EFOpenError when the file cannot be opened,
  // EOSError when it cannot be read; the name is set all the same, and what was read before the fault may be
  // queried.
  void SetFileName(std::wstring_view fileName);
  // Drops what was read and loads bytes of that file, which somebody has read. Raises
  // TShellLinkInfoException, as SetFileName, and std::bad_alloc.
  void SetBytes(std::wstring_view fileName, std::string_view bytes);
  // In bytes; 0 until a file was opened.
  std::uint64_t FileSize() const noexcept { return stamp_.size; }
  // Of the file that was opened; bytes that somebody has read give the size alone.
  const FileStamp& Stamp() const noexcept { return stamp_; }

  // Texts are empty when the link has none.
  //
  // The first that is not empty: the environment block's target, the shell's name of the ID list, the local
  // base path with its suffix, the net name. Raises EOleSysError when the shell has no desktop folder. Only
  // while g_desktopFolder is started (desktop_folder.h).
  std::wstring Target() const;
  std::wstring Arguments() const { return Text(LinkString::kArguments); }
  // The name as stored; "@file,-number" stands for a string resource.
  std::wstring StoredDescription() const { return Text(LinkString::kName); }
  // The same with such a reference resolved.
  std::wstring Description() const;
  std::wstring WorkingDirectory() const { return Text(LinkString::kWorkingDir); }
  // The icon environment block's target, else the icon location.
  std::wstring IconLocation() const;
  std::int32_t IconIndex() const noexcept { return sections_.Header().IconIndex(); }
  std::uint32_t ShowCommand() const noexcept { return sections_.Header().ShowCommand(); }
  std::uint16_t HotKey() const noexcept { return sections_.Header().HotKey(); }

  // All that was read; valid until another file name is set.
  const LinkSections& Sections() const noexcept { return sections_; }
  // The first block of that kind in the order of the file, or null; valid until another file name is set.
  const TExtraData* FindExtraData(TExtraDataKind kind) const noexcept {
    return sections_.FindExtraData(kind);
  }

 private:
  void CheckName() const;
  void SetStamp(const FileStamp& stamp);
  void Load();
  void Parse(std::unique_ptr<std::byte[]> bytes);
  std::wstring Text(LinkString which) const;
  std::wstring ShellTarget() const;

  std::wstring fileName_;
  FileStamp stamp_;
  LinkSections sections_;
};

// Whether the file is a shortcut (".lnk") that this reader refuses: what the shell makes of it is not known.
// Reads it. Raises std::bad_alloc.
bool IsRefusedLink(const std::wstring& file);

}  // namespace smh

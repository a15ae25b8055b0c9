// A file as the entry of a Startup folder: where a change takes it from, and where it puts it.
#pragma once

#include "locations/folders/folder_set.h"
#include "locations/folders/held_file.h"
#include "locations/folders/shortcut_writer.h"
#include "model/entry_steps.h"

#include <memory>
#include <optional>
#include <string>

namespace smh {

// How a load lists the file of an entry, but for whether it may be deleted.
FoundEntry ListFile(const std::wstring& path, bool enabled);

class FileSource final : public EntrySource {
 public:
  // Holds the file; null when there is none. Raises EOSError. `folders` outlives the source.
  static std::unique_ptr<FileSource> Open(const FolderSet& folders, const std::wstring& path, bool recorded);

  // Held until a target takes it over or lets go of it.
  HeldFile& File() noexcept { return *file_; }
  // A shortcut's, as first read; empty for any other file.
  const std::string& Bytes() const noexcept { return bytes_; }

  FoundEntry Found() const override;
  SharedText ShownCommand() const override;
  // Raises for a program file and for a shortcut that is more than a command.
  std::wstring Command() const override;
  void MarkCopies(std::size_t place) const override;
  bool ExtractItem(const LastLook& arrived) override;
  bool PutBack() noexcept override;

 private:
  void DeleteRecorded(const LastLook& arrived);
  FileSource(const FolderSet& folders, std::unique_ptr<HeldFile> file, std::string bytes, bool recorded);

  const FolderSet& folders_;
  const std::unique_ptr<HeldFile> file_;
  // Where it stood.
  const std::wstring path_;
  const std::string bytes_;
  const bool recorded_;
  // It may have been deleted.
  bool isBegun_ = false;
};

// A file that goes to a place in a Startup folder: an entry from elsewhere, or a shortcut that was made for
// it.
class FileTarget final : public EntryTarget {
 public:
  // To `to`, in `folders`, which outlives the target. The source must outlive it, too.
  FileTarget(FileSource& source, std::wstring to, bool enabled, const FolderSet& folders, bool recorded);
  // The shortcut goes when it does not come to stay. Raises EOSError.
  FileTarget(std::unique_ptr<TemporaryShortcut> made, std::wstring to, bool enabled, const FolderSet& folders,
             bool recorded);

  bool InsertItem(const CopyMark& mark) override;
  bool Stands() const override;
  bool TakeBack() noexcept override;
  FoundEntry Found() const override { return ListFile(to_, enabled_); }
  bool CarriesSource() const noexcept override { return made_ == nullptr; }

 private:
  void Move();

  const std::unique_ptr<TemporaryShortcut> made_;
  // Of the shortcut that was made.
  const std::unique_ptr<HeldFile> held_;
  HeldFile& file_;
  const std::wstring from_;
  const std::wstring to_;
  // Of the shortcut that was made.
  const std::string bytes_;
  const bool enabled_;
  const FolderSet& folders_;
  const bool recorded_;
};

// A shortcut's new content, in its place.
class ReplacedFile final : public EntryTarget {
 public:
  // `made` has the content; it gets the old file's attributes and times. `folders` and `source` outlive the
  // target. Raises EOSError.
  ReplacedFile(FileSource& source, std::unique_ptr<TemporaryShortcut> made, const FolderSet& folders,
               bool recorded);

  bool InsertItem(const CopyMark& mark) override;
  bool Stands() const override;
  bool TakeBack() noexcept override;
  FoundEntry Found() const override { return source_.Found(); }

 private:
  void Replace();

  FileSource& source_;
  const std::unique_ptr<TemporaryShortcut> made_;
  const std::wstring file_;
  const std::string bytes_;
  // The old file under another name, while a change that is not recorded may have to be taken back.
  std::unique_ptr<ScopedFile> aside_;
  const FolderSet& folders_;
  const bool recorded_;
};

}  // namespace smh

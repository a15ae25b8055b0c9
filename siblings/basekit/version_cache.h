// Version records of files. A file's strings are asked for one after another, so the last few records are
// kept.
#pragma once

#include "siblings/basekit/version_record.h"
#include "infra/runtime/critical_section.h"

#include <array>
#include <memory>

namespace smh {

// A file's identity at one moment; a changed file has another.
struct FileStamp {
  std::wstring path;
  std::uint64_t size = 0;
  std::uint64_t lastWrite = 0;

  bool operator==(const FileStamp&) const = default;
};

// Any thread may call it.
class VersionCache {
 public:
  // Never null; the record of a file that is missing or has none is empty. `path` may be relative.
  std::shared_ptr<const VersionRecord> Get(const std::wstring& path);

 private:
  struct Entry {
    FileStamp stamp;
    std::shared_ptr<const VersionRecord> record;
  };

  // A leaf, held for look-ups only: files are read outside it.
  CriticalSection lock_;
  std::array<Entry, 4> entries_;
  std::size_t oldest_ = 0;
};

// The version record of a file, read anew.
VersionRecord ReadVersionRecord(const std::wstring& path);

// The module's cache, which lives from start-up to shut-down.
VersionCache& ModuleVersionCache() noexcept;
void StartVersionCache();
void StopVersionCache() noexcept;

}  // namespace smh

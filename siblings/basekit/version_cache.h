// Version records of files. A file's strings are asked for one after another, so the last four records are
// kept.
#pragma once

#include "infra/files/file_facts.h"
#include "infra/runtime/critical_section.h"
#include "infra/runtime/module_global.h"
#include "siblings/basekit/format/version_record.h"

#include <array>
#include <memory>
#include <string>

namespace smh {

// Any thread may call it; two that ask for the same new file may both read it.
class VersionCache {
 public:
  // Never null; the record of a file that is missing or has none is empty. `file` may be relative. The record
  // stays as it is for as long as anybody holds it. Reads the file when it is not among the last ones or has
  // changed since.
  std::shared_ptr<const VersionRecord> Get(const std::wstring& file);

 private:
  struct Entry {
    std::wstring path;
    FileStamp stamp;
    std::shared_ptr<const VersionRecord> record;
  };

  // A leaf, held for look-ups only: files are read outside it.
  CriticalSection lock_;
  std::array<Entry, 4> entries_ SMH_GUARDED_BY(lock_);
  std::size_t oldest_ SMH_GUARDED_BY(lock_) = 0;
};

// The version record of a file, read anew; empty without one. A bare name would be looked for in the system's
// search folders: callers give a full path.
VersionRecord ReadVersionRecord(const std::wstring& path);

// The module's cache, which lives from start-up to shut-down; only then may it be asked for.
extern ModuleGlobal<VersionCache> g_versionCache;

}  // namespace smh

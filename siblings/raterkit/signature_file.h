// The signatures that earlier processes found, in a text file of the product's data folder.
//
// A line is about contents, by their SHA-256, never about a name. It says what no one gains from forging, and
// what nothing that is installed later changes: only kSignatureBroken is written and believed. Every line has
// a sum of its own and begins behind a line end, so that a damaged or half-written one spoils no other. It is
// believed for a day.
//
// Any thread and any process; lines are appended whole. A file of a megabyte is begun anew. What cannot be
// read or written is as if there were none: nothing raises but std::bad_alloc.
#pragma once

#include "infra/runtime/critical_section.h"
#include "siblings/raterkit/signature.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace smh {

class SignatureFile {
 public:
  // `path` is full, an empty one no file; its first `base` units are a place that is taken as it is, with its
  // backslash. Behind that no link is followed. Reads nothing yet.
  SignatureFile(std::wstring path, std::size_t base) : path_(std::move(path)), base_(base) {}

  // `extension` as of FileKey: it decides what kind of signature is looked for. The first call reads the
  // file.
  std::optional<Signature> Find(const Sha256& hash, std::wstring_view extension);
  // Nothing for a state that is not kept here, and for names with control characters.
  void Add(const Sha256& hash, std::wstring_view extension, const Signature& signature);

 private:
  void TakeLine(std::string_view line) SMH_NEEDS_LOCK(lock_);
  std::string Read();
  void Append(std::string_view line);

  const std::wstring path_;
  const std::size_t base_;
  // A leaf but for the network roots'; held while the file is read, by the first call only, not while it is
  // written.
  CriticalSection lock_;
  bool isRead_ SMH_GUARDED_BY(lock_) = false;
  // By hash and extension, as a line says them.
  std::map<std::string, Signature, std::less<>> known_ SMH_GUARDED_BY(lock_);
};

}  // namespace smh

// What is known of a start-up entry beyond its identity. Everything here goes back to its initial value when
// the entry's command changes, so that a swapped command never keeps the old program's facts.
#pragma once

#include "model/version_texts.h"

#include <cstdint>
#include <string>

namespace smh {

// What the command's file is.
enum class TargetKind : std::uint8_t { kOther = 0, kExecutable = 1, kShortcut = 2 };

// Indexes into the image lists; the first three equal the ratings.
inline constexpr int kImageUnknownFile = 3;

// The expensive facts, which a second step reads.
struct ExtendedDetails {
  std::int64_t FileSize = 0;
  // OLE dates in local time; 0 when not read.
  double CreationTime = 0;
  double LastAccessTime = 0;
  double LastWriteTime = 0;
  // At most 80 units.
  SharedText FileTypeName;
  int Rating = 1;
  int ImageIndex = kImageUnknownFile;
};

// A value: an item guards its own by its lock and hands out copies. Texts that are not known are empty.
struct ItemDetails : ExtendedDetails {
  TargetKind Kind = TargetKind::kOther;
  SharedText LinkPath;
  SharedText IconPath;
  int IconIndex = 0;
  bool FileFound = false;
  // Short name of the started file; the duplicate key when an entry is moved in.
  SharedText EntryName;
  SharedText Caption;
  // The command line as stored in the location.
  SharedText Command;
  SharedText Description;
  SharedText WorkingFolder;
  // The hot key of a shortcut entry.
  int LinkShowCommand = 0;
  SharedVersionTexts Version = NoVersionTexts();
  // The file that the command starts.
  SharedText FilePath;
};

}  // namespace smh

// The real Startup folders and their folders of disabled entries, for tests.
#pragma once

#include "tests/support/file_fixture.h"

#include <deque>
#include <functional>
#include <string>

namespace smh::test {

// Called when folders have been renamed, so that those who watch them let go; they cannot be deleted before.
using LetGo = std::function<void()>;

// Empties a folder; what was in it comes back at the end.
class SavedFolder {
 public:
  SavedFolder(const std::wstring& path, LetGo letGo);
  ~SavedFolder();
  SavedFolder(const SavedFolder&) = delete;
  SavedFolder& operator=(const SavedFolder&) = delete;

  // The folder itself goes, until the end.
  void Remove() const;

 private:
  const std::wstring path_;
  const LetGo letGo_;
  const bool existed_;
  const TemporaryFolder contents_;
  const TemporaryFolder rubbish_;
};

// The places of one Startup folder: at the beginning it is empty and the others are missing; at the end all
// is as it was.
class StartupPlaces {
 public:
  enum class Whose { kUser, kCommon };
  explicit StartupPlaces(Whose whose, LetGo letGo = {});

  void RemoveStartup() const { saved_.front().Remove(); }

  // With trailing backslashes.
  const std::wstring startup;
  const std::wstring data;
  const std::wstring disabled;
  const std::wstring temporary;
  // Where two other tools keep what they have disabled.
  const std::wstring autoruns;
  const std::wstring brisko;

 private:
  std::deque<SavedFolder> saved_;
};

}  // namespace smh::test

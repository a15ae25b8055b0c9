// The folders of one Startup-folder location, and what may be carried into them.
//
// Enabled entries lie in the Startup folder, disabled ones in folders of disabled entries: the first of these
// is this system's own and the only one that is written to, the others are where two other tools keep what
// they have disabled. A common Startup folder starts programs for everyone: what goes in there must be
// trusted, as far as the machine keeps owners and rights.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace smh {

class HeldFile;

// Only paths, not changed after construction: any thread may call any operation, and none takes a lock. All
// folders have a trailing backslash.
class FolderSet {
 public:
  // Asks the shell, through its sibling library, for the folders of all users or of the current one; makes
  // nothing. One that the shell does not know is left unknown.
  explicit FolderSet(bool isCommon);

  // Those that entries are found in, the Startup folder first, whether or not they exist. None without a
  // Startup folder.
  std::vector<std::wstring> All() const;
  // Whether it is the Startup folder, ignoring the case of ASCII letters.
  bool IsStartupFolder(std::wstring_view folder) const noexcept;

  // The folder of disabled entries that is written to, without its trailing backslash; empty when unknown.
  std::wstring_view OwnDisabledFolder() const noexcept;

  // Where an enabled or a disabled entry goes; lives as long as this. Made when it does not exist. Raises
  // EOSError when it is unknown or cannot be made.
  //
  // This system's own folders of the common location are made to belong to Administrators, with those between
  // them and the data folder, where others have made them before; EOSError too when that fails or when others
  // may put something else in the place of a folder above.
  const std::wstring& PlaceFor(bool enabled) const;
  // Where a shortcut is made before it goes there, as PlaceFor.
  std::wstring TemporaryFolder() const;

  // For a file that is to be carried to where it starts, while it is held. Raises EOSError when others could
  // have put it where it lies, or may change it; nothing for a user's own folders.
  void RequireTrustedSource(const HeldFile& file) const;
  // Has a file that came in belong to Administrators, with the rights that its folder hands down; nothing for
  // a user's own folders. Raises EOSError.
  void TakeOver(const std::wstring& file) const;

 private:
  void MakeOwnFolder(const std::wstring& folder) const;
  // Whether it matters who owns what: for the common location, where the machine keeps that.
  bool AsksForTrust() const;

  const bool isCommon_;
  // Empty when unknown.
  const std::wstring startupFolder_;
  const std::wstring dataFolder_;
  const std::wstring ownFolder_;
  const std::vector<std::wstring> disabledFolders_;
};

}  // namespace smh

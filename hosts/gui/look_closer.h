// What the user does to find out more of an entry outside the window: the folder of its file, texts for the
// clipboard, a search in the web. For the window's thread.
#pragma once

#include "hosts/gui/texts/closer_texts.h"
#include "hosts/gui/view.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// Where the web is searched for that name, with which a file is meant and not its folder: the one thing that
// leaves the machine.
std::wstring WebSearchAddress(std::wstring_view fileName);

// Works on copies of entries, as EntryCommands does. "The file" is the one that runs: what a program that
// only runs another one is told to run; the program where that cannot be told.
class LookCloser {
 public:
  // `frame` outlives the object, which lives as long as the main window: answers refer to it.
  explicit LookCloser(const Frame& frame) : frame_(frame) {}

  // Whether there is something to look at: the entry starts something.
  static bool CanLookAt(const ItemRecord& item) noexcept { return !item.command.empty(); }

  // Shows the file selected in its folder; the nearest folder that exists for one that is missing.
  void OpenFolder(ItemRecord item) const;
  // Has the user's browser search for the file's name.
  void SearchWeb(ItemRecord item) const;
  // All three replace the clipboard by one line for each entry, without those that have nothing to copy. The
  // files are read behind the window; of two that overlap the one that was begun last is done.
  void CopyCommands(std::vector<ItemRecord> items);
  void CopyPaths(std::vector<ItemRecord> items);
  void CopyHashes(std::vector<ItemRecord> items);

 private:
  struct Copy;
  std::shared_ptr<Copy> Begin(const texts::CopyWords& words, std::vector<ItemRecord> items);
  void Hash(const std::shared_ptr<Copy>& copy) const;
  void Finish(const Copy& copy) const;

  const Frame& frame_;
  unsigned latest_ = 0;  // the number of the last copy
};

}  // namespace smh

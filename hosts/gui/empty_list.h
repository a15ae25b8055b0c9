// Why the list of entries is empty, and what would show some. Pure; any thread.
#pragma once

#include "hosts/gui/entry_rows.h"

#include <string>
#include <vector>

namespace smh {

// What the user asked to see.
struct ListRequest {
  std::wstring place;   // the title of the chosen locations; empty when all are
  std::wstring search;  // as typed
  bool isReading = false;
};

// A command of resource.h, and the label of the button that runs it.
struct EmptyListOffer {
  unsigned command;
  std::wstring label;
};

// Empty for a list that is not. The first offer is the one that Enter in the search box takes.
struct EmptyListNote {
  std::wstring text;  // whole sentences
  std::vector<EmptyListOffer> offers;
};

EmptyListNote NoteOf(const EntryRows& rows, const ListRequest& request);

}  // namespace smh

// How entries look as rows of a list: texts, pictures and colours. For the window's thread.
#pragma once

#include "hosts/gui/chosen_columns.h"
#include "hosts/gui/entry_rows.h"
#include "hosts/gui/virtual_list.h"

namespace smh {

// Reads the rows and columns that are shown, which outlive the list; the handlers of the list are left to its
// owner. Images 0 to 2 of the list are the ratings.
ListSource LookOf(const EntryRows& rows, const ChosenColumns& columns);

}  // namespace smh

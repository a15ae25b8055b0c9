// Which entries a command line means: by ITEMs, by a list of ITEMs in a file, by filters.
#pragma once

#include "hosts/cli/item_filter.h"
#include "hosts/common/item_record.h"
#include "hosts/common/library.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace smh {

// What is asked for. ITEMs and lines are looked for among what the filter leaves; without either all of that
// is meant.
//
// A text is the name of an entry, else its caption, else the beginning of its id (short_id.h); case is
// ignored, but of names that differ in case only the one that is written exactly so is meant. When nothing
// fits, name and caption are tried once more with the text's \uXXXX and \u{X} escapes replaced, and at last
// an ITEM with * (any units) or ? (any one) is a pattern for names and captions.
struct Selector {
  std::vector<std::wstring> items{};
  std::vector<std::wstring> lines{};  // of --from
  ItemFilter filter{};
  // Of several entries that share a caption those in this state are meant, if there are any.
  std::optional<bool> preferred{};

  // What has to be read: for a name all locations.
  ReadScope Scope() const { return items.empty() && lines.empty() ? filter.Scope() : ReadScope::kAll; }
};

// Positions of entries, each once, in the order in which they were asked for.
struct Selection {
  std::vector<std::size_t> positions;
  // Several by a pattern, a file or a filter: more than the user may think of.
  bool isBroad = false;
};

// Raises HostError when a text means nothing, and when one that is no pattern means several: the message
// lists them.
Selection SelectItems(std::span<const ItemRecord> items, const Selector& selector);
// Raises HostError as above for a text that means several of the entries; one that means none yet may.
void RequireUnambiguous(std::span<const ItemRecord> items, const Selector& selector);
// Whether the entry is among what is asked for; for one by itself, as it comes and goes.
bool IsMeant(const Selector& selector, const ItemRecord& item);

// The one entry that `text` means, of one location if there is one; an element of `items`. Raises HostError
// as above, and for a pattern that means several.
const ItemRecord& SelectItem(std::span<const ItemRecord> items, std::wstring_view text,
                             std::optional<std::int32_t> location);

// The lines of a file, or of standard input for "-", without those that are blank: UTF-8, or UTF-16 with a
// byte order mark. Raises HostError.
std::vector<std::wstring> ReadItemLines(const std::wstring& file);

// The entry in the list as it is now, with a reference of the caller's. Takes the list's lock for the search;
// the entry may go right after. Raises HostError when it has gone.
ComPtr<IStartupItem> RequireListedItem(const Library& library, const ItemRecord& item);

}  // namespace smh

// Asking who signed the files of entries, for the output. For the one thread of the program.
#pragma once

#include "hosts/common/item_record.h"

#include <span>
#include <string>

namespace smh {

// Fills ItemRecord::trust of every one. Reads each file that is within reach; several threads share the work.
// Raises HostError when raterkit cannot be loaded.
void VerifyItems(std::span<ItemRecord> items);

// "claimed: not signed", "verified: signed by X"; the rating for an entry that was not asked about, which
// alone does not make it trusted.
std::wstring TrustText(const ItemRecord& item);
// Whether the entry is to be shown as a danger: risky, or with a signature that was broken or withdrawn.
bool IsDangerous(const ItemRecord& item) noexcept;

// Whether this process may change the whole machine.
bool IsElevated() noexcept;
// Asks (RequireConsent) before an entry that was verified is started, where this process may change the whole
// machine and nothing vouches for the file. `isGiven` is --yes.
void RequireStartConsent(const ItemRecord& item, bool isElevated, bool isGiven);

}  // namespace smh

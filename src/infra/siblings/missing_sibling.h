// The end of a process that lacks a sibling library.
#pragma once

#include <string>

namespace smh {

// Where the text goes besides; null for nowhere. It is called with the siblings' lock held, and must not wait
// for a lock. Any thread.
using MissingSiblingReport = void (*)(const std::wstring& text) noexcept;
void SetMissingSiblingReport(MissingSiblingReport report) noexcept;

// Says the text on standard error and to the report; in a box too, when there is a desktop on which somebody
// could close it: a service would wait for ever. Then ends the process with exit code 1.
[[noreturn]] void EndForMissingSibling(const std::wstring& text);

}  // namespace smh

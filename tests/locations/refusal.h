// What a change that was refused says.
#pragma once

#include "model/change_refused.h"

#include <gtest/gtest.h>

#include <string>

namespace smh::test {

// Runs a change that must be refused so.
template <typename Change>
void ExpectRefusal(DWORD code, const std::wstring& text, Change&& change, const std::wstring& what = {}) {
  try {
    change();
    ADD_FAILURE() << "nothing was raised: " << testing::PrintToString(what);
  } catch (const EChangeRefused& refused) {
    EXPECT_EQ(refused.Code(), code) << testing::PrintToString(what);
    EXPECT_EQ(refused.Message(), text) << testing::PrintToString(what);
  }
}

// The same for one that must fail because of another program.
template <typename Change>
void ExpectChangedMeanwhile(Change&& change, const std::wstring& what = {}) {
  ExpectRefusal(ERROR_REVISION_MISMATCH, L"changed meanwhile by another program", change, what);
}

}  // namespace smh::test

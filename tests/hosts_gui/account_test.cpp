#include "account.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

TEST(AccountTest, SomebodyElsesSession) {
  const struct {
    const wchar_t* name;
    const wchar_t* sessionUser;
    bool isForeign;
  } kCases[] = {
      {L"DESK\\ann", L"DESK\\ann", false},  {L"desk\\ANN", L"DESK\\ann", false},
      {L"DESK\\admin", L"DESK\\ann", true}, {L"CORP\\ann", L"DESK\\ann", true},
      {L"ann", L"DESK\\ann", false},        {L"admin", L"DESK\\ann", true},
      {L"DESK\\ann", L"", false},
  };
  for (const auto& each : kCases) {
    Account account;
    account.name = each.name;
    account.sessionUser = each.sessionUser;
    EXPECT_EQ(account.IsForeign(), each.isForeign) << each.name << L" " << each.sessionUser;
  }
}

}  // namespace
}  // namespace smh::test

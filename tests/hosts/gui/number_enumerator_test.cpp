#include "hosts/gui/number_enumerator.h"
#include "infra/runtime/com_ptr.h"

#include <gtest/gtest.h>

#include <array>

namespace smh::test {

namespace {

TEST(NumberEnumeratorTest, HandsOutItsNumbersInOrder) {
  const ComPtr<NumberEnumerator> numbers = MakeComObject<NumberEnumerator>(std::vector<int>{4, 8, 9});
  ComPtr<IEnumVARIANT> all;
  ASSERT_EQ(numbers->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(all.Put())), S_OK);
  std::array<VARIANT, 3> items = {};
  ULONG fetched = 9;
  EXPECT_EQ(all->Next(2, items.data(), &fetched), S_OK);
  EXPECT_EQ(fetched, 2U);
  EXPECT_EQ(items[0].vt, VT_I4);
  EXPECT_EQ(items[0].lVal, 4);
  EXPECT_EQ(items[1].lVal, 8);

  ComPtr<IEnumVARIANT> copy;
  ASSERT_EQ(all->Clone(copy.Put()), S_OK);
  for (IEnumVARIANT* const each : {all.Get(), copy.Get()}) {
    EXPECT_EQ(each->Next(3, items.data(), &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1U);
    EXPECT_EQ(items[0].lVal, 9);
  }
  EXPECT_EQ(all->Next(1, items.data(), nullptr), S_FALSE);
  EXPECT_EQ(all->Reset(), S_OK);
  EXPECT_EQ(all->Skip(2), S_OK);
  EXPECT_EQ(all->Skip(2), S_FALSE);
  EXPECT_EQ(all->Next(3, items.data(), nullptr), E_POINTER) << "a single one alone may come uncounted";
}

}  // namespace
}  // namespace smh::test

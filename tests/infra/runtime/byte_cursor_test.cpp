// Also built natively, under the sanitizers: here a size is 32 bits wide, there 64.
#include "infra/runtime/byte_cursor.h"

#include <gtest/gtest.h>

#include <vector>

namespace smh::test {
namespace {

// 1, 2, 3, ... in a block of the heap of exactly that size.
std::vector<std::byte> Counting(std::size_t size) {
  std::vector<std::byte> bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::byte>(i + 1);
  return bytes;
}

// What is left would do for each of the later reads.
TEST(ByteCursorTest, ErrorSticks) {
  const std::vector<std::byte> bytes = Counting(7);
  const ByteCursor start(bytes);
  ByteCursor tooLong = start;
  EXPECT_EQ(tooLong.U64(), 0u);
  ByteCursor refused = start;
  refused.Fail();
  for (ByteCursor in : {tooLong, refused}) {
    EXPECT_FALSE(in.Ok());
    EXPECT_FALSE(in.AtEnd());
    EXPECT_EQ(in.Remaining(), 0u);
    EXPECT_EQ(in.U8(), 0);
    EXPECT_EQ(in.U16(), 0);
    EXPECT_EQ(in.U32(), 0u);
    EXPECT_EQ(in.Array<2>(), (std::array<std::byte, 2>{}));
    EXPECT_TRUE(in.Take(1).empty());
    EXPECT_TRUE(in.TakeAtMost(1).empty());
    EXPECT_FALSE(in.Sub(0).Ok());
    EXPECT_FALSE(in.SubAtMost(1).Ok());
    in.Align(4);
    in.Skip(0);
    EXPECT_FALSE(in.Ok());
  }
  EXPECT_EQ(ByteCursor(start).U32(), 0x04030201u) << "a copy reads by itself";
}

TEST(ByteCursorTest, CountsMayBeAnything) {
  const std::vector<std::byte> bytes = Counting(6);
  constexpr std::uint64_t kWrap = std::uint64_t{1} << 32;
  for (const std::uint64_t count : {std::uint64_t{6}, kWrap - 1, kWrap, kWrap + 1, ~std::uint64_t{0}}) {
    SCOPED_TRACE(count);
    ByteCursor start(bytes);
    start.Skip(1);
    ByteCursor taken = start;
    EXPECT_TRUE(taken.Take(count).empty());
    EXPECT_FALSE(taken.Ok());
    ByteCursor skipped = start;
    skipped.Skip(count);
    EXPECT_FALSE(skipped.Ok());
    ByteCursor divided = start;
    EXPECT_FALSE(divided.Sub(count).Ok());
    EXPECT_FALSE(divided.Ok());
    EXPECT_EQ(ByteCursor(start).TakeAtMost(count).size(), 5u);
    EXPECT_EQ(ByteCursor(start).SubAtMost(count).Remaining(), 5u);
  }
}

TEST(ByteCursorTest, PartNeverLeavesTheWhole) {
  const std::vector<std::byte> bytes = Counting(9);
  ByteCursor in(bytes);
  in.Skip(1);
  ByteCursor part = in.Sub(6);
  EXPECT_EQ(in.U16(), 0x0908) << "the whole goes on behind the part";
  ByteCursor inner = part.Sub(3);
  EXPECT_EQ(inner.U16(), 0x0302);
  EXPECT_EQ(ByteCursor(inner).TakeAtMost(9).size(), 1u);
  EXPECT_EQ(inner.U16(), 0);
  EXPECT_FALSE(inner.Ok());
  EXPECT_EQ(part.U16(), 0x0605) << "an error in a part is its own";
  EXPECT_EQ(part.U16(), 0);
  EXPECT_FALSE(part.Ok());
  EXPECT_TRUE(in.AtEnd());
}

}  // namespace
}  // namespace smh::test

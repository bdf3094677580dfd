// Buffers: where the bytes live by size, growth into many blocks, copy on
// write between handles, accessors across changes, reading and writing at
// the edges, the file-map fallback and filling from streams.
#include "utils/memory/Buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "utils/memory/BufferImplSimple.h"
#include "utils/memory/Manager.h"
#include "MemoryTestSupport.h"

using namespace BrmUtils::Memory;

namespace {

std::vector<uint8_t> Pattern(std::size_t n, uint8_t seed = 0) {
    std::vector<uint8_t> v(n);
    for (std::size_t i = 0; i < n; ++i) v[i] = uint8_t(i * 31 + seed + (i >> 8));
    return v;
}

std::vector<uint8_t> Contents(const Buffer& b) {
    std::vector<uint8_t> v(b.GetSize());
    uint64_t n = 0;
    EXPECT_TRUE(b.Read(0, v.data(), v.size(), &n));
    EXPECT_EQ(n, v.size());
    return v;
}

std::vector<int> BlockKinds(const Buffer& b) {
    std::vector<int> kinds;
    if (b.GetImpl())
        for (Block* blk : b.GetImpl()->GetBlocks()) kinds.push_back(blk->GetKind());
    return kinds;
}

}  // namespace

TEST(Buffer, GrowsPastTheHeapLimitByAddingBlocks) {
    Buffer b;
    std::vector<uint8_t> expected;
    std::vector<uint8_t> step = Pattern(4096, 3);
    std::size_t lastBlocks = 0;
    for (int i = 0; i < 256; ++i) {  // 4 KiB steps to 1 MiB
        step[0] = uint8_t(i);
        ASSERT_TRUE(b.Append(step.data(), step.size()));
        expected.insert(expected.end(), step.begin(), step.end());
        std::vector<Block*> blocks = b.GetImpl()->GetBlocks();
        ASSERT_GE(blocks.size(), lastBlocks);  // blocks are only ever added
        lastBlocks = blocks.size();
    }
    EXPECT_TRUE(b.GetImpl()->IsKind(kMultiBlockImpl));
    std::vector<int> kinds = BlockKinds(b);
    EXPECT_EQ(kinds.front(), kHeapBlock);  // the small first block was kept
    EXPECT_GT(kinds.size(), 2u);
    EXPECT_TRUE(std::all_of(kinds.begin() + 1, kinds.end(), [](int k) { return k == kVirtualMemBlock; }));
    EXPECT_EQ(Contents(b), expected);
    // Every block but the last in use is full.
    std::vector<Block*> blocks = b.GetImpl()->GetBlocks();
    uint64_t sum = 0;
    bool seenPartial = false;
    for (Block* blk : blocks) {
        EXPECT_FALSE(seenPartial && blk->GetSize() > 0);
        if (blk->GetSize() < blk->GetCapacity()) seenPartial = true;
        sum += blk->GetSize();
    }
    EXPECT_EQ(sum, b.GetSize());
    // One accessor per block covers the whole buffer.
    std::vector<ReadDataAccessor> all;
    ASSERT_TRUE(b.GetReadAccessors(all));
    uint64_t covered = 0;
    for (const ReadDataAccessor& a : all) {
        EXPECT_EQ(std::memcmp(a.GetData(), expected.data() + covered, a.GetLength()), 0);
        covered += a.GetLength();
    }
    EXPECT_EQ(covered, expected.size());
}

TEST(Buffer, AccessorsAcrossShrinkMoveAndClear) {
    Buffer b;
    ASSERT_TRUE(b.SetSize(20000));
    ReadDataAccessor head, tail, past;
    ASSERT_TRUE(b.GetReadAccessor(head, 0, 1000));
    ASSERT_TRUE(b.GetReadAccessor(tail, 15000, 5000));
    EXPECT_FALSE(b.GetReadAccessor(past, 20000, 1));
    ASSERT_TRUE(b.SetSize(16000));
    EXPECT_EQ(head.GetLength(), 1000u);
    EXPECT_EQ(tail.GetLength(), 1000u);
    ASSERT_TRUE(b.SetSize(10000));
    EXPECT_EQ(tail.GetLength(), 0u);
    // Growth that reallocates keeps the accessor on the bytes.
    uint64_t n;
    ASSERT_TRUE(b.Write(0, "hello", 5, &n));
    ASSERT_TRUE(b.SetSize(30000));
    EXPECT_EQ(std::memcmp(head.GetData(), "hello", 5), 0);
    // A moved handle still owns its accessors: writing after a share moves them.
    Buffer moved = std::move(b);
    Buffer other;
    other = moved;  // shared by assignment, then moved back and forth
    Buffer relay;
    relay = std::move(other);
    other = std::move(relay);
    ASSERT_TRUE(moved.Write(0, "HELLO", 5, &n));
    EXPECT_EQ(std::memcmp(head.GetData(), "HELLO", 5), 0);
    other.Clear();
    moved.Clear();
    EXPECT_FALSE(head.IsValid());
    EXPECT_EQ(head.GetLength(), 0u);
    EXPECT_FALSE(tail.IsValid());
}

TEST(Buffer, CopyToNeedsBothRanges) {
    Buffer src, dst;
    std::vector<uint8_t> data = Pattern(200000, 9);
    ASSERT_TRUE(src.Append(data.data(), data.size()));
    ASSERT_TRUE(dst.SetSize(150000));
    struct Case {
        uint64_t offset, count, dstOffset;
        bool ok;
    } const cases[] = {
        {0, 150000, 0, true}, {60000, 90000, 60000, true}, {199000, 1000, 149000, true},
        {199000, 1001, 0, false},  // source too short
        {0, 1001, 149000, false},  // destination too short
        {0, 0, 150000, true},
        {200001, 0, 0, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.offset);
        EXPECT_EQ(src.CopyTo(c.offset, c.count, dst, c.dstOffset), c.ok);
    }
    std::vector<uint8_t> got = Contents(dst);
    EXPECT_EQ(std::memcmp(got.data(), data.data(), 149000), 0);
    EXPECT_EQ(std::memcmp(got.data() + 149000, data.data() + 199000, 1000), 0);
    EXPECT_EQ(dst.GetSize(), 150000u);
    // Into a copy of itself: the copy takes the bytes, the source keeps its own.
    Buffer twin = src;
    ASSERT_TRUE(src.CopyTo(0, 100, twin, 100000));
    EXPECT_EQ(Contents(src), data);
}

TEST(Buffer, FileMapTakesOverWhenMemoryRefuses) {
    MemManager& m = GetMemManager();
    std::size_t mappings = m.GetFileMapCount();
    {
        MemManager::Limits l;
        l.virtualMax = 0;
        LimitsGuard g(l);
        Buffer b;
        std::vector<uint8_t> data = Pattern(3 * 1000 * 1000 + 17, 5);
        ASSERT_TRUE(b.Append(data.data(), data.size()));
        std::vector<int> kinds = BlockKinds(b);
        EXPECT_GE(kinds.size(), 3u);
        EXPECT_TRUE(std::all_of(kinds.begin(), kinds.end(), [](int k) { return k == kFileMapBlock; }));
        EXPECT_EQ(m.GetFileMapCount(), mappings + 1);
        EXPECT_EQ(Contents(b), data);
        // A copy being written cannot take pages either, so the write fails
        // and both keep their bytes.
        Buffer copy = b;
        uint64_t n;
        EXPECT_FALSE(copy.Write(0, "x", 1, &n));
        EXPECT_EQ(Contents(copy), data);
    }
    EXPECT_EQ(m.GetFileMapCount(), mappings);
}

TEST(Buffer, FailedGrowthKeepsWhatWasThere) {
    struct Case {
        const char* name;
        MemManager::Limits limits;
    };
    std::vector<Case> cases(3);
    cases[0].name = "everything refuses";
    cases[0].limits.virtualMax = 0;
    cases[0].limits.refuseFileMap = true;
    cases[1].name = "no room for the file";
    cases[1].limits.virtualMax = 0;
    cases[1].limits.fileMapRoom = 1 << 20;
    cases[2].name = "heap refuses";
    cases[2].limits.heapMax = 100;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Buffer b;
        std::vector<uint8_t> data = Pattern(40000);
        ASSERT_TRUE(b.Append(data.data(), 5000));
        Buffer big;
        ASSERT_TRUE(big.Append(data.data(), data.size()));
        std::size_t bigBlocks = big.GetImpl()->GetBlocks().size();
        LimitsGuard g(c.limits);
        uint64_t target = c.limits.heapMax == 100 ? 20000 : 8u << 20;
        EXPECT_FALSE(b.SetSize(target));
        // Large buffers draw on pages, not on the heap.
        EXPECT_EQ(big.SetSize(big.GetSize() + target), c.limits.heapMax != UINT64_MAX);
        EXPECT_EQ(b.GetSize(), 5000u);
        EXPECT_EQ(Contents(b), std::vector<uint8_t>(data.begin(), data.begin() + 5000));
        EXPECT_EQ(std::memcmp(Contents(big).data(), data.data(), data.size()), 0);
        if (c.limits.heapMax == UINT64_MAX) {
            EXPECT_EQ(big.GetSize(), data.size());
            EXPECT_EQ(big.GetImpl()->GetBlocks().size(), bigBlocks);
        }
    }
}


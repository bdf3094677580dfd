// Blocks: allocation from each source and the fallbacks when a source
// refuses.
#include <gtest/gtest.h>

#include "utils/memory/FileMapBlock.h"
#include "utils/memory/HeapBlock.h"
#include "utils/memory/Manager.h"
#include "MemoryTestSupport.h"
#include "utils/memory/VirtualMemBlock.h"

using namespace BrmUtils::Memory;

TEST(Block, RefusedSourcesGiveLessOrNothing) {
    MemManager& m = GetMemManager();
    {
        // The heap refuses 30000; compaction reports 20000, which is taken.
        MemManager::Limits l;
        l.heapMax = 20000;
        LimitsGuard g(l);
        HeapBlock heap(m);
        EXPECT_EQ(heap.Allocate(30000), 20000u);
        EXPECT_EQ(heap.GetCapacity(), 20000u);
        EXPECT_FALSE(heap.Grow(nullptr, 25000));
        EXPECT_EQ(heap.GetCapacity(), 20000u);
    }
    {
        MemManager::Limits l;
        l.virtualMax = 3 * 65536 + 100;
        LimitsGuard g(l);
        VirtualMemBlock partial(m);
        EXPECT_EQ(partial.Allocate(1 << 20), 3u * 65536);  // the largest free block, in whole units
        l.virtualMax = 1000;  // less than one unit: nothing
        LimitsGuard g2(l);
        VirtualMemBlock none(m);
        EXPECT_EQ(none.Allocate(1 << 20), 0u);
        EXPECT_EQ(none.GetData(true), nullptr);
    }
    {
        MemManager::Limits l;
        l.refuseFileMap = true;
        LimitsGuard g(l);
        EXPECT_EQ(m.AllocFileMapBlock(), nullptr);
    }
}

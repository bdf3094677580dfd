// Blocks: allocation from each source and the fallbacks when a source
// refuses, accessors kept right when memory moves, shrinks or goes, the
// pool of file mappings.
#include <fcntl.h>
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "utils/memory/FileMapBlock.h"
#include "utils/memory/HeapBlock.h"
#include "utils/memory/Manager.h"
#include "MemoryTestSupport.h"
#include "utils/memory/VirtualMemBlock.h"

using namespace BrmUtils::Memory;

namespace {

}  // namespace

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

TEST(Block, FileMapViewsLiveWhileAccessorsDo) {
    Block* b = GetMemManager().AllocFileMapBlock();
    auto* fm = static_cast<FileMapBlock*>(b);
    ASSERT_TRUE(b->SetSize(nullptr, 4096));
    EXPECT_FALSE(fm->HasView());
    {
        WriteDataAccessor w;
        ASSERT_TRUE(b->GetWriteAccessor(w, nullptr, 0, 4096));
        EXPECT_TRUE(fm->HasView());
        std::memcpy(w.GetData(), "slice", 5);
        ReadDataAccessor r;
        ASSERT_TRUE(b->GetReadAccessor(r, nullptr, 0, 5));
        w.Reset();
        EXPECT_TRUE(fm->HasView());  // r still uses it
    }
    EXPECT_FALSE(fm->HasView());
    // A read-only view becomes writable in place when writing is asked for.
    ReadDataAccessor r;
    ASSERT_TRUE(b->GetReadAccessor(r, nullptr, 0, 5));
    EXPECT_EQ(std::memcmp(r.GetData(), "slice", 5), 0);
    WriteDataAccessor w;
    ASSERT_TRUE(b->GetWriteAccessor(w, nullptr, 0, 1));
    w.GetData()[0] = 'S';
    EXPECT_EQ(r.GetData()[0], 'S');
    EXPECT_FALSE(b->SetSize(nullptr, (1 << 20) + 1));
    r.Reset();
    w.Reset();
    b->Release();
}

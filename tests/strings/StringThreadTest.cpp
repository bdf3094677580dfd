// Copies of one block made, changed and released on several threads at once:
// the count must neither leak nor free early (run under the sanitizers).
#include "StringTestSupport.h"

#include <thread>
#include <vector>

using namespace StringTest;
using BrmPlatform::BrmStringW;

TEST(StringThreads, SharedBlocksSurviveConcurrentCopiesAndReleases) {
    const BrmStringW original(L"a block shared by every thread");
    const BrmStringW empty;
    constexpr int kThreads = 4;
    constexpr int kRounds = 20000;
    std::vector<std::thread> threads;
    std::vector<int> mismatches(kThreads, 0);
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < kRounds; ++i) {
                BrmStringW copy = original;
                BrmStringW nil = empty;
                BrmStringW second(copy);
                if (i % 3 == 0)
                    second.AppendChar(L'!');  // unshares on this thread only
                if (copy != original || !nil.IsEmpty())
                    ++mismatches[t];
                BrmStringW moved = std::move(copy);
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    for (int t = 0; t < kThreads; ++t)
        EXPECT_EQ(mismatches[t], 0) << "thread " << t;
    EXPECT_EQ(RefCount(original), 1);
    EXPECT_EQ(original.StdString(), L"a block shared by every thread");
}


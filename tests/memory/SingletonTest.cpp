// Singletons made once under racing threads, finalised and made again;
// locks and intrusive reference counts.
#include "utils/Singleton.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "utils/Lock.h"
#include "utils/RefCounted.h"

using namespace BrmUtils;

namespace {

struct Counted {
    static inline std::atomic<int> made{0};
    static inline std::atomic<int> destroyed{0};
    int payload = 17;
    Counted() {
        ++made;
        // Widen the window in which a second thread could also create.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    ~Counted() { ++destroyed; }
};

struct Other {
    int id = 2;
};

}  // namespace

TEST(Singleton, CreatedOnceUnderRacingThreads) {
    Counted::made = 0;
    std::atomic<bool> go{false};
    std::vector<Counted*> seen(8, nullptr);
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&, i] {
            while (!go.load()) std::this_thread::yield();
            seen[i] = &Singleton<Counted>::Instance();
        });
    }
    go = true;
    for (auto& t : threads) t.join();
    EXPECT_EQ(Counted::made.load(), 1);
    for (Counted* p : seen) EXPECT_EQ(p, seen[0]);
    EXPECT_EQ(seen[0]->payload, 17);
}

TEST(Singleton, DistinctTypesAndFlagsHaveDistinctData) {
    SingletonData& a = SingletonLibrary::GetData(typeid(Other), 0);
    SingletonData& b = SingletonLibrary::GetData(typeid(Other), 1);
    SingletonData& c = SingletonLibrary::GetData(typeid(Counted), 0);
    EXPECT_NE(&a, &b);
    EXPECT_NE(&a, &c);
    EXPECT_EQ(&a, &SingletonLibrary::GetData(typeid(Other), 0));
    EXPECT_NE(static_cast<void*>(&Singleton<Other>::Instance()),
              static_cast<void*>(&Singleton<Other, kSingletonKeepAtExit>::Instance()));
}

TEST(Lock, WriteLockExcludesOthers) {
    struct Shared : Lockable {
        long value = 0;
    } shared;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20000; ++i) {
                WriteLock guard(shared);
                shared.value = shared.value + 1;
            }
        });
    }
    for (auto& t : threads) t.join();
    EXPECT_EQ(shared.value, 80000);

    ThreadLock lock;
    {
        ReadLock r1(lock);
        ReadLock r2(lock);  // shared holders do not block each other
        EXPECT_FALSE(lock.TryLockExclusive());
    }
    EXPECT_TRUE(lock.TryLockExclusive());
    lock.UnlockExclusive();
}

namespace {

struct Node : RefCounted<Node> {
    static inline int alive = 0;
    Node() { ++alive; }
    ~Node() { --alive; }
};

struct CountingTraits {
    static inline int calls = 0;
    static void Destruct(const struct Custom* p);
};
struct Custom : RefCounted<Custom, CountingTraits> {};
void CountingTraits::Destruct(const Custom* p) {
    ++calls;
    delete p;
}

}  // namespace

TEST(RefCounted, LastReleaseDestroys) {
    Node::alive = 0;
    {
        RefPtr<Node> a(new Node);
        EXPECT_EQ(a->GetRefCount(), 1u);
        RefPtr<Node> b = a;
        EXPECT_EQ(a->GetRefCount(), 2u);
        RefPtr<Node> c(std::move(b));
        EXPECT_FALSE(b);
        EXPECT_EQ(a->GetRefCount(), 2u);
        c.Reset();
        EXPECT_TRUE(a->HasOneRef());
        Node* raw = a.Detach();
        EXPECT_EQ(Node::alive, 1);
        RefPtr<Node> adopted = RefPtr<Node>::Adopt(raw);
        EXPECT_EQ(adopted->GetRefCount(), 1u);
    }
    EXPECT_EQ(Node::alive, 0);

    CountingTraits::calls = 0;
    { RefPtr<Custom> x(new Custom); }
    EXPECT_EQ(CountingTraits::calls, 1);
}

// The locking vocabulary: a reader-writer lock (ThreadLock), a base class
// that carries one (Lockable) and scoped guards that hold it exclusively
// (WriteLock) or shared (ReadLock). Used where objects are shared between
// threads: singleton creation and the memory manager's pool of mappings.
#pragma once

#include <shared_mutex>

namespace BrmUtils {

class ThreadLock {
public:
    ThreadLock() = default;
    virtual ~ThreadLock() = default;
    ThreadLock(const ThreadLock&) = delete;
    ThreadLock& operator=(const ThreadLock&) = delete;

    void LockExclusive() { mutex_.lock(); }
    void UnlockExclusive() { mutex_.unlock(); }
    bool TryLockExclusive() { return mutex_.try_lock(); }
    void LockShared() { mutex_.lock_shared(); }
    void UnlockShared() { mutex_.unlock_shared(); }

private:
    std::shared_mutex mutex_;
};

// Derive from this to give an object its own lock; the lock is taken on
// const objects too, so it is mutable.
class Lockable {
public:
    ThreadLock& GetLock() const { return lock_; }

protected:
    Lockable() = default;
    ~Lockable() = default;

private:
    mutable ThreadLock lock_;
};

// Holds a ThreadLock exclusively for its scope.
class WriteLock {
public:
    explicit WriteLock(ThreadLock& lock) : lock_(lock) { lock_.LockExclusive(); }
    explicit WriteLock(const Lockable& owner) : WriteLock(owner.GetLock()) {}
    ~WriteLock() { lock_.UnlockExclusive(); }
    WriteLock(const WriteLock&) = delete;
    WriteLock& operator=(const WriteLock&) = delete;

private:
    ThreadLock& lock_;
};

// Holds a ThreadLock shared for its scope.
class ReadLock {
public:
    explicit ReadLock(ThreadLock& lock) : lock_(lock) { lock_.LockShared(); }
    explicit ReadLock(const Lockable& owner) : ReadLock(owner.GetLock()) {}
    ~ReadLock() { lock_.UnlockShared(); }
    ReadLock(const ReadLock&) = delete;
    ReadLock& operator=(const ReadLock&) = delete;

private:
    ThreadLock& lock_;
};

}  // namespace BrmUtils

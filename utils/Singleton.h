// Process-wide objects: Singleton<T>::Instance() makes the one T on first use
// on any thread (double-checked under an exclusive lock) and destroys it at
// exit, or at unload of the library.
//
// The instance pointer and its lock (SingletonData) live in SingletonLibrary,
// a process-wide registry keyed by the type's name, so that code of T that
// is instantiated in several modules still shares one instance.
#pragma once

#include <atomic>
#include <cstdlib>
#include <typeinfo>

#include "utils/Lock.h"

namespace BrmUtils {

struct SingletonData {
    std::atomic<void*> instance{nullptr};
    ThreadLock lock;
};

enum SingletonFlag {
    kSingletonDestroyAtExit = 0,
    // For objects that others may still use while the program's statics end
    // (the memory manager under buffers kept in statics): never destroyed.
    kSingletonKeepAtExit = 1,
};

class SingletonLibrary {
public:
    // The one SingletonData for the key; made on first request, never freed.
    static SingletonData& GetData(const std::type_info& type, int flag);
};

template <typename T, int Flag = kSingletonDestroyAtExit>
class Singleton {
public:
    static T& Instance() {
        SingletonData& data = Data();
        if (void* p = data.instance.load(std::memory_order_acquire)) return *static_cast<T*>(p);
        WriteLock guard(data.lock);
        if (void* p = data.instance.load(std::memory_order_relaxed)) return *static_cast<T*>(p);
        T* created = new T();
        data.instance.store(created, std::memory_order_release);
        if constexpr (Flag == kSingletonDestroyAtExit) std::atexit(&StaticFinalizer);
        return *created;
    }

    // Whether the instance exists now (it is not made by asking).
    static bool Exists() { return Data().instance.load(std::memory_order_acquire) != nullptr; }

    // Destroys the instance; a later Instance() makes a new one.
    static void StaticFinalizer() {
        SingletonData& data = Data();
        T* old;
        {
            WriteLock guard(data.lock);
            old = static_cast<T*>(data.instance.exchange(nullptr, std::memory_order_acq_rel));
        }
        delete old;
    }

private:
    static SingletonData& Data() {
        static SingletonData& data = SingletonLibrary::GetData(typeid(T), Flag);
        return data;
    }
};

}  // namespace BrmUtils

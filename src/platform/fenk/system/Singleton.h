#pragma once

namespace Fenk {

/// Base of singletons, which are created on first use and destroyed at the end of the process. A class T
/// derives from Singleton<T>, has a private constructor and declares Singleton<T> a friend. The first use may
/// be in any thread; a QObject then lives in that thread.
template <class T>
class Singleton {
public:
    static T* instance() {
        static T object;
        return &object;
    }

    Singleton(const Singleton&) = delete;
    Singleton& operator=(const Singleton&) = delete;

protected:
    Singleton() = default;
    ~Singleton() = default;
};

}  // namespace Fenk

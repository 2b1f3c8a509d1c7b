#pragma once

namespace Fenk {

/// One object per class, made on first use and kept until the process ends. A class T derives from
/// Singleton<T>, keeps its constructor private and names Singleton<T> a friend. The first use may come from
/// any thread, but a QObject then lives in that thread.
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

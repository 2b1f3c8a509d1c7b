#pragma once

#include <QString>
#include <functional>

/// How a request of a client ended: a text, or a fault with a sentence that says what is wrong. The engine
/// makes it, the bus objects turn it into a reply. Nothing is thrown across this border.
struct Answer {
    enum class Fault { None, InvalidArgs, NoSuchBottle, NoSuchProgram, NotSupported, Failed };

    static Answer of(const QString& text = {}) { return {text, Fault::None, {}}; }
    static Answer failure(Fault fault, const QString& sentence) { return {{}, fault, sentence}; }

    bool isGood() const { return fault == Fault::None; }

    QString text;
    Fault fault = Fault::None;
    QString sentence;
};

/// Called exactly once for every request. The client behind it may be gone by then.
using Reply = std::function<void(const Answer&)>;

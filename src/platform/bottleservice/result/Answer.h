#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "bottleservice/result/Reason.h"

/// The result of a request: a text, or a fault with its reason. Requests make it, the bus objects turn it
/// into a reply. No exception crosses this border.
struct Answer {
    enum class Fault { None, InvalidArgs, NoSuchBottle, NoSuchProgram, NotSupported, Busy, Failed };

    static Answer of(const QString& text = {}) { return {text, Fault::None, {}, {}}; }
    /// For methods that answer with a boolean.
    static constexpr char True[] = "true";
    static Answer yesOrNo(bool yes) { return of(yes ? True : "false"); }
    static Answer failure(Fault fault, const Reason& reason) { return {{}, fault, reason, {}}; }
    /// A refusal because these programs run in the bottle. The arguments are a text with all names, then
    /// each.
    static Answer busy(const QStringList& programs) {
        return {{}, Fault::Busy, Reason(Reason::Busy, QStringList(programs.join(", ")) + programs), programs};
    }

    bool isGood() const { return fault == Fault::None; }

    QString text;
    Fault fault = Fault::None;
    Reason reason;
    QStringList running;  ///< names of programs, with Busy
};

/// Called exactly once for every request. The client behind it may be gone by then.
using Reply = std::function<void(const Answer&)>;

// single_instance_peer DIRECTORY TIMEOUT MODE ARGUMENT...
// Claims the key "peer" and says on standard output what happens, one line each: "claiming", then "first",
// "delivered" or "unreachable", and "got ARGUMENTS" when it is the first. MODE "gate" waits for the file
// DIRECTORY/gate to be unlocked before it claims; "late" waits for a byte of standard input before it runs
// its event loop.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QCoreApplication>
#include <cstdio>

#include "fenk/instance/SingleInstance.h"

static void say(const QString& text) {
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList words = app.arguments();
    if (words.size() < 4)
        return 2;
    const QString directory = words.at(1);
    const QString mode = words.at(3);
    if (mode == "gate") {
        const int gate = ::open(qPrintable(directory + "/gate"), O_RDONLY | O_CLOEXEC);
        say("waiting");
        ::flock(gate, LOCK_SH);
    }
    Fenk::SingleInstance instance("peer", directory);
    QObject::connect(&instance, &Fenk::SingleInstance::newProcessInstance, &app,
                     [](qint64, const QStringList& arguments) { say("got " + arguments.join('|')); });
    say("claiming");
    const QStringList arguments = QStringList{"peer"} + words.mid(4);
    switch (instance.claim(arguments, words.at(2).toInt())) {
        case Fenk::SingleInstance::Claim::Delivered:
            say("delivered");
            return 0;
        case Fenk::SingleInstance::Claim::Unreachable:
            say("unreachable");
            return 1;
        case Fenk::SingleInstance::Claim::First:
            say("first");
    }
    char byte = 0;
    if (mode == "late" && ::read(STDIN_FILENO, &byte, 1) != 1)
        return 3;
    return app.exec();
}

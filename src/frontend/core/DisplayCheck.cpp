#include "core/DisplayCheck.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>
#include <QTranslator>
#include <cstdio>

#include "core/CommandLineOptions.h"
#include "core/base/Paths.h"
#include "fenk/log/StandardError.h"

namespace {

QtMessageHandler previous = nullptr;

/// Loads the translations itself: the application has not done so yet.
QString text(const char* source) {
    QTranslator translator;
    translator.load(QLocale::system(), "cellarix", "_", Paths::translationsDir());
    const QString translated = translator.translate("DisplayCheck", source);
    return translated.isEmpty() ? QString::fromUtf8(source) : translated;
}

QString reason(const QString& qtMessage) {
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return qtMessage;
    const QString display = qEnvironmentVariable("DISPLAY");
    const QString wayland = qEnvironmentVariable("WAYLAND_DISPLAY");
    if (display.isEmpty() && wayland.isEmpty())
        return text(
            QT_TRANSLATE_NOOP("DisplayCheck",
                              "Cellarix needs a graphical desktop, and there is none: neither DISPLAY nor "
                              "WAYLAND_DISPLAY is set."));
    return text(QT_TRANSLATE_NOOP("DisplayCheck", "Cellarix cannot open the display \"%1\"."))
        .arg(display.isEmpty() ? wayland : display);
}

[[noreturn]] void leave(int status) {
    std::fflush(nullptr);
    ::_exit(status);
}

void onMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    // Qt's own lines about the display are replaced by the one below.
    if (type != QtFatalMsg) {
        if (qstrncmp(context.category, "qt.qpa", 6) != 0 && previous)
            previous(type, context, message);
        return;
    }
    const QString answer = CommandLineOptions::answer(QCoreApplication::arguments());
    if (!answer.isEmpty()) {
        std::fputs(qPrintable(answer), stdout);
        leave(0);
    }
    Fenk::writeToStandardError(reason(message).toLocal8Bit() + '\n');
    leave(1);
}

}  // namespace

DisplayCheck::DisplayCheck() {
    previous = qInstallMessageHandler(onMessage);
}

DisplayCheck::~DisplayCheck() {
    qInstallMessageHandler(previous);
}

#include "launch/winelog/LogFindings.h"

#include <QCoreApplication>

#include "launch/winelog/LogParseRule.h"
#include "launch/winelog/WineLogParser.h"

namespace {

QString text(const char* source) {
    return QCoreApplication::translate("ExeFileExecutor", source);
}

class Reader {
public:
    Reader(const WineLogParser& log, const LogFindings::Asked& asked) : m_log(log), m_asked(asked) {}

    LogFindings read(int mask) {
        if (m_asked.isFirstRun)
            readEnding(mask);
        if (!m_asked.autoFix && m_log.monoMissing)
            readRuntime();
        for (const QString& component : without(m_log.missingComponents, m_asked.triedComponents))
            add(component);
        if (m_asked.isFirstRun && (mask & LogMissingFont))
            readFonts();
        if (m_asked.isFirstRun)
            showLines();
        if (!m_found.components.isEmpty()) {
            say(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "Try to install components:")));
            say(m_found.components.join('\n'));
        }
        for (const QString& tried : m_asked.triedComponents)
            m_found.components.removeAll(tried);
        return m_found;
    }

private:
    static QStringList without(const QSet<QString>& names, const QStringList& tried) {
        QStringList left;
        for (const QString& name : names) {
            if (!tried.contains(name))
                left.append(name);
        }
        left.sort();
        return left;
    }

    void say(const QString& line, MsgType type = MsgLine) { m_found.messages.append({line, type}); }

    void add(const QString& component) {
        if (!m_found.components.contains(component))
            m_found.components.append(component);
    }

    void readEnding(int mask) {
        m_found.crashed = mask & LogCrash;
        m_found.installFailed = mask & LogSetupApiError;
        if (m_found.crashed)
            say(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "Detech crash in wine logs")), MsgError);
    }

    void readRuntime() {
        if (m_asked.dotnetVersion.isEmpty()) {
            add("mono9");
            return;
        }
        say(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "This application need .NET Framework %1."))
                .arg(m_asked.dotnetVersion));
        add(m_asked.requiredComponent);
    }

    void readFonts() {
        m_found.fonts = without(m_log.missingFonts, m_asked.triedFonts);
        if (!m_found.fonts.isEmpty())
            say(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "This application missing fonts: %1"))
                    .arg(m_found.fonts.join(',')));
    }

    void showLines() {
        showList(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "Parsed wine error logs:")), m_log.parsedLogs);
        showList(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "Other wine error logs:")), m_log.otherLogs);
    }

    void showList(const QString& heading, const QStringList& lines) {
        if (lines.isEmpty())
            return;
        say(heading);
        for (const QString& line : lines)
            say(line, MsgError);
    }

    const WineLogParser& m_log;
    const LogFindings::Asked& m_asked;
    LogFindings m_found;
};

}  // namespace

LogFindings LogFindings::of(const WineLogParser& log, int mask, const Asked& asked) {
    return Reader(log, asked).read(mask);
}

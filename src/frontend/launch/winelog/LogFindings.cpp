#include "launch/winelog/LogFindings.h"

#include <QCoreApplication>

#include "launch/winelog/LogParseRule.h"
#include "launch/winelog/WineLogParser.h"

namespace {

QString text(const char* source) {
    return QCoreApplication::translate("ExeFileExecutor", source);
}

class FindingsBuilder {
public:
    FindingsBuilder(const WineLogParser& log, const LogFindings::Asked& asked) : m_log(log), m_asked(asked) {}

    LogFindings build(int mask) {
        if (m_asked.isFirstRun)
            addCrash(mask);
        if (!m_asked.autoFix && m_log.monoMissing)
            addDotNetRuntime();
        for (const QString& component : without(m_log.missingComponents, m_asked.triedComponents))
            add(component);
        if (m_asked.isFirstRun && (mask & LogMissingFont))
            addFonts();
        if (m_asked.isFirstRun)
            addLogLines();
        if (!m_found.components.isEmpty()) {
            addMessage(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "Try to install components:")));
            addMessage(m_found.components.join('\n'));
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

    void addMessage(const QString& line, MsgType type = MsgLine) { m_found.messages.append({line, type}); }

    void add(const QString& component) {
        if (!m_found.components.contains(component))
            m_found.components.append(component);
    }

    void addCrash(int mask) {
        m_found.crashed = mask & LogCrash;
        m_found.installFailed = mask & LogSetupApiError;
        if (m_found.crashed)
            addMessage(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "Detech crash in wine logs")), MsgError);
    }

    void addDotNetRuntime() {
        if (m_asked.dotnetVersion.isEmpty()) {
            add("mono9");
            return;
        }
        addMessage(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "This application need .NET Framework %1."))
                       .arg(m_asked.dotnetVersion));
        add(m_asked.requiredComponent);
    }

    void addFonts() {
        m_found.fonts = without(m_log.missingFonts, m_asked.triedFonts);
        if (!m_found.fonts.isEmpty())
            addMessage(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "This application missing fonts: %1"))
                           .arg(m_found.fonts.join(',')));
    }

    void addLogLines() {
        showList(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "Parsed wine error logs:")), m_log.parsedLogs);
        showList(text(QT_TRANSLATE_NOOP("ExeFileExecutor", "Other wine error logs:")), m_log.otherLogs);
    }

    void showList(const QString& heading, const QStringList& lines) {
        if (lines.isEmpty())
            return;
        addMessage(heading);
        for (const QString& line : lines)
            addMessage(line, MsgError);
    }

    const WineLogParser& m_log;
    const LogFindings::Asked& m_asked;
    LogFindings m_found;
};

}  // namespace

LogFindings LogFindings::of(const WineLogParser& log, int mask, const Asked& asked) {
    return FindingsBuilder(log, asked).build(mask);
}

#include "core/base/LogScrub.h"

#include <QDir>
#include <QFileInfo>
#include <QSysInfo>

namespace {

constexpr int MinimumNameLength = 3;  // shorter names occur within too many words
constexpr int NetBiosLength = 15;     // of a machine's name in Windows

/// Between the parts of a path. Bounded, so that a log of nothing but slashes takes no longer than others.
const QString Separator = QStringLiteral("(?:[\\\\/]|%(?:25)?(?:2f|5c)){1,8}");

/// Says nothing of anybody, and logs are full of it.
bool isOrdinary(const QString& name) {
    static const QStringList words{"root",    "user",      "users",   "home",    "wine",   "admin",
                                   "guest",   "test",      "linux",   "debian",  "ubuntu", "windows",
                                   "desktop", "localhost", "program", "service", "steam"};
    return name.size() < MinimumNameLength || words.contains(name.toLower());
}

/// All that a letter may be written as. Of those outside of ASCII Wine and JSON write the hexadecimal digits.
QString formsOf(const QString& letter) {
    const auto literally = [](const QString& text) {
        return QRegularExpression::escape(QString::fromLatin1(text.toUtf8()));
    };
    QStringList forms{literally(letter)};
    const QString encoded = QString::fromLatin1(letter.toUtf8().toPercentEncoding());
    if (encoded != letter)
        forms += encoded;
    if (letter.toUtf8().size() > 1) {
        QString escaped;
        for (const QChar unit : letter)
            escaped += QString("\\\\{1,8}u?%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
        forms << literally(letter.toLower()) << literally(letter.toUpper()) << escaped;
    }
    return forms.size() > 1 ? "(?:" + forms.join('|') + ')' : forms.first();
}

QString patternOf(const QString& name) {
    QString pattern;
    for (const uint code : name.toUcs4())
        pattern += formsOf(QString::fromUcs4(&code, 1));
    return pattern;
}

QString patternOfPath(const QString& path) {
    QString pattern;
    for (const QString& part : path.split('/', Qt::SkipEmptyParts))
        pattern += Separator + patternOf(part);
    return pattern;
}

const QString WordEnd = QStringLiteral("(?![A-Za-z0-9_])");

/// The letters of an encoded character or of an escaped line end do not belong to the word behind them.
QString asWord(const QString& pattern) {
    return "(?:(?<![A-Za-z0-9_])|(?<=%[0-9a-f]{2})|(?<=\\\\[nrt]))" + pattern + WordEnd;
}

/// Another's home, as in the log of a bottle that was moved.
QString anyHome() {
    return Separator + "(?-i:home)" + Separator +
           "(?:[^\\x00-\\x20\\\\/\"'<>|:;,*?%()\\[\\]{}]|%(?!2f|5c)[0-9a-f]{2})+";
}

}  // namespace

LogScrub::Identity LogScrub::Identity::current() {
    Identity identity;
    identity.user = qEnvironmentVariable("USER");
    if (identity.user.isEmpty())
        identity.user = QFileInfo("/proc/self").owner();
    identity.host = QSysInfo::machineHostName();
    identity.homes = QStringList{QDir::homePath(), QDir::home().canonicalPath()};
    return identity;
}

LogScrub::LogScrub(const Identity& identity) {
    for (const QString& home : identity.homes) {
        if (home.size() > 1)
            add(patternOfPath(home) + WordEnd, "@home_dir@");
    }
    add(anyHome(), "@home_dir@");
    add("(?<=://)[^\\s/@:\"']{0,256}:[^\\s/@\"']{1,256}(?=@)", "***");
    const QString shortHost = identity.host.section('.', 0, 0);
    if (!isOrdinary(shortHost)) {
        const QStringList names{patternOf(identity.host), patternOf(shortHost),
                                patternOf(shortHost.left(NetBiosLength))};
        add(asWord("(?:" + names.join('|') + ')'), "@host@");
    }
    const QString user = patternOf(identity.user);
    if (!isOrdinary(identity.user)) {
        add(asWord(user), "@user@");
    } else if (!identity.user.isEmpty() && identity.user != "root") {
        add("users" + Separator + "\\K" + user + WordEnd, "@user@");
        add("(?<=user=|username=|logname=)" + user + WordEnd, "@user@");
    }
}

void LogScrub::add(const QString& pattern, const char* replacement) {
    QRegularExpression rule(pattern, QRegularExpression::CaseInsensitiveOption);
    rule.optimize();
    m_rules.append({rule, QString::fromLatin1(replacement)});
}

QByteArray LogScrub::scrubbed(const QByteArray& text) const {
    QString bytes(QLatin1String(text.constData(), text.size()));  // a zero does not end it
    for (const Rule& rule : m_rules)
        bytes.replace(rule.pattern, rule.replacement);
    return bytes.toLatin1();
}

QString LogScrub::scrubbed(const QString& text) const {
    return QString::fromUtf8(scrubbed(text.toUtf8()));
}

#include "core/base/LogScrub.h"

#include <pwd.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QSysInfo>
#include <QTextCodec>

#include "core/base/Utf16Text.h"

namespace {

constexpr int MinimumNameLength = 3;  // shorter names occur within too many words
constexpr int MinimumUnicodeLength = 2;
constexpr int ShortNameLength = 6;  // of what is left of a name before "~1"
constexpr int NetBiosLength = 15;   // of a machine's name in Windows

/// Between the parts of a path. Bounded, so that a log of nothing but slashes takes no longer than others.
const QString Separator = QStringLiteral("(?:[\\\\/]|%(?:25)?(?:2f|5c)){1,8}");

/// Says nothing of anybody, and logs are full of it.
bool isOrdinary(const QString& name) {
    static const QStringList words{
        "root",   "user",    "users",   "home",      "wine",    "admin",   "guest", "test", "linux", "debian",
        "ubuntu", "windows", "desktop", "localhost", "program", "service", "steam", "host", "dir"};
    const bool isAscii = name.toUtf8().size() == name.size();
    return name.size() < (isAscii ? MinimumNameLength : MinimumUnicodeLength) ||
           words.contains(name.toLower());
}

/// All that a letter may be written as. Of those outside of ASCII Wine and JSON write the hexadecimal digits.
QString formsOf(const QString& letter) {
    const auto inBytes = [](const QByteArray& bytes) {
        return QRegularExpression::escape(QString(QLatin1String(bytes.constData(), bytes.size())));
    };
    const auto literally = [inBytes](const QString& text) { return inBytes(text.toUtf8()); };
    QStringList forms{literally(letter)};
    const QString encoded = QString::fromLatin1(letter.toUtf8().toPercentEncoding());
    if (encoded != letter)
        forms += encoded;
    if (letter.toUtf8().size() > 1) {
        QString escaped;
        for (const QChar unit : letter)
            escaped += QString("\\\\{1,8}u?%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
        forms << literally(letter.toLower()) << literally(letter.toUpper()) << escaped;
        for (const char* encoding : {"GB18030", "UTF-16LE", "UTF-16BE", "ISO-8859-1"}) {
            const QTextCodec* codec = QTextCodec::codecForName(encoding);
            QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
            const QByteArray bytes =
                codec ? codec->fromUnicode(letter.constData(), letter.size(), &state) : QByteArray();
            if (!bytes.isEmpty() && state.invalidChars == 0)
                forms += inBytes(bytes);
        }
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

const QString WordEnd = QStringLiteral("(?![A-Za-z0-9])");

/// The letters of an encoded character or of an escaped line end do not belong to the word behind them.
QString asWord(const QString& pattern) {
    return "(?:(?<![A-Za-z0-9])|(?<=%[0-9a-f]{2})|(?<=\\\\[nrt]))" + pattern + WordEnd;
}

/// A part of a path, as long as it can be told from what follows.
const QString AnyName =
    QStringLiteral("(?:[^\\x00-\\x20\\\\/\"'<>|:;,*?%()\\[\\]{}]|%(?!2f|5c)[0-9a-f]{2}){1,64}");

/// Another's home, as in the log of a bottle that was moved.
QString anyHome() {
    return Separator + "(?-i:home)" + Separator + AnyName;
}

/// Another's directory in Windows, whose name may have blanks.
QString anyWindowsUser() {
    return "users" + Separator + "(?!(?:public|default|all users)" + WordEnd + ")\\K" + AnyName +
           "(?:(?: " + AnyName + "){1,3}(?=" + Separator + "))?";
}

/// What stands before the name of a user, and of nothing else.
QString userPlace() {
    return "(?:(?:media|mail)" + Separator +
           "|(?:user|username|logname|login|account)[\"']?\\s{0,2}[=:]\\s{0,2}[\"']?)\\K";
}

/// As the account has it, before the first comma.
QString accountName() {
    const passwd* account = ::getpwuid(::geteuid());
    return account ? QString::fromLocal8Bit(account->pw_gecos).section(',', 0, 0).simplified() : QString();
}

/// In both orders, and as in an address.
QString patternOfRealName(const QString& name) {
    QStringList parts;
    for (const QString& part : name.split(' '))
        parts += patternOf(part);
    const QString pattern = parts.join("(?:[ ._+-]|%20)?");
    return parts.size() < 2 ? pattern : "(?:" + pattern + '|' + parts.last() + ",? " + parts.first() + ')';
}

}  // namespace

LogScrub::Identity LogScrub::Identity::current() {
    static const QString realName = accountName();
    Identity identity;
    identity.user = qEnvironmentVariable("USER");
    if (identity.user.isEmpty())
        identity.user = QFileInfo("/proc/self").owner();
    identity.host = QSysInfo::machineHostName();
    identity.homes = QStringList{QDir::homePath(), QDir::home().canonicalPath()};
    identity.realName = realName;
    return identity;
}

LogScrub::LogScrub(const Identity& identity) {
    addSecrets();
    for (const QString& home : identity.homes) {
        if (home.size() > 1)
            add(patternOfPath(home) + WordEnd, "@home_dir@");
    }
    add(anyHome(), "@home_dir@");
    const QString shortHost = identity.host.section('.', 0, 0);
    if (!isOrdinary(shortHost)) {
        const QStringList names{patternOf(identity.host), patternOf(shortHost),
                                patternOf(shortHost.left(NetBiosLength))};
        add(asWord("(?:" + names.join('|') + ')'), "@host@");
    }
    addUser(identity);
    add(anyWindowsUser(), "@user@");
}

/// Up to the last "@" of an address: a password can have one.
void LogScrub::addSecrets() {
    const QString more = "(?:@[^\\s\"'@]{1,256}+){0,3}(?=@)";
    add("(?<=://)(?:[^\\s\"'/@:]{0,256}+:[^\\s\"'@]{1,256}+" + more + "|[^\\s\"'/@:]{1,256}+(?=@))", "***");
    add("proxy[\"']?\\s{0,2}[=:]\\s{0,2}[\"']?(?!\\w{1,8}://)\\K[^\\s\"'@]{1,256}+" + more, "***");
    add("(?:[?&][\\w.-]{0,32}?(?:key|sig|signature)=|"
        "(?:password|passwd|secret|token)(?:=|[\"']\\s{0,2}:\\s{0,2})[\"']?)\\K[^\\s&\"'<>#]{1,4096}",
        "***");
}

void LogScrub::addUser(const Identity& identity) {
    const QString user = patternOf(identity.user);
    if (!isOrdinary(identity.realName) && identity.realName != identity.user)
        add(asWord(patternOfRealName(identity.realName)), "@user@");
    if (!isOrdinary(identity.user)) {
        const QString shortName = QString(identity.user).remove('.').remove(' ').left(ShortNameLength);
        add(asWord("(?:" + patternOf(shortName) + "~[1-9]|" + user + ')'), "@user@");
    } else if (!identity.user.isEmpty() && identity.user != "root") {
        add(userPlace() + user + WordEnd, "@user@");
        add("(?<![A-Za-z0-9._+@-])" + user + "(?=@)", "@user@");
    }
}

void LogScrub::add(const QString& pattern, const char* replacement) {
    QRegularExpression rule(pattern, QRegularExpression::CaseInsensitiveOption);
    rule.optimize();
    m_rules.append({rule, QString::fromLatin1(replacement)});
}

QByteArray LogScrub::scrubbed(const QByteArray& text) const {
    const QByteArray readable = Utf16Text::toUtf8(text);
    QString bytes(QLatin1String(readable.constData(), readable.size()));  // a zero does not end it
    for (const Rule& rule : m_rules)
        bytes.replace(rule.pattern, rule.replacement);
    return bytes.toLatin1();
}

QString LogScrub::scrubbed(const QString& text) const {
    return QString::fromUtf8(scrubbed(text.toUtf8()));
}

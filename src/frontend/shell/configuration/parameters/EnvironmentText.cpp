#include "shell/configuration/parameters/EnvironmentText.h"

#include <QStringList>

namespace EnvironmentText {

namespace {

class Parser {
public:
    void read(QChar c) {
        switch (m_state) {
            case Between:
            case Name:
                readName(c);
                break;
            case Value:
                readValue(c);
                break;
            case Quoted:
                if (c == '\\')
                    escape();
                else if (c == m_quote)
                    m_state = Value;
                else
                    m_value += c;
                break;
            case Escaped:
                m_value += c;
                m_state = m_afterEscape;
                break;
        }
    }

    Parsed finish() {
        if (m_state == Escaped) {
            m_value += '\\';  // takes nothing, so it stands for itself
            m_state = m_afterEscape;
        }
        m_parsed.openQuote = m_state == Quoted;
        if (m_state == Name)
            leaveOut(m_name);
        else if (m_state != Between)
            endPair();
        return m_parsed;
    }

private:
    enum State { Between, Name, Value, Quoted, Escaped };

    void readName(QChar c) {
        if (c == '=') {
            checkName();
            m_state = Value;
        } else if (!c.isSpace()) {
            m_name += c;
            m_state = Name;
        } else if (m_state == Name) {
            leaveOut(m_name);
            begin();
        }
    }

    void readValue(QChar c) {
        if (c == '\\') {
            escape();
        } else if (c == '\'' || c == '"') {
            m_quote = c;
            m_state = Quoted;
        } else if (c.isSpace()) {
            endPair();
            begin();
        } else {
            m_value += c;
        }
    }

    void checkName() {
        if (!m_name.isEmpty() && m_name.front().isNumber())
            m_parsed.error = true;
        for (const QChar c : qAsConst(m_name)) {
            if (!c.isLetter() && !c.isNumber() && c != '_')
                m_parsed.error = true;
        }
    }

    void escape() {
        m_afterEscape = m_state;
        m_state = Escaped;
    }

    void endPair() {
        if (m_name.isEmpty())
            leaveOut('=' + m_value);  // no process can have a variable without a name
        else
            m_parsed.values.insert(m_name, m_value);
    }

    void leaveOut(const QString& what) {
        if (m_parsed.leftOut.isEmpty())
            m_parsed.leftOut = what;
    }

    void begin() {
        m_name.clear();
        m_value.clear();
        m_state = Between;
    }

    Parsed m_parsed;
    State m_state = Between;
    State m_afterEscape = Value;
    QChar m_quote;
    QString m_name;
    QString m_value;
};

}  // namespace

Parsed parse(const QString& text) {
    Parser parser;
    for (const QChar c : text)
        parser.read(c);
    return parser.finish();
}

QString write(const QJsonObject& envs) {
    QStringList items;
    for (auto it = envs.begin(); it != envs.end(); ++it)
        items << it.key() + '=' + it.value().toString().trimmed();
    return items.join(' ');
}

}  // namespace EnvironmentText

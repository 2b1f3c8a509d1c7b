#pragma once

#include <QMap>
#include <QString>

namespace TestSupport {

/// What a text of environment variables means, found by looking ahead instead of by states.
struct EnvironmentModel {
    QMap<QString, QString> values;
    bool badName = false;

    explicit EnvironmentModel(const QString& text) {
        int at = 0;
        const auto isSpace = [&text](int i) { return text[i].isSpace(); };
        while (at < text.size()) {
            const int begin = at;
            while (at < text.size() && !isSpace(at) && text[at] != '=')
                ++at;
            const QString name = text.mid(begin, at - begin);
            if (at == text.size() || isSpace(at++))
                continue;  // no pair
            QString value;
            for (QChar quote; at < text.size() && !(quote.isNull() && isSpace(at)); ++at) {
                const QChar c = text[at];
                if (c == '\\')
                    value += ++at < text.size() ? text[at] : c;
                else if (!quote.isNull() ? c == quote : c == '\'' || c == '"')
                    quote = quote.isNull() ? c : QChar();
                else
                    value += c;
            }
            badName = badName || hasFault(name);
            if (!name.isEmpty())
                values[name] = value;
        }
    }

    static bool hasFault(const QString& name) {
        bool fault = !name.isEmpty() && name[0].isNumber();
        for (const QChar c : name)
            fault = fault || !(c.isLetterOrNumber() || c == '_');
        return fault;
    }
};

}  // namespace TestSupport

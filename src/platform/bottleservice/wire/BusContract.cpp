#include "bottleservice/wire/BusContract.h"

#include <QDebug>
#include <QFile>
#include <QXmlStreamReader>

BusContract BusContract::load(const QString& resource) {
    QFile file(resource);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(resource));
    const QString text = QString::fromUtf8(file.readAll());
    BusContract contract;
    QXmlStreamReader reader(text);
    QString method;
    QString signal;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        const QString name = attributes.value("name").toString();
        if (reader.name() == "interface") {
            contract.m_interface = name;
        } else if (reader.name() == "method") {
            method = name;
            signal.clear();
            contract.m_methods.insert(method, {});
        } else if (reader.name() == "signal") {
            signal = name;
            method.clear();
            contract.m_signals.insert(signal, {});
        } else if (reader.name() == "arg") {
            const QString type = attributes.value("type").toString();
            if (!signal.isEmpty())
                contract.m_signals[signal] += type;
            else if (attributes.value("direction") == "out")
                contract.m_methods[method].outSignature += type;
            else
                contract.m_methods[method].inSignature += type;
        }
    }
    const int begin = text.indexOf("<interface");
    const QString end("</interface>");
    if (reader.hasError() || contract.m_interface.isEmpty() || begin < 0)
        qFatal("%s is no interface: %s", qPrintable(resource), qPrintable(reader.errorString()));
    contract.m_introspection = text.mid(begin, text.indexOf(end) + end.size() - begin) + '\n';
    return contract;
}

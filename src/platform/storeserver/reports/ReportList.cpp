#include "storeserver/reports/ReportList.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>
#include <ostream>

#include "fenk/system/RegularFile.h"
#include "storeserver/reports/ReportDirectory.h"
#include "storeserver/reports/ScoreBook.h"

namespace StoreServer {

namespace {

constexpr qint64 MaximumRecord = 1024 * 1024;
constexpr int LongestPath = 4096;

struct Column {
    const char* title;
    int width;
};
constexpr std::array<Column, 6> Columns = {{{"TIME", 20},
                                            {"APPLICATION", 24},
                                            {"VERSION", 12},
                                            {"TYPES", 24},
                                            {"DESCRIPTION", 48},
                                            {"CONTACT", 30}}};
using Row = std::array<QString, Columns.size()>;

/// Characters of East Asia and pictures take two columns.
int columnsOf(uint character) {
    static constexpr std::array<std::array<uint, 2>, 9> wide = {{{0x1100, 0x115F},
                                                                 {0x2E80, 0xA4CF},
                                                                 {0xAC00, 0xD7A3},
                                                                 {0xF900, 0xFAFF},
                                                                 {0xFE30, 0xFE6F},
                                                                 {0xFF00, 0xFF60},
                                                                 {0xFFE0, 0xFFE6},
                                                                 {0x1F300, 0x1FAFF},
                                                                 {0x20000, 0x3FFFD}}};
    if (QChar::category(character) == QChar::Mark_NonSpacing)
        return 0;
    for (const auto& [first, last] : wide) {
        if (character >= first && character <= last)
            return 2;
    }
    return 1;
}

int columnsOf(const QString& text) {
    int columns = 0;
    for (const uint character : text.toUcs4())
        columns += columnsOf(character);
    return columns;
}

bool isPlain(uint character) {
    switch (QChar::category(character)) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Other_PrivateUse:
        case QChar::Other_NotAssigned:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            return false;
        default:
            return true;
    }
}

QString line(const Row& row) {
    QString text;
    for (size_t index = 0; index < row.size(); ++index) {
        const QString cell = terminalText(row[index], Columns[index].width);
        text += cell + QString(Columns[index].width - columnsOf(cell) + 2, ' ');
    }
    while (text.endsWith(' '))
        text.chop(1);
    return text + '\n';
}

Row rowOf(const QJsonObject& record) {
    QStringList types;
    for (const QJsonValue& type : record.value("issueTypes").toArray())
        types += type.toString();
    if (record.contains("score"))
        types += QString("score %1").arg(record.value("score").toInt());
    const QString description = record.value("issueDesc").toString().trimmed();
    return {record.value("time").toString(),           record.value("appName").toString(),
            record.value("appVersion").toString(),     types.join(','),
            description.section('\n', 0, 0).trimmed(), record.value("contactInfo").toString()};
}

}  // namespace

QString terminalText(const QString& text, int columns) {
    QVector<uint> kept;
    int used = 0;
    for (const uint character : text.toUcs4()) {
        const uint shown = isPlain(character) ? character : '?';
        used += columnsOf(shown);
        kept.append(shown);
        if (used <= columns)
            continue;
        while (!kept.isEmpty() && used >= columns)
            used -= columnsOf(kept.takeLast());
        kept.append(0x2026);  // the ellipsis
        break;
    }
    return QString::fromUcs4(kept.constData(), kept.size());
}

int listReports(const QString& directory, std::ostream& output) {
    const QDir reports(ReportDirectory::reportsOf(QDir::cleanPath(directory)));
    if (!QFileInfo(reports.path()).isReadable()) {
        output << "There are no reports to read in " << directory.toStdString() << ".\n";
        return 1;
    }
    Row titles;
    for (size_t index = 0; index < titles.size(); ++index)
        titles[index] = Columns[index].title;
    output << line(titles).toStdString();
    for (const QString& id : reports.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QDir report(reports.filePath(id));
        const auto content = Fenk::RegularFile::read(report.filePath("report.json"), MaximumRecord);
        const QJsonObject record = QJsonDocument::fromJson(content.value_or(QByteArray())).object();
        output << line(record.isEmpty() ? Row{id, "cannot be read"} : rowOf(record)).toStdString();
        for (const QString& file : report.entryList(QDir::Files, QDir::Name))
            output << "    " << terminalText(report.filePath(file), LongestPath).toStdString() << '\n';
    }
    const QString scores = QDir(directory).filePath("scores.db");
    if (!QFileInfo::exists(scores))
        return 0;
    VotesByName votes;
    try {
        votes = ScoreBook(scores).votes();
    } catch (const SqlError& error) {
        output << "\nThe scores cannot be read: " << error.what() << ".\n";
        return 1;
    }
    QStringList names = votes.keys();
    names.sort();
    if (!names.isEmpty())
        output << "\nSCORE  DEVICES  APPLICATION\n";
    for (const QString& name : qAsConst(names)) {
        const Votes& of = *votes.find(name);
        output << QString("%1  %2  %3\n")
                      .arg(double(of.sum) / double(of.count), 5, 'f', 1)
                      .arg(of.count, 7)
                      .arg(terminalText(name, LongestPath))
                      .toStdString();
    }
    return 0;
}

}  // namespace StoreServer

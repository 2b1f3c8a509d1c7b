#include "storeserver/reports/ReportList.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>
#include <ostream>

#include "fenk/system/RegularFile.h"
#include "storeserver/reports/PlainText.h"
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
    if (QFileInfo(scores).size() == 0)
        return 0;
    VotesByName votes;
    try {
        votes = ScoreBook::read(scores);
    } catch (const SqlError& error) {
        output << "\nThe scores cannot be read: " << error.what() << ".\n";
        return 1;
    }
    QStringList names = votes.keys();
    names.sort();
    if (!names.isEmpty())
        output << "\nSCORE  DEVICES  APPLICATION\n";
    for (const QString& name : qAsConst(names)) {
        const Tally of = tallyOf(name, name, votes);
        output << QString("%1  %2  %3\n")
                      .arg(double(of.sum) / double(of.count), 5, 'f', 1)
                      .arg(of.count, 7)
                      .arg(terminalText(name, LongestPath))
                      .toStdString();
    }
    return 0;
}

}  // namespace StoreServer

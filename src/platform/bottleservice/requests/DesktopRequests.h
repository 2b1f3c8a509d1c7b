#pragma once

#include <QJsonObject>
#include <QObject>
#include <QStringList>

#include "bottleservice/desktop/MadeFiles.h"
#include "bottleservice/requests/AssociationCollector.h"
#include "bottleservice/result/Answer.h"

class BottleEngine;
class BottleRequests;
class ProgramRequests;

/// What bottles have to do with the user's desktop. Only these requests put anything into menus, onto the
/// desktop or among its MIME types, and they take it back when the program or the bottle goes.
class DesktopRequests : public QObject {
    Q_OBJECT

public:
    /// `command` is the application that entries start, iconScript the path of icon_extractor.py.
    DesktopRequests(BottleEngine* engine, BottleRequests* bottles, ProgramRequests* programs,
                    const QString& command, const QString& iconScript, QObject* parent = nullptr);

    /// Takes back what was made for bottles that are gone.
    void recover();

    void createDesktopEntry(const QString& bottle, const QString& programId, const Reply& reply);

    /// Exports these associations of the bottle and no others.
    void exportFileAssociations(const QString& bottle, const QStringList& keys, const Reply& reply);

    /// Reads what the bottle's programs have registered.
    void collectAssociations(const QString& bottle) { m_collector.collect(bottle); }
    bool isIdle() const { return m_collector.isIdle(); }

private:
    Answer writeEntry(const QString& bottle, const QString& programId, const QStringList& places);
    Answer writeAssociations(const QString& bottle, const QStringList& keys);
    bool rememberExported(const QString& bottle, const QStringList& keys, QString* error);
    Answer keep(const QString& bottle, const QJsonObject& associations);
    void forgetBottle(const QString& bottle);
    void refreshDatabases();

    BottleEngine* m_engine;
    QString m_command;
    MadeFiles m_made;
    AssociationCollector m_collector;
};

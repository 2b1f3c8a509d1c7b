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

/// The requests about the user's desktop. Only these put anything into menus, onto the desktop or among its
/// MIME types, and remove it with the program or the bottle. Owned by BottleService; lives in the main
/// thread.
class DesktopRequests : public QObject {
    Q_OBJECT

public:
    /// `command` is the application that entries start, iconScript the path of icon_extractor.py.
    DesktopRequests(BottleEngine* engine, BottleRequests* bottles, ProgramRequests* programs,
                    const QString& command, const QString& iconScript, QObject* parent = nullptr);

    /// Removes the desktop files of bottles that no longer exist. Call once, before the first request.
    void recover();

    void createDesktopEntry(const QString& bottle, const QString& programId, const Reply& reply);

    /// Exports exactly these associations of the bottle; all others are removed.
    void exportFileAssociations(const QString& bottle, const QStringList& keys, const Reply& reply);

    /// Reads which file types the bottle's programs have registered.
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

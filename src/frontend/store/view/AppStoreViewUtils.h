#pragma once

#include <QJsonObject>
#include <QList>
#include <QMetaType>

#include "backend/ProgramRef.h"
#include "store/records/VeskClientAppInfo.h"

/// What the store's pages share, apart from windows.
namespace AppStoreViewUtils {

/// One application as its card shows it. Its texts come from the net: plain text, never a path.
struct StoreAppModelData {
    OpenAPI::VeskClientAppInfo app;
    QString programId;  ///< of the installed program; empty without one
    QString bottle;     ///< that holds the program

    ProgramRef program() const { return {bottle, programId}; }
};

/// Leaves out and logs records in which nothing is set.
QList<StoreAppModelData> toModelData(const QList<OpenAPI::VeskClientAppInfo>& apps);

enum class ButtonState { Run = 0, Quit = 1, Install = 2, Installing = 3 };
ButtonState buttonState(bool isRunning, bool isInstalled, bool isInstalling);

/// What a compatibility rating means; numbers outside 0 to 5 count as the nearest.
QString scoreText(int score);
/// A server's text on one line and of bounded length.
QString oneLine(const QString& text);

/// The record of an action on the pages, with the given keys besides the common ones.
QJsonObject event(const QDateTime& now, const QJsonObject& machine, const QString& action,
                  const QJsonObject& values);
/// Writes it on another thread, because the machine is asked for its facts.
void writeEvent(const QString& action, const QJsonObject& values);

/// The sort orders of the catalogue, as the combo box lists them.
struct SortField {
    const char* text;  ///< for tr() in the context of AppStoreCatelogWidget
    const char* value;
};
const QList<SortField>& sortFields();

}  // namespace AppStoreViewUtils

Q_DECLARE_METATYPE(AppStoreViewUtils::StoreAppModelData)

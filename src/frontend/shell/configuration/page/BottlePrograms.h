#pragma once

#include <QObject>
#include <QStringList>

#include "shell/configuration/rules/EntryList.h"

/// The programs of one bottle behind the configuration window, kept up to date by the service's signals. GUI
/// thread; waits for nothing.
class BottlePrograms : public QObject {
    Q_OBJECT
public:
    BottlePrograms(const QString& bottle, QObject* parent);

    /// Takes the programs of the bottle's record.
    void setRecord(const QJsonObject& record);

    const EntryList& list() const { return m_list; }
    ProgramRef ref(const ProgramEntry& entry) const { return {m_bottle, entry.id}; }
    /// Without an id when there is no program.
    ProgramRef currentRef() const {
        const ProgramEntry* entry = m_list.currentEntry();
        return {m_bottle, entry ? entry->id : QString()};
    }

    void select(int index);
    /// Selects a program at once, or as soon as the bottle has it.
    void selectId(const QString& id);
    /// The same for the program that is made of this file.
    void selectFile(const QString& file);
    /// Adds those files that are Windows programs; returns how many are.
    int addFiles(const QStringList& files);
    /// Enters a program that the service has found.
    void addFound(const QJsonObject& record);
    /// Takes the program off the bottle's list; its files stay.
    void remove(const QString& id);

    /// Whether the name is that of a Windows program.
    static bool isProgramFile(const QString& file);

Q_SIGNALS:
    /// The list or a record.
    void changed();
    void currentChanged();
    void failed(const QString& errorText);

private:
    void follow();
    void readProgram(const QString& id);
    void onRemoved(const QString& id);
    void lookForWanted();
    void update(const std::function<void()>& change);

    const QString m_bottle;
    QString m_path;  ///< of the bottle
    EntryList m_list;
    QString m_wantedId;
    QString m_wantedFile;
};

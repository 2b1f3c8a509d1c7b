#pragma once

#include <QObject>
#include <QSet>

#include "programs/Program.h"
#include "shell/properties/ProgramSaver.h"

struct BusResult;

/// The details of one program for the property dialog, and the user's changes of them. A change is shown at
/// once and saved in the background; if the last one cannot be saved, the stored values are shown again.
/// Deletes itself after deleteWhenSaved(). GUI thread; waits for nothing there.
class ProgramDetails : public QObject {
    Q_OBJECT
public:
    explicit ProgramDetails(const Program& known);

    /// Asks the service for the bottle's record. Nothing is editable until it has come.
    void load();
    /// Errors are reported in the library from now on.
    void deleteWhenSaved();

    bool isEditable() const { return m_editable; }
    QString name() const { return m_shown.name; }
    QString icon() const { return m_shown.icon; }
    QString path() const { return m_program.path; }
    QString size() const { return readableSize(m_program.size); }
    QString installTime() const { return m_program.createdTime; }

    void rename(const QString& name) { change({name, m_shown.icon}); }
    /// Fails for a file without a picture.
    void useIcon(const QString& file);
    void openFolder();

    /// The service's text; a plain number counts bytes.
    static QString readableSize(const QString& text);
    /// The canonical directory of a program's file; empty if it does not exist.
    static QString folderOf(const QString& bottlePath, const QString& programPath);

Q_SIGNALS:
    void changed();
    void failed(const QString& errorText);

private:
    void onRecord(const BusResult& result);
    void measure();
    void change(const NameAndIcon& values);
    void onSaved(const ProgramSaver::Save& save);
    void reportError(const QString& errorText);
    void deleteIfDone();

    Program m_program;
    NameAndIcon m_shown;
    NameAndIcon m_stored;
    bool m_editable = false;
    int m_iconChoice = 0;   ///< number of the last one
    int m_iconChecks = 0;   ///< that are running
    QSet<int> m_saves;      ///< numbers of own saves that are running or queued
    bool m_isLeft = false;  ///< by its dialog
    bool m_isOpeningFolder = false;
};

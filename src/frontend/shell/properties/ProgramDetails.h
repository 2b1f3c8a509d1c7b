#pragma once

#include <QObject>
#include <QSet>

#include "programs/Program.h"
#include "shell/properties/ProgramSaver.h"

struct BusResult;

/// What is known of one program, and the user's changes on their way to its bottle. Changes are shown at once
/// and saved one after the other; when the last of them could not be saved, what the bottle has comes back.
/// Nothing here waits on the GUI thread.
class ProgramDetails : public QObject {
    Q_OBJECT
public:
    explicit ProgramDetails(const Program& known);

    /// Asks the bottle. Until it has answered nothing can be changed.
    void load();
    /// Goes when nothing is under way any more.
    void leave();

    bool isEditable() const { return m_editable; }
    QString name() const { return m_shown.name; }
    QString icon() const { return m_shown.icon; }
    QString path() const { return m_program.path; }
    QString size() const { return readableSize(m_program.size); }
    QString installTime() const { return m_program.createdTime; }

    void rename(const QString& name) { change({name, m_shown.icon}); }
    /// Refuses a file that holds no picture.
    void useIcon(const QString& file);
    void openFolder();

    /// The service's text; a number alone is one of bytes.
    static QString readableSize(const QString& text);
    /// The canonical directory of a program; empty when there is none.
    static QString folderOf(const QString& bottlePath, const QString& programPath);

Q_SIGNALS:
    void changed();
    void failed(const QString& sentence);

private:
    using Face = ProgramFace;

    void onRecord(const BusResult& result);
    void measure();
    void change(const Face& face);
    void onSaved(const ProgramSaver::Save& save);
    void tell(const QString& sentence);
    void ended();

    Program m_program;
    Face m_shown;
    Face m_stored;
    bool m_editable = false;
    int m_choice = 0;   ///< of an icon, by number
    int m_looks = 0;    ///< into chosen files
    QSet<int> m_saves;  ///< own ones under way, by number
    bool m_leaving = false;
    bool m_opening = false;
};

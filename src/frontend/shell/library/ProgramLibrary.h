#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

#include "programs/Program.h"

struct BusResult;

/// The programs of all bottles, as far as they have been told: the service's list, kept up to date by its
/// signals. Nothing here waits for the service or for a disk. When the service leaves in the middle of a call
/// the list is asked for again after 500 ms, some times; when it refuses, or isn't there, the list has failed
/// until somebody loads it anew or a service comes.
class ProgramLibrary : public QObject {
    Q_OBJECT
public:
    enum class State { Loading, Ready, Failed };

    explicit ProgramLibrary(QObject* parent = nullptr);
    ~ProgramLibrary() override;

    void load();

    State state() const { return m_state; }
    /// Empty unless Ready.
    const QVector<ProgramPtr>& programs() const { return m_programs; }
    ProgramPtr find(const ProgramRef& ref) const;
    /// False for a moment after a list has come, while the readings of its names are looked up.
    bool isSearchable() const { return !m_readingNames; }
    /// In the order of their names.
    QVector<ProgramPtr> search(const QString& keyword);

    // What the service tells. They may come while a list is on its way.
    void programAdded(const ProgramRef& ref, const QString& record);
    void programUpdated(const ProgramRef& ref, const QString& record);
    void programRemoved(const ProgramRef& ref);
    void bottleRemoved(const QString& bottle);
    /// Before the service confirms it.
    void setStars(const ProgramRef& ref, int stars);

Q_SIGNALS:
    void stateChanged();
    void searchable();
    void listChanged();                              ///< other programs, or another order
    void programChanged(const ProgramPtr& program);  ///< the same one, with other contents

private:
    void onReply(const BusResult& result);
    void takeList(const QVector<ProgramPtr>& programs);
    void setState(State state);
    /// What a search walks through, in the order of the names.
    struct Entry {
        ProgramPtr program;
        NameSearch::Name name;
    };
    struct Index {
        QVector<Entry> entries;
        QHash<QString, NameSearch::Name> names;
    };
    static Index makeIndex(const QVector<ProgramPtr>& programs, QHash<QString, NameSearch::Name> names);
    void readNames();
    int rowOf(const ProgramRef& ref) const;
    void put(const ProgramRef& ref, const QJsonObject& record);
    /// Now, and once more on top of a list that was made before it.
    void apply(const std::function<void()>& change);
    void changed();

    State m_state = State::Loading;
    bool m_asking = false;  ///< from the call until the list is taken
    int m_quietRetries = 0;
    QTimer m_retry;
    QVector<ProgramPtr> m_programs;
    Index m_index;
    bool m_indexValid = false;
    bool m_readingNames = false;  ///< of the first list
    QVector<std::function<void()>> m_missed;
};

#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

#include "programs/Program.h"

struct BusResult;

/// The programs of all bottles: the service's list, kept up to date by its signals. Owned by AppLocalView;
/// GUI thread; waits for neither service nor disk. If the service leaves the bus during a call, the call is
/// repeated after 500 ms, at most five times. If the service refuses or is absent, the state is Failed until
/// load() is called or a service appears.
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
    /// False from the arrival of the first list until its names have been indexed in the background.
    bool isSearchable() const { return !m_isIndexing; }
    /// In the order of the names' code points.
    QVector<ProgramPtr> search(const QString& keyword);

    // Changes that the service reports, also while a list is being loaded.
    void programAdded(const ProgramRef& ref, const QString& record);
    /// Ignores a program that is not in the list.
    void programUpdated(const ProgramRef& ref, const QString& record);
    void programRemoved(const ProgramRef& ref);
    void bottleRemoved(const QString& bottle);
    /// Shows the stars before the service has stored them.
    void setStars(const ProgramRef& ref, int stars);

Q_SIGNALS:
    void stateChanged();
    void searchable();
    void listChanged();                              ///< programs came, went or changed places
    void programChanged(const ProgramPtr& program);  ///< its contents changed

private:
    void onReply(const BusResult& result);
    void setList(const QVector<ProgramPtr>& programs);
    void setState(State state);
    struct Entry {
        ProgramPtr program;
        NameSearch::Name name;
    };
    struct Index {
        QVector<Entry> entries;                  ///< in the order of the names
        QHash<QString, NameSearch::Name> names;  ///< kept when programs change: expensive to make
    };
    static Index makeIndex(const QVector<ProgramPtr>& programs, QHash<QString, NameSearch::Name> names);
    void buildIndex();
    int rowOf(const ProgramRef& ref) const;
    void insertOrUpdate(const ProgramRef& ref, const QJsonObject& record);
    /// Makes the change now and, while a list is being loaded, once more on top of that list.
    void apply(const std::function<void()>& change);
    void changed();

    State m_state = State::Loading;
    bool m_isLoading = false;  ///< from the call until setList()
    int m_retries = 0;
    QTimer m_retry;
    QVector<ProgramPtr> m_programs;
    Index m_index;
    bool m_indexValid = false;
    bool m_isIndexing = false;  ///< the first list
    QVector<std::function<void()>> m_changesWhileLoading;
};

#pragma once

#include <QJsonObject>
#include <QObject>

#include "backend/ServiceCalls.h"

/// Keeps a table equal to a list of the background service, a JSON object. An answer that is older than a
/// change on its way, or than another question, is dropped, and the list is asked for again; so it is after
/// a refused change. Changes hold a PendingWork until they are done. GUI thread; waits for nothing.
class TableSync : public QObject {
    Q_OBJECT
public:
    using Handler = ServiceCalls::Handler;
    /// Calls the service; the arguments are those of ServiceCalls::watch().
    using Call = std::function<void(QObject* context, const Handler& handler)>;

    /// `method` is the name of the call `list`, for the log.
    TableSync(const QString& method, QObject* parent);

    /// The call that answers with the list.
    void setList(const Call& list) { m_list = list; }
    /// Ends in listed() or failed(). False when changes are on their way: the list is asked for after them.
    bool load();
    /// Sends a change of the row `name`. `what` is for the log; a refusal of an idle change, which the
    /// service did not have to do, is only logged.
    void change(const QString& name, const char* what, const Call& call, bool isIdle = false);

Q_SIGNALS:
    void listed(const QJsonObject& list);
    void failed(const QString& errorText);
    /// A change was not done; for the user. Once for changes that are on their way together.
    void refused(const QString& errorText);

private:
    void onListed(const BusResult& result);
    void onChanged(const QString& name, const BusResult& result, bool isIdle);

    const QString m_method;
    Call m_list;
    int m_loads = 0;
    int m_pending = 0;         ///< changes on their way
    bool m_isLoading = false;  ///< load() has not ended
    bool m_isStale = false;    ///< to be asked for when the changes are done
    bool m_hasRefused = false;
};

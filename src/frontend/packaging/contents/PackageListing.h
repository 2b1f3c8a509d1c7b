#pragma once

#include <QJsonObject>
#include <QObject>
#include <QProcess>
#include <QTimer>

#include "packaging/contents/PackageSummary.h"
#include "packaging/driver/PackagingFailure.h"

/// Asks the packing script what would go into a package, for choices that are not saved yet. Choices that
/// change in quick succession are asked for once. GUI thread; does not wait for the script, which is killed
/// when its answer is not wanted any more.
class PackageListing : public QObject {
    Q_OBJECT

public:
    enum class State { Idle, Running, Listed, Failed, Cancelled };

    static constexpr int DelayMs = 300;
    static constexpr int MaximumBytes = 16 * 1024 * 1024;  ///< of the answer

    explicit PackageListing(QObject* parent = nullptr);
    ~PackageListing() override { drop(); }

    /// `programs` is the object of pkgcfg/pkgsrc.json; nothing is asked for while it is empty. After a change
    /// of the name alone the files are not listed again, whatever became of the listing.
    void want(const QString& bottle, const QString& packageName, const QJsonObject& programs);
    void cancel();
    void retry();

    State state() const { return m_state; }
    /// The last one, also while another is on its way.
    const PackageSummary& summary() const { return m_summary; }
    bool hasSummary() const { return m_hasSummary; }
    QString packageName() const { return m_packageName; }  ///< that the state belongs to
    QString errorText() const { return m_errorText; }      ///< in the user's language where it is known

Q_SIGNALS:
    void changed();

private:
    void askForName();
    void start();
    void drop();
    void end(bool hasSucceeded);
    void setState(State state);

    QString m_bottle;
    QString m_packageName;
    QString m_askedName;
    QJsonObject m_programs;
    QTimer m_delay;
    QProcess* m_process = nullptr;
    QByteArray m_output;
    PackageSummary m_summary;
    bool m_hasSummary = false;
    bool m_isNameOnly = false;  ///< what the script is asked for
    QString m_errorText;
    State m_state = State::Idle;
};

#pragma once

#include <functional>

#include "backend/BusResult.h"
#include "backend/OfflineDependency.h"
#include "fenk/window/Dialog.h"

class OfflineComponentsListView;
class OfflineComponentsModel;
class QHBoxLayout;
class QPushButton;
class QStackedWidget;

namespace Fenk {
class Label;
class Spinner;
}  // namespace Fenk

/// Base of the dialogs that export and import components of a bottle: the table, the two buttons, and the
/// progress of the work. The work is done in the service: closing the dialog does not stop it, and a dialog
/// that is opened while it is under way shows it. Derived classes say what can be chosen and start the work.
class OfflineComponentsDialog : public Fenk::Dialog {
    Q_OBJECT
protected:
    using Transfer = OfflineDependency::Transfer;

    struct Words {
        QString title;
        QString start;  ///< on the main button
        QString end;    ///< on the same when all is done
    };
    OfflineComponentsDialog(Transfer transfer, const Words& words, const QString& bottle, QWidget* parent);

    /// Shows the work that is under way in the service, or lets the user choose. Call at the end of the
    /// constructor, and again to retry.
    void attach();
    /// No work is under way: shows what can be chosen.
    virtual void offer() = 0;
    /// Starts the work for the ticked components.
    virtual void start(const QStringList& names) = 0;
    /// All is done.
    virtual void onDone() {}

    const QString& bottle() const { return m_bottle; }

    void showWaiting();
    /// Replaces the table by a page, which the dialog takes over.
    void showPage(QWidget* page);
    /// What happened in a sentence, with a button to try again.
    void showFailure(const BusResult& result, const std::function<void()>& retry);
    void showComponents(const QStringList& names, bool areChecked);
    /// A sentence below the table; hidden when empty.
    void setNote(const QString& text, bool isFailure);
    /// Beside the title of the table, while the user chooses.
    void setTitleButton(QPushButton* button);

    /// The request to start has to wait for something else; nothing can be chosen meanwhile.
    void waitForStart();
    /// The request to start these was sent, and was answered.
    void begun(const QStringList& names);
    void onAnswer(const BusResult& result);

    /// Before the request to start is answered, hides the dialog; it comes back to tell a refusal.
    void reject() override;
    void closeEvent(QCloseEvent* event) override;

private:
    enum class Phase { Loading, Choosing, Waiting, Running, Done };

    QWidget* makeTable();
    void setPhase(Phase phase);
    void updateMainButton();
    void askStates(const ServiceCalls::Handler& handler);
    void onMainClicked();
    void stop();
    void onTicked(const QString& name);
    void reattach(const QJsonObject& states);
    void failUnknown(const QJsonObject& states);
    void showStates(const QJsonObject& states);
    void onProgress(const QString& type, const QJsonObject& info);
    void onServiceLost();
    void endIfDone();

    Transfer m_transfer;
    Words m_words;
    QString m_bottle;
    Phase m_phase = Phase::Loading;
    OfflineComponentsModel* m_model;
    OfflineComponentsListView* m_list;
    QStackedWidget* m_pages;
    QWidget* m_waiting;
    QHBoxLayout* m_titleRow;
    QWidget* m_table;
    QWidget* m_page = nullptr;  ///< of showPage()
    QPushButton* m_titleButton = nullptr;
    Fenk::Spinner* m_spinner;
    Fenk::Label* m_note;
    QStringList m_asked;              ///< for which the work was requested
    int m_questions = 0;              ///< about needed components that are not answered
    bool m_isUnanswered = false;      ///< the request to start
    bool m_closesAfterwards = false;  ///< as soon as that is answered well
    int m_close = 0;                  ///< indexes of the buttons
    int m_main = 0;
    int m_stop = 0;
};

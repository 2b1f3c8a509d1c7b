#pragma once

#include <QVector>
#include <QWidget>

#include "feedback/client/FeedBackApi.h"

class QCheckBox;
class QGridLayout;
class QPushButton;

namespace Fenk {
class Label;
class Spinner;
}  // namespace Fenk

/// The kinds of problems as check boxes, in the user's language, with what stands there until the service has
/// named them, or when it does not.
class IssueTypeChoice : public QWidget {
    Q_OBJECT
public:
    explicit IssueTypeChoice(QWidget* parent = nullptr);

    void showLoading();
    void showFailed();
    /// Types without an id or a name, and those above a bound, are left out. Nothing usable is a failure.
    void setTypes(const QVector<IssueType>& types);
    bool hasTypes() const { return !m_boxes.isEmpty(); }
    /// Ids of the checked ones.
    QStringList chosen() const;

Q_SIGNALS:
    void changed();
    void retryWanted();

private:
    QGridLayout* m_grid;
    QVector<QCheckBox*> m_boxes;
    QStringList m_ids;
    Fenk::Spinner* m_spinner;
    QWidget* m_failure;
    Fenk::Label* m_failureText;
    QPushButton* m_retry;
};

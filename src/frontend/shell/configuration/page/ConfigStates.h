#pragma once

#include <QStackedWidget>

class ListPlaceholder;

namespace Fenk {
class Spinner;
}

/// What the configuration window shows as a whole: that it loads, that the bottle can't be read, or its
/// content.
class ConfigStates : public QStackedWidget {
    Q_OBJECT
public:
    explicit ConfigStates(QWidget* content);

    void showLoading();
    /// `reason` is for the user and may be empty.
    void showFailed(const QString& reason);
    void showContent();

Q_SIGNALS:
    void retried();

private:
    QWidget* makeLoadingView();

    Fenk::Spinner* m_spinner;
    ListPlaceholder* m_failed;
};

#pragma once

#include <QWidget>

class LogView;
class QProgressBar;
class QPushButton;

namespace Fenk {
class Label;
}

/// The progress of packing, in whole percent; never runs backwards.
class ShowPackagingProgressWidget : public QWidget {
    Q_OBJECT
public:
    explicit ShowPackagingProgressWidget(QWidget* parent = nullptr);

    void reset();
    void setProgress(double percent);
    /// Which of its two texts the button has; its click only emits.
    void setDetailsShown(bool shown);

Q_SIGNALS:
    void detailsToggled(bool shown);

private:
    Fenk::Label* m_percent;
    QProgressBar* m_bar;
    QPushButton* m_details;
    bool m_isShown = false;
};

/// What the packing script prints.
class ShowPackagingLogWidget : public QWidget {
    Q_OBJECT
public:
    explicit ShowPackagingLogWidget(QWidget* parent = nullptr);
    void append(const QString& line, bool isError);

private:
    LogView* m_view;
};

/// A package's name, version and place.
class AppPkgInfoWidget : public QWidget {
    Q_OBJECT
public:
    explicit AppPkgInfoWidget(QWidget* parent = nullptr);
    void setPackage(const QString& name, const QString& version, const QString& directory);

Q_SIGNALS:
    void pkgDirClicked();

private:
    Fenk::Label* m_name;
    Fenk::Label* m_version;
    QPushButton* m_directory;
};

/// The package is there; the place of the next one can be changed.
class ShowPackageDoneWidget : public QWidget {
    Q_OBJECT
public:
    explicit ShowPackageDoneWidget(QWidget* parent = nullptr);
    AppPkgInfoWidget* info() const { return m_info; }

Q_SIGNALS:
    void changePathClicked();
    void viewClicked();

private:
    AppPkgInfoWidget* m_info;
};

/// There is no package, and why: the script's last line.
class ShowPackageFailedWidget : public QWidget {
    Q_OBJECT
public:
    explicit ShowPackageFailedWidget(QWidget* parent = nullptr);
    void setReason(const QString& reason);

Q_SIGNALS:
    void logClicked();

private:
    Fenk::Label* m_reason;
};

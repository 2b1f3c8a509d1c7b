#include "shell/WelcomePage.h"

#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QPainter>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "fenk/Label.h"
#include "fenk/SuggestButton.h"
#include "fenk/Theme.h"
#include "fenk/Tokens.h"

namespace {

constexpr int TextWidth = 440;

/// The one local Windows program in a drag, or nothing.
QString droppedProgram(const QMimeData* data) {
    for (const QUrl& url : data->urls()) {
        const QString path = url.toLocalFile();
        const QString suffix = QFileInfo(path).suffix().toLower();
        if (suffix == QLatin1String("exe") || suffix == QLatin1String("msi"))
            return path;
    }
    return {};
}

}  // namespace

WelcomePage::WelcomePage(QWidget* parent) : QWidget(parent) {
    setObjectName("welcome_page");
    setAcceptDrops(true);

    auto* icon = new QLabel;
    icon->setPixmap(Fenk::Theme::icon("cellarix").pixmap(Fenk::Tokens::IconBanner, Fenk::Tokens::IconBanner));
    icon->setAlignment(Qt::AlignCenter);
    auto* title = new Fenk::Label(tr("Run a Windows program"), Fenk::Label::Title);
    title->setAlignment(Qt::AlignCenter);
    auto* text = new Fenk::Label(tr("Choose a program file or drop it here. Cellarix makes a place for it, "
                                    "starts it and remembers it."),
                                 Fenk::Label::Secondary);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    text->setFixedWidth(TextWidth);
    text->setMinimumHeight(text->heightForWidth(TextWidth));
    auto* button = new Fenk::SuggestButton(tr("Open Program…"));
    button->setObjectName("welcome_openbtn");
    button->setAccessibleName("welcome_openbtn");
    button->setDefault(true);
    setFocusProxy(button);
    connect(button, &QPushButton::clicked, this, &WelcomePage::choose);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(Fenk::Tokens::Space16);
    layout->addStretch(2);
    layout->addWidget(icon);
    layout->addWidget(title);
    layout->addWidget(text, 0, Qt::AlignHCenter);
    layout->addSpacing(Fenk::Tokens::Space8);
    layout->addWidget(button, 0, Qt::AlignHCenter);
    layout->addStretch(3);
}

void WelcomePage::choose() {
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Open Program"), QStandardPaths::writableLocation(QStandardPaths::HomeLocation),
        tr("Windows programs (*.exe *.EXE *.msi *.MSI)"));
    if (!path.isEmpty())
        Q_EMIT fileChosen(path);
}

void WelcomePage::setDropTarget(bool on) {
    m_dropTarget = on;
    update();
}

void WelcomePage::dragEnterEvent(QDragEnterEvent* event) {
    if (droppedProgram(event->mimeData()).isEmpty())
        return;
    event->acceptProposedAction();
    setDropTarget(true);
}

void WelcomePage::dragLeaveEvent(QDragLeaveEvent* event) {
    QWidget::dragLeaveEvent(event);
    setDropTarget(false);
}

void WelcomePage::dropEvent(QDropEvent* event) {
    setDropTarget(false);
    const QString path = droppedProgram(event->mimeData());
    if (path.isEmpty())
        return;
    event->acceptProposedAction();
    Q_EMIT fileChosen(path);
}

void WelcomePage::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    if (!m_dropTarget)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Fenk::Theme::instance()->color(Fenk::Theme::Accent), 2, Qt::DashLine));
    const qreal margin = Fenk::Tokens::Space16;
    painter.drawRoundedRect(QRectF(rect()).adjusted(margin, margin, -margin, -margin),
                            Fenk::Tokens::RadiusCard, Fenk::Tokens::RadiusCard);
}

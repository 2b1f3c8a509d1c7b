#include "shell/DropFrame.h"

#include <QFileInfo>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "launch/inspection/ProgramKind.h"

using namespace Fenk;

DropFrame::DropFrame(QWidget* parent) : QWidget(parent) {
    setObjectName("drop_frame");
    setAccessibleName(tr("Drop to run"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

QString DropFrame::programIn(const QMimeData* data) {
    static const QStringList suffixes{"exe", "msi", "bat"};
    const QList<QUrl> urls = data->urls();
    for (const QUrl& url : urls) {
        const QFileInfo file(url.toLocalFile());
        if (file.isFile() &&
            (suffixes.contains(file.suffix().toLower()) || ProgramHeader::read(file.filePath()).isProgram()))
            return file.filePath();
    }
    return {};
}

void DropFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Paint::Scope scope(&painter);
    Paint::box(&painter, rect().adjusted(1, 1, -1, -1), Tokens::RadiusWindow,
               withAlpha(Paint::color(Theme::Window), 0.9));
    const qreal margin = Tokens::Space16;
    const QRectF frame = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    painter.setPen(QPen(Paint::color(Theme::Accent), 2, Qt::DashLine));
    painter.setBrush(withAlpha(Paint::color(Theme::AccentSoft), 0.6));
    painter.drawRoundedRect(frame, Tokens::RadiusCard, Tokens::RadiusCard);
    // On an opaque plate, because the window shows through.
    painter.setFont(Theme::instance()->font(Theme::Title));
    const QString text = tr("Drop to run");
    QRectF plate = painter.boundingRect(frame, Qt::AlignCenter, text);
    plate.adjust(-Tokens::Space24, -Tokens::Space16, Tokens::Space24, Tokens::Space16);
    Paint::box(&painter, plate, Tokens::RadiusCard, Paint::color(Theme::Surface),
               Paint::color(Theme::Border));
    painter.setPen(Paint::color(Theme::Accent));
    painter.drawText(frame, Qt::AlignCenter, text);
}

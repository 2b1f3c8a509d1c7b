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

namespace {

QStringList programsIn(const QList<QUrl>& urls) {
    static const QStringList suffixes{"exe", "msi", "bat"};
    QStringList found;
    for (const QUrl& url : urls) {
        const QFileInfo file(url.toLocalFile());
        if (file.isFile() &&
            (suffixes.contains(file.suffix().toLower()) || ProgramHeader::read(file.filePath()).isProgram()))
            found << file.filePath();
    }
    return found;
}

}  // namespace

DropFrame::DropFrame(QWidget* parent) : QWidget(parent) {
    setObjectName("drop_frame");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

QString DropFrame::programIn(const QMimeData* data) {
    const QStringList programs = programsIn(data->urls());
    return programs.size() == 1 ? programs.first() : QString();
}

AddedLink DropFrame::linkIn(const QMimeData* data) {
    static const QStringList suffixes{"yml", "zip"};
    if (programsIn(data->urls()).size() > 1)
        return AddedLink::of(data->urls());
    if (data->urls().size() != 1)
        return {};
    const AddedLink link = AddedLink::of(data->urls());
    const QFileInfo file(link.path);
    const bool isPath = file.isDir() || suffixes.contains(file.suffix().toLower());
    return isPath || !link.address.isEmpty() ? link : AddedLink();
}

void DropFrame::showFor(bool isProgram) {
    m_text = isProgram ? tr("Drop to run") : tr("Drop to add");
    setAccessibleName(m_text);
    raise();
    show();
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
    QRectF plate = painter.boundingRect(frame, Qt::AlignCenter, m_text);
    plate.adjust(-Tokens::Space24, -Tokens::Space16, Tokens::Space24, Tokens::Space16);
    Paint::box(&painter, plate, Tokens::RadiusCard, Paint::color(Theme::Surface),
               Paint::color(Theme::Border));
    painter.setPen(Paint::color(Theme::Accent));
    painter.drawText(frame, Qt::AlignCenter, m_text);
}

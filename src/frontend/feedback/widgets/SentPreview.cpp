#include "feedback/widgets/SentPreview.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QStackedWidget>

#include "backend/InBackground.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "fenk/system/RegularFile.h"
#include "widgets/LogView.h"

using namespace Fenk;

namespace {

constexpr int ListWidth = 184;
constexpr int LogLevel = 3;
constexpr qint64 MostBytes = 32 << 20;

QString readText(const QString& path) {
    const auto bytes = RegularFile::read(path, MostBytes);
    return bytes ? QString::fromUtf8(*bytes) : QString();
}

}  // namespace

SentPreview::SentPreview(QWidget* parent)
    : QWidget(parent),
      m_list(new QListWidget),
      m_pages(new QStackedWidget),
      m_text(new QPlainTextEdit),
      m_picture(new QLabel),
      m_log(new LogView) {
    m_list->setObjectName("sent_parts");
    m_list->setAccessibleName(tr("What is sent"));
    m_list->setFixedWidth(ListWidth);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextAreaLook(m_list);
    m_text->setObjectName("sent_text");
    m_text->setAccessibleName(tr("Text"));
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    m_text->setFont(Theme::instance()->font(Theme::Fixed));
    m_picture->setObjectName("sent_picture");
    m_picture->setAlignment(Qt::AlignCenter);
    m_log->setObjectName("sent_file");
    m_log->setAccessibleName(tr("Text"));
    m_log->setFont(Theme::instance()->font(Theme::Fixed));
    setTextAreaLook(m_log);
    for (QWidget* page :
         {static_cast<QWidget*>(m_text), static_cast<QWidget*>(m_picture), static_cast<QWidget*>(m_log)})
        m_pages->addWidget(page);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_list);
    layout->addWidget(m_pages, 1);
    setFocusProxy(m_list);
    connect(m_list, &QListWidget::currentRowChanged, this, &SentPreview::showPart);
}

void SentPreview::setParts(const QVector<SentPart>& parts) {
    const QString chosen = m_parts.value(m_list->currentRow()).title;
    m_parts = parts;
    int row = 0;
    {
        const QSignalBlocker quiet(m_list);
        m_list->clear();
        for (const SentPart& part : parts) {
            m_list->addItem(part.title);
            m_list->item(m_list->count() - 1)->setToolTip(plainToolTip(part.title));
            if (part.title == chosen)
                row = m_list->count() - 1;
        }
        m_list->setCurrentRow(row);
    }
    showPart(row);
}

void SentPreview::showPart(int index) {
    ++m_shown;
    const SentPart part = m_parts.value(index);
    if (!part.file.isEmpty()) {
        showFile(part.file);
    } else if (!part.picture.isNull()) {
        const QSize room = m_pages->size() * devicePixelRatioF();
        QPixmap pixmap = QPixmap::fromImage(part.picture);
        if (pixmap.width() > room.width() || pixmap.height() > room.height())
            pixmap = pixmap.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        pixmap.setDevicePixelRatio(devicePixelRatioF());
        m_picture->setPixmap(pixmap);
        m_picture->setAccessibleName(part.title);
        m_pages->setCurrentWidget(m_picture);
    } else {
        m_text->setPlainText(part.text);
        m_pages->setCurrentWidget(m_text);
    }
}

void SentPreview::showFile(const QString& path) {
    m_log->clear();
    m_pages->setCurrentWidget(m_log);
    inBackground(
        this, [path] { return readText(path); },
        [this, shown = m_shown](const QString& text) {
            if (shown == m_shown && !text.isEmpty())
                m_log->appendLines({{text, LogLevel}}, QTime());
        });
}

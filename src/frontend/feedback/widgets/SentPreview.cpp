#include "feedback/widgets/SentPreview.h"

#include <QBuffer>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <limits>
#include <optional>

#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "fenk/system/RegularFile.h"
#include "launch/icons/UntrustedImage.h"
#include "widgets/LogView.h"

using namespace Fenk;

namespace {

constexpr int ListWidth = 184;
constexpr int LogLevel = 3;
constexpr qint64 MostBytes = 32 << 20;
constexpr int LongestLine = 4096;  ///< characters; a log's view cuts what is longer than some more

using Lines = QVector<LogView::NewLine>;

/// Nothing for what cannot be read. A long line becomes several, so that all of it is shown.
std::optional<Lines> readLines(const QString& path) {
    const auto bytes = RegularFile::read(path, MostBytes);
    if (!bytes)
        return std::nullopt;
    Lines lines;
    QStringList texts = QString::fromUtf8(*bytes).split('\n');
    if (texts.last().isEmpty())
        texts.removeLast();
    for (const QString& text : qAsConst(texts)) {
        int begin = 0;
        do {
            const int end = begin + LongestLine;
            const bool splitsCharacter = end < text.size() && text[end].isLowSurrogate();
            lines += {text.mid(begin, LongestLine + int(splitsCharacter)), LogLevel};
            begin = end + int(splitsCharacter);
        } while (begin < text.size());
    }
    return lines;
}

struct Picture {
    QImage image;  ///< null where it has too many pixels
    bool moves = false;
};

Picture readPicture(const QString& path) {
    const QByteArray bytes = RegularFile::read(path, UntrustedImage::MaxBytes).value_or(QByteArray());
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const bool isGif = reader.format() == "gif";
    return {UntrustedImage::decode(bytes, UntrustedImage::MaxEdge).image, isGif && reader.imageCount() != 1};
}

}  // namespace

SentPreview::SentPreview(QWidget* parent)
    : QWidget(parent),
      m_list(new QListWidget),
      m_pages(new QStackedWidget),
      m_text(new QPlainTextEdit),
      m_pictureArea(new QScrollArea),
      m_picture(new QLabel),
      m_log(new LogView(nullptr, std::numeric_limits<int>::max())),
      m_note(new Label(Label::Small)),
      m_open(new QPushButton(tr("Open…"))) {
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
    m_pictureArea->setWidget(m_picture);
    m_pictureArea->setWidgetResizable(true);
    setTextAreaLook(m_pictureArea);
    m_log->setObjectName("sent_file");
    m_log->setAccessibleName(tr("Text"));
    m_log->setFont(Theme::instance()->font(Theme::Fixed));
    setTextAreaLook(m_log);
    for (QWidget* page : std::initializer_list<QWidget*>{m_text, m_pictureArea, m_log})
        m_pages->addWidget(page);
    m_note->setObjectName("sent_note");
    m_note->setTextRole(Theme::Secondary);
    m_note->setWordWrap(true);
    m_open->setObjectName("sent_open");
    m_open->setAccessibleName(m_open->text());
    m_open->setAutoDefault(false);
    setButtonKind(m_open, ButtonKind::Quiet);
    connect(m_open, &QPushButton::clicked, this, [this] { DesktopUtils::openLocal(m_openFile); });
    note({});
    auto* foot = new QHBoxLayout;
    foot->addWidget(m_note, 1);
    foot->addWidget(m_open);
    auto* right = new QVBoxLayout;
    right->setSpacing(Tokens::Space4);
    right->addWidget(m_pages, 1);
    right->addLayout(foot);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_list);
    layout->addLayout(right, 1);
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
    note({});
    const SentPart part = m_parts.value(index);
    if (!part.file.isEmpty()) {
        showFile(part.file);
    } else if (!part.picture.isEmpty()) {
        m_picture->setAccessibleName(part.title);
        showPicture(part.picture);
    } else {
        m_text->setPlainText(part.text);
        m_pages->setCurrentWidget(m_text);
    }
}

void SentPreview::showPicture(const QString& path) {
    m_picture->clear();
    m_pages->setCurrentWidget(m_pictureArea);
    inBackground(
        this, [path] { return readPicture(path); },
        [this, path, shown = m_shown](const Picture& picture) {
            if (shown != m_shown)
                return;
            QPixmap pixmap = QPixmap::fromImage(picture.image);
            pixmap.setDevicePixelRatio(devicePixelRatioF());
            m_picture->setPixmap(pixmap);
            if (picture.image.isNull())
                note(tr("This picture is too large to be shown here."), path);
            else if (picture.moves)
                note(tr("This picture moves. Its first frame is shown here."), path);
        });
}

void SentPreview::showFile(const QString& path) {
    m_log->clear();
    m_pages->setCurrentWidget(m_log);
    inBackground(
        this, [path] { return readLines(path); },
        [this, path, shown = m_shown](const std::optional<Lines>& lines) {
            if (shown != m_shown)
                return;
            const qint64 before = m_log->store().droppedLines();
            m_log->appendLines(lines.value_or(Lines()), QTime());
            const qint64 dropped = m_log->store().droppedLines() - before;
            if (!lines)
                note(tr("This file cannot be read."));
            else if (lines->isEmpty())
                note(tr("This file is empty."));
            else if (dropped > 0)
                note(tr("The first %1 lines are not shown here.").arg(dropped), path);
        });
}

void SentPreview::note(const QString& text, const QString& file) {
    m_openFile = file;
    m_note->setText(text);
    m_note->setVisible(!text.isEmpty());
    m_open->setVisible(!file.isEmpty());
}

#include "feedback/dialogs/UploadedImages.h"

#include <QGridLayout>
#include <QPushButton>

#include "feedback/dialogs/ImageUploads.h"
#include "feedback/dialogs/UploadedImage.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

namespace {
constexpr int Columns = 3;
}  // namespace

UploadedImages::UploadedImages(ImageUploads* uploads, QWidget* parent)
    : QWidget(parent), m_uploads(uploads), m_grid(new QGridLayout(this)), m_add(new QPushButton) {
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setSpacing(Tokens::Space8);
    m_grid->setColumnStretch(Columns, 1);
    m_add->setObjectName("feedback_addimagebtn");
    m_add->setIcon(Theme::icon("fenk-add"));
    m_add->setToolTip(tr("Add pictures"));
    m_add->setAccessibleName(tr("Add pictures"));
    m_add->setAutoDefault(false);
    m_add->setFixedSize(UploadedImage::Width, UploadedImage::Height);
    connect(m_add, &QPushButton::clicked, this, &UploadedImages::addWanted);
    connect(uploads, &ImageUploads::added, this, &UploadedImages::add);
    connect(uploads, &ImageUploads::removed, this, &UploadedImages::remove);
    connect(uploads, &ImageUploads::changed, this, [this](const QString& id) {
        const ImageUploads::Image* image = m_uploads->find(id);
        if (auto* widget = findChild<UploadedImage*>(id); widget && image)
            widget->showState(*image);
    });
    connect(uploads, &ImageUploads::updated, this, [this] { m_add->setVisible(!m_uploads->isFull()); });
    arrange();
}

void UploadedImages::add(const QString& id) {
    const ImageUploads::Image* image = m_uploads->find(id);
    if (!image)
        return;
    auto* widget = new UploadedImage(*image);
    connect(widget, &UploadedImage::removalWanted, m_uploads, [this, id] { m_uploads->remove(id); });
    connect(widget, &UploadedImage::retryWanted, m_uploads, [this, id] { m_uploads->retry(id); });
    m_images += widget;
    arrange();
}

/// The focus goes to the next picture, the last one or the button.
void UploadedImages::remove(const QString& id) {
    auto* widget = findChild<UploadedImage*>(id);
    const int index = m_images.indexOf(widget);
    if (index < 0)
        return;
    m_images.removeAt(index);
    const bool hadFocus = widget->hasFocus() || widget->retryButton()->hasFocus();
    widget->setObjectName(QString());
    widget->hide();
    widget->deleteLater();  // this may be its own click
    m_add->show();
    arrange();
    if (!hadFocus)
        return;
    if (m_images.isEmpty())
        m_add->setFocus(Qt::OtherFocusReason);
    else
        m_images[qMin(index, m_images.size() - 1)]->setFocus(Qt::OtherFocusReason);
}

void UploadedImages::arrange() {
    QWidget* before = nullptr;
    int place = 0;
    const auto put = [&](QWidget* widget) {
        m_grid->addWidget(widget, place / Columns, place % Columns);
        ++place;
        if (before)
            setTabOrder(before, widget);
        before = widget;
    };
    for (UploadedImage* image : qAsConst(m_images)) {
        put(image);
        setTabOrder(image, image->retryButton());
        before = image->retryButton();
    }
    put(m_add);
}

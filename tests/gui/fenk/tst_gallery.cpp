#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "FenkTestMain.h"
#include "GalleryWindow.h"
#include "Picture.h"
#include "fenk/Theme.h"

using namespace Fenk;

namespace {

/// Names that Qt gives to parts of its own controls.
bool isPartOfAControl(const QWidget* widget) {
    return widget->objectName().startsWith("qt_") || qobject_cast<QComboBox*>(widget->parentWidget()) ||
           qobject_cast<QLineEdit*>(widget->parentWidget()) ||
           qobject_cast<QAbstractSpinBox*>(widget->parentWidget()) ||
           widget->inherits("QComboBoxPrivateContainer") || widget->inherits("QComboBoxListView") ||
           qobject_cast<QAbstractItemView*>(widget->parentWidget());
}

bool hasWord(const QWidget* widget) {
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    return !widget->accessibleName().isEmpty() || (button && !button->text().isEmpty());
}

QString describe(const QWidget* widget) {
    QString text;
    QDebug(&text) << widget << widget->property("text").toString() << widget->size() << "wants"
                  << widget->sizeHint();
    return text;
}

}  // namespace

class TestGallery : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_window.reset(new Gallery::GalleryWindow); }
    void cleanup() {
        m_window.reset();
        Theme::instance()->followSystem();
    }

    void everyControlHasAName() {
        for (const QWidget* widget : m_window->findChildren<QWidget*>()) {
            if (widget->focusPolicy() == Qt::NoFocus || isPartOfAControl(widget) || widget->focusProxy())
                continue;
            const bool control =
                qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
                qobject_cast<const QComboBox*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
                qobject_cast<const QAbstractSlider*>(widget) ||
                qobject_cast<const QAbstractItemView*>(widget);
            if (control)
                QVERIFY2(hasWord(widget), qPrintable(describe(widget)));
        }
    }

    void noTextIsCut_data() {
        QTest::addColumn<QString>("page");
        for (const QString& page : Gallery::GalleryWindow::pageNames())
            QTest::newRow(qPrintable(page)) << page;
    }
    void noTextIsCut() {
        QFETCH(QString, page);
        QVERIFY(m_window->showPage(page));
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.data()));
        for (QWidget* widget : m_window->findChildren<QWidget*>()) {
            if (!widget->isVisible())
                continue;
            const auto* label = qobject_cast<const QLabel*>(widget);
            const auto* button = qobject_cast<const QAbstractButton*>(widget);
            const auto* combo = qobject_cast<const QComboBox*>(widget);
            if (label && label->wordWrap())
                QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                         qPrintable(describe(widget)));
            else if ((label && !label->text().isEmpty()) || (button && !isPartOfAControl(widget)) || combo)
                QVERIFY2(widget->width() >= widget->minimumSizeHint().width() &&
                             widget->height() >= widget->minimumSizeHint().height(),
                         qPrintable(describe(widget)));
        }
    }

    void wordsHaveRoomInTheirHints() {
        for (const QString& text :
             {QString("Cancel Installation"), QString::fromUtf8("取消安装并删除文件")}) {
            QPushButton button(text);
            QCheckBox box(text);
            QComboBox combo;
            combo.addItem(text);
            for (QWidget* widget : std::initializer_list<QWidget*>{&button, &box, &combo}) {
                widget->ensurePolished();
                QVERIFY(widget->sizeHint().width() > widget->fontMetrics().horizontalAdvance(text) + 20);
                QVERIFY(widget->sizeHint().height() >= widget->fontMetrics().height());
            }
        }
    }

    void pagesDifferByTheme() {
        m_window.reset();
        for (const char* page : {"controls", "lists", "dialog", "about", "menu"}) {
            Theme::instance()->setColorType(Theme::Light);
            const QImage light = Gallery::picture(page);
            Theme::instance()->setColorType(Theme::Dark);
            const QImage dark = Gallery::picture(page);
            QVERIFY2(!light.isNull() && light.size() == dark.size(), page);
            QVERIFY2(light != dark, page);
        }
        QVERIFY(Gallery::picture("no such page").isNull());
    }

private:
    QScopedPointer<Gallery::GalleryWindow> m_window;
};

FENK_TEST_MAIN(TestGallery)
#include "tst_gallery.moc"

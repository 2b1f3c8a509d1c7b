#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "FenkTestMain.h"
#include "GalleryWindow.h"

namespace {

/// Names that Qt gives to parts of its own controls.
bool isPartOfAControl(const QWidget* widget) {
    return widget->objectName().startsWith("qt_") || qobject_cast<QComboBox*>(widget->parentWidget()) ||
           qobject_cast<QLineEdit*>(widget->parentWidget()) ||
           qobject_cast<QAbstractSpinBox*>(widget->parentWidget()) ||
           widget->inherits("QComboBoxPrivateContainer") || widget->inherits("QComboBoxListView") ||
           qobject_cast<QAbstractItemView*>(widget->parentWidget());
}

QString describe(const QWidget* widget) {
    QString text;
    QDebug(&text) << widget << widget->property("text").toString() << widget->size() << "wants"
                  << widget->sizeHint();
    return text;
}

}  // namespace

class GalleryTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void noTextIsCut_data() {
        QTest::addColumn<QString>("page");
        for (const QString& page : Gallery::GalleryWindow::pageNames())
            QTest::newRow(qPrintable(page)) << page;
    }
    void noTextIsCut() {
        QFETCH(QString, page);
        Gallery::GalleryWindow window;
        QVERIFY(window.showPage(page));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        for (QWidget* widget : window.findChildren<QWidget*>()) {
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
};

FENK_TEST_MAIN(GalleryTest)
#include "GalleryTest.moc"

#include <QDBusArgument>
#include <QMetaEnum>
#include <QPushButton>
#include <QSignalSpy>

#include "FenkTestMain.h"
#include "fenk/Color.h"
#include "fenk/SystemAppearance.h"
#include "fenk/Theme.h"

using namespace Fenk;

namespace {

constexpr qreal Readable = 4.5;

QPalette dimmed(int lightness) {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor::fromHsl(0, 0, lightness));
    return palette;
}

/// The most frequent colour that is not clear.
QColor inkOf(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) == 255)
                return QColor(image.pixel(x, y));
        }
    }
    return {};
}

}  // namespace

class TestTheme : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() {
        Theme::instance()->setChoiceFile(QString());
        Theme::instance()->setAccent(QColor());
        Theme::instance()->watchSystem(dimmed(250));
        Theme::instance()->followSystem();
    }

    void contrastIsThatOfTheStandard() {
        QCOMPARE(qRound(contrast(Qt::black, Qt::white) * 100), 2100);
        QCOMPARE(qRound(contrast(QColor("#777777"), Qt::white) * 100), 448);
    }

    void everyTextIsReadable_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("ink");
        QTest::addColumn<int>("ground");
        const auto roles = QMetaEnum::fromType<Theme::Role>();
        for (const int type : {Theme::Light, Theme::Dark}) {
            const auto row = [&](Theme::Role ink, Theme::Role ground) {
                QTest::addRow("%s %s on %s", type == Theme::Dark ? "dark" : "light", roles.valueToKey(ink),
                              roles.valueToKey(ground))
                    << type << int(ink) << int(ground);
            };
            for (const auto ink : {Theme::Text, Theme::Secondary, Theme::Accent, Theme::Danger,
                                   Theme::Warning, Theme::Success}) {
                for (const auto ground : {Theme::Window, Theme::Surface, Theme::Sunken, Theme::AccentSoft})
                    row(ink, ground);
            }
            row(Theme::OnAccent, Theme::Accent);
            row(Theme::OnAccent, Theme::Danger);
        }
    }
    void everyTextIsReadable() {
        QFETCH(int, type);
        QFETCH(int, ink);
        QFETCH(int, ground);
        const Theme* theme = Theme::instance();
        const auto colorType = Theme::ColorType(type);
        const qreal value =
            contrast(theme->color(colorType, Theme::Role(ink)), theme->color(colorType, Theme::Role(ground)));
        QVERIFY2(value >= Readable, qPrintable(QString::number(value)));
    }

    void paletteHasReadablePairs() {
        for (const auto type : {Theme::Light, Theme::Dark}) {
            const QPalette p = Theme::instance()->palette(type);
            const QPair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
                {QPalette::WindowText, QPalette::Window},
                {QPalette::Text, QPalette::Base},
                {QPalette::Text, QPalette::AlternateBase},
                {QPalette::ButtonText, QPalette::Button},
                {QPalette::PlaceholderText, QPalette::Base},
                {QPalette::HighlightedText, QPalette::Highlight},
                {QPalette::ToolTipText, QPalette::ToolTipBase},
                {QPalette::Link, QPalette::Base}};
            for (const auto group : {QPalette::Active, QPalette::Inactive}) {
                for (const auto& pair : pairs)
                    QVERIFY2(contrast(p.color(group, pair.first), p.color(group, pair.second)) >= Readable,
                             qPrintable(QString("%1 on %2").arg(pair.first).arg(pair.second)));
            }
        }
    }

    void accentOfTheDesktop_data() {
        QTest::addColumn<QColor>("accent");
        QTest::addColumn<bool>("taken");
        QTest::newRow("deep violet") << QColor("#6A35C8") << true;
        QTest::newRow("pale yellow is not readable") << QColor("#FFE97A") << false;
        QTest::newRow("none") << QColor() << false;
    }
    void accentOfTheDesktop() {
        QFETCH(QColor, accent);
        QFETCH(bool, taken);
        Theme* theme = Theme::instance();
        theme->setAccent(accent);
        QCOMPARE(theme->color(Theme::Light, Theme::Accent) == accent, taken);
        for (const auto type : {Theme::Light, Theme::Dark}) {
            QVERIFY(contrast(theme->color(type, Theme::OnAccent), theme->color(type, Theme::Accent)) >=
                    Readable);
            QVERIFY(contrast(theme->color(type, Theme::Accent), theme->color(type, Theme::AccentSoft)) >=
                    Readable);
        }
    }

    void systemPreferenceHoldsUntilSomeoneChooses() {
        Theme* theme = Theme::instance();
        theme->watchSystem(dimmed(20));
        QVERIFY(theme->isDark());
        theme->setColorType(Theme::Light);
        theme->watchSystem(dimmed(20));
        QVERIFY(!theme->isDark());
        theme->followSystem();
        QVERIFY(theme->isDark());
    }

    void choiceIsKept() {
        const QTemporaryDir folder;
        const QString file = folder.filePath("deep/appearance.ini");
        Theme* theme = Theme::instance();
        theme->setChoiceFile(file);
        theme->setColorType(Theme::Dark);
        theme->setChoiceFile(QString());
        QVERIFY(!theme->isDark());
        theme->setChoiceFile(file);
        QVERIFY(theme->isDark());
        QVERIFY(!theme->followsSystem());
    }

    void brokenChoiceMeansTheSystem() {
        const QTemporaryDir folder;
        QFile file(folder.filePath("appearance.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("theme=\x00\xff purple\n[[[");
        file.close();
        Theme::instance()->setChoiceFile(file.fileName());
        QVERIFY(Theme::instance()->followsSystem());
        QVERIFY(!Theme::instance()->isDark());
    }

    void portalValues() {
        QCOMPARE(SystemAppearance::darkFrom(1u), std::optional<bool>(true));
        QCOMPARE(SystemAppearance::darkFrom(2u), std::optional<bool>(false));
        for (const QVariant& nothing : {QVariant(0u), QVariant(7u), QVariant("dark"), QVariant()})
            QCOMPARE(SystemAppearance::darkFrom(nothing), std::optional<bool>());
        QVERIFY(!SystemAppearance::accentFrom(QVariant("red")).isValid());
        QVERIFY(!SystemAppearance::accentFrom(QVariant::fromValue(QDBusArgument())).isValid());
    }

    void changeReachesEveryWidget() {
        QPushButton button("Run");
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        const QImage before = button.grab().toImage();
        QSignalSpy types(Theme::instance(), &Theme::themeTypeChanged);
        Theme::instance()->setColorType(Theme::Dark);
        QCOMPARE(types.count(), 1);
        QCOMPARE(button.palette().color(QPalette::Window), Theme::instance()->color(Theme::Window));
        QCOMPARE(qApp->palette().color(QPalette::Text), Theme::instance()->color(Theme::Text));
        QVERIFY(button.grab().toImage() != before);
        Theme::instance()->setColorType(Theme::Dark);
        QCOMPARE(types.count(), 1);
    }

    void iconsFollowTheTheme() {
        const QIcon icon = Theme::icon("fenk-maximize");
        QVERIFY(!icon.isNull());
        QCOMPARE(inkOf(icon.pixmap(48, 48).toImage()).lightness() < 128, true);
        Theme::instance()->setColorType(Theme::Dark);
        QCOMPARE(inkOf(icon.pixmap(48, 48).toImage()).lightness() > 128, true);
        const QImage off = icon.pixmap(48, 48, QIcon::Disabled).toImage();
        QCOMPARE(inkOf(off), Theme::instance()->color(Theme::Disabled));
        QVERIFY(Theme::icon("no-such-icon-anywhere").isNull());
        QVERIFY(Theme::icon("../../../etc/passwd").isNull());
    }

    void programIconsComeFromAddedPaths() {
        QVERIFY(Theme::icon("cellarix").isNull());
        const QStringList paths = QIcon::themeSearchPaths();
        Theme::addIconSearchPath(TEST_SOURCE_DIR "/src/platform/data/icons");
        for (const char* name : {"cellarix", "cxb_app_default_icon"}) {
            const QIcon icon = Theme::icon(name);
            QVERIFY2(!icon.isNull(), name);
            QCOMPARE(icon.pixmap(192, 192).size(), QSize(192, 192));
            QVERIFY(QColor(icon.pixmap(192, 192).toImage().pixel(96, 60)).isValid());
        }
        QIcon::setThemeSearchPaths(paths);
    }
};

FENK_TEST_MAIN(TestTheme)
#include "tst_theme.moc"

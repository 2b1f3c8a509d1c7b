#include <QMetaEnum>
#include <QPushButton>
#include <QSignalSpy>

#include "FenkTestMain.h"
#include "fenk/style/Color.h"
#include "fenk/style/Theme.h"
#include "support/Table.h"

using namespace Fenk;

namespace {

constexpr qreal Readable = 4.5;

QPalette dimmed(int lightness) {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor::fromHsl(0, 0, lightness));
    return palette;
}

/// The first colour that is not clear.
QColor inkOf(const QIcon& icon, QIcon::Mode mode = QIcon::Normal) {
    const QImage image = icon.pixmap(48, 48, mode).toImage();
    for (int at = 0; at < image.width() * image.height(); ++at) {
        const QRgb pixel = image.pixel(at % image.width(), at / image.width());
        if (qAlpha(pixel) == 255)
            return pixel;
    }
    return {};
}

}  // namespace

class ThemeTest : public QObject {
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

    void everyTextIsReadable() {
        const auto roles = QMetaEnum::fromType<Theme::Role>();
        for (const auto type : {Theme::Light, Theme::Dark}) {
            const auto check = [&](Theme::Role ink, Theme::Role ground) {
                const Theme* theme = Theme::instance();
                const qreal value = contrast(theme->color(type, ink), theme->color(type, ground));
                QVERIFY2(value >= Readable,
                         qPrintable(QString("%1 on %2, %3: %4")
                                        .arg(roles.valueToKey(ink), roles.valueToKey(ground))
                                        .arg(type)
                                        .arg(value)));
            };
            for (const auto ink : {Theme::Text, Theme::Secondary, Theme::Accent, Theme::Danger,
                                   Theme::Warning, Theme::Success}) {
                for (const auto ground : {Theme::Window, Theme::Surface, Theme::Sunken, Theme::AccentSoft})
                    check(ink, ground);
            }
            check(Theme::OnAccent, Theme::Accent);
            check(Theme::OnAccent, Theme::Danger);
        }
    }

    void paletteHasReadablePairs() {
        const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
            {QPalette::WindowText, QPalette::Window},       {QPalette::Text, QPalette::Base},
            {QPalette::Text, QPalette::AlternateBase},      {QPalette::ButtonText, QPalette::Button},
            {QPalette::PlaceholderText, QPalette::Base},    {QPalette::HighlightedText, QPalette::Highlight},
            {QPalette::ToolTipText, QPalette::ToolTipBase}, {QPalette::Link, QPalette::Base}};
        for (const auto type : {Theme::Light, Theme::Dark}) {
            const QPalette p = Theme::instance()->palette(type);
            for (const auto group : {QPalette::Active, QPalette::Inactive}) {
                for (const auto& [ink, ground] : pairs)
                    QVERIFY2(contrast(p.color(group, ink), p.color(group, ground)) >= Readable,
                             qPrintable(QString("%1 on %2").arg(ink).arg(ground)));
            }
        }
    }

    void accentOfTheDesktop_data() {
        const TestSupport::Table<QColor, bool> row("accent", "taken");
        row("deep violet", "#6A35C8", true);
        row("pale yellow is not readable", "#FFE97A", false);
        row("none", {}, false);
    }
    void accentOfTheDesktop() {
        QFETCH(QColor, accent);
        Theme* theme = Theme::instance();
        theme->setAccent(accent);
        QTEST(theme->color(Theme::Light, Theme::Accent) == accent, "taken");
        for (const auto type : {Theme::Light, Theme::Dark}) {
            const QColor used = theme->color(type, Theme::Accent);
            QVERIFY(contrast(theme->color(type, Theme::OnAccent), used) >= Readable);
            QVERIFY(contrast(used, theme->color(type, Theme::AccentSoft)) >= Readable);
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
        QVERIFY(theme->isDark() && !theme->followsSystem());
        QFile broken(file);
        QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("theme=\x00\xff purple\n[[[", 20) == 20);
        broken.close();
        theme->setChoiceFile(file);
        QVERIFY(!theme->isDark() && theme->followsSystem());
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
        QVERIFY(inkOf(icon).lightness() < 128);
        Theme::instance()->setColorType(Theme::Dark);
        QVERIFY(inkOf(icon).lightness() > 128);
        QCOMPARE(inkOf(icon, QIcon::Disabled), Theme::instance()->color(Theme::Disabled));
        for (const char* name : {"no-such-icon-anywhere", "../../../etc/passwd", "cellarix"})
            QVERIFY2(Theme::icon(name).isNull(), name);
        // A program's own icons come from the paths that it adds.
        const QStringList paths = QIcon::themeSearchPaths();
        Theme::addIconSearchPath(TEST_SOURCE_DIR "/src/platform/data/icons");
        for (const char* name : {"cellarix", "cxb_app_default_icon"})
            QCOMPARE(Theme::icon(name).pixmap(192, 192).size(), QSize(192, 192));
        QIcon::setThemeSearchPaths(paths);
    }
};

FENK_TEST_MAIN(ThemeTest)
#include "ThemeTest.moc"

#include <QJsonObject>

#include "probes/GraphicsVerdicts.h"
#include "support/LogCapture.h"
#include "support/Table.h"

using TestSupport::LogCapture;
using TestSupport::Table;

namespace {

const QStringList Vkd3d = {"VK_EXT_descriptor_indexing", "VK_KHR_timeline_semaphore",
                           "VK_KHR_create_renderpass2",  "VK_KHR_sampler_mirror_clamp_to_edge",
                           "VK_EXT_robustness2",         "VK_KHR_separate_depth_stencil_layouts"};

QSet<QString> extensions(int from, int count) {
    const QStringList some = Vkd3d.mid(from, count);
    return {some.begin(), some.end()};
}

/// "name on module|..."; 7 is an element that is no object.
QJsonArray cards(const QString& text) {
    QJsonArray gpus;
    for (const QString& card : text.split('|', Qt::SkipEmptyParts)) {
        if (card == "7")
            gpus.append(7);
        else
            gpus.append(
                QJsonObject{{"gpu", card.section(" on ", 0, 0)}, {"module", card.section(" on ", 1)}});
    }
    return gpus;
}

}  // namespace

class GraphicsVerdictsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void dxvk_data() {
        const Table<QVector<quint32>, QString, QStringList> row("devices", "name", "offered");
        const QStringList all = {"dxvk-2.3", "dxvk-1.10.3", "v2.4-async", "1.9.2"};
        row("none", {}, "DontSupport", {});
        row("below 1.0", {0x3fffff}, "DontSupport", {});
        row("1.0.0", {0x400000}, "Supportv1", {"dxvk-1.10.3", "1.9.2"});
        row("1.2.231", {0x4020e7}, "Supportv1", {"dxvk-1.10.3", "1.9.2"});
        row("1.3.0", {0x403000}, "Supportv2", all);
        row("1.1 and 1.3", {0x401000, 0x403001}, "Supportv2", all);
        row("1.3 and 1.1", {0x403001, 0x401000}, "Supportv2", all);
    }
    void dxvk() {
        QFETCH(QVector<quint32>, devices);
        const DxvkSupportResult support = GraphicsVerdicts::dxvkSupport(devices);
        QString printed;
        QDebug(&printed) << support;
        QFETCH(QString, name);
        QCOMPARE(printed.trimmed(), "DxvkSupportResult::" + name);
        QTEST(
            GraphicsVerdicts::usableDxvkVersions(support, {"dxvk-2.3", "dxvk-1.10.3", "v2.4-async", "1.9.2"}),
            "offered");
    }

    void vkd3d() {
        using GraphicsVerdicts::vkd3dSupport;
        QVERIFY(!vkd3dSupport({}));
        QVERIFY(vkd3dSupport({extensions(0, 6)}));
        QVERIFY(vkd3dSupport({extensions(0, 1), extensions(0, 6) + QSet<QString>{"VK_KHR_swapchain"}}));
        QVERIFY2(!vkd3dSupport({extensions(0, 5), extensions(5, 1)}), "spread over two devices");
        for (const QString& missing : Vkd3d)
            QVERIFY2(!vkd3dSupport({extensions(0, 6) - QSet<QString>{missing}}), qPrintable(missing));
    }

    void drivers_data() {
        // With the verdict "" or the first package that is asked for, and what is logged.
        const Table<QString, QString, QString> row("cards", "asked", "logged");
        row("no card", "", "", "No GPU info found");
        row("no object", "7", "", "No GPU info found?");
        row("one object", "7|Intel on i915", "mesa-vulkan-drivers:amd64", ": not a object?");
        row("amdgpu", "AMD Navi on amdgpu", "mesa-vulkan-drivers:amd64", "GPU amd navi -> amdgpu");
        row("radeon", "AMD Cape on radeon", "", "Don't support because using radeon module for AMD GPU");
        row("radeon first", "AMD on radeon|NVIDIA on nvidia", "", "using radeon module");
        row("radeon last", "NVIDIA on nvidia|AMD on radeon", "", "using radeon module");
        row("no module", "AMD on ", "mesa-vulkan-drivers:amd64", "GPU amd -> ");
        row("nouveau", "NVIDIA GP107M on nouveau", "mesa-vulkan-drivers:amd64",
            "No nvidia module found, using module: nouveau");
        row("nvidia", "NVIDIA GP107M on nvidia_drm", "nvidia-vulkan-common:amd64", "-> nvidia_drm");
        row("hybrid", "Intel on i915|NVIDIA on nvidia", "nvidia-vulkan-common:amd64", "GPU nvidia -> nvidia");
        row("two of NVIDIA", "NVIDIA on nvidia|NVIDIA on nouveau", "nvidia-vulkan-common:amd64", "nouveau");
    }
    void drivers() {
        QFETCH(QString, cards);
        const LogCapture log;
        const auto packages = GraphicsVerdicts::driverPackages(::cards(cards));
        QTEST(packages ? packages->first() : QString(), "asked");
        QCOMPARE(packages ? packages->size() : 0, !packages                                  ? 0
                                                  : packages->contains("nvidia-driver-full") ? 4
                                                                                             : 8);
        QFETCH(QString, logged);
        QVERIFY2(log.contains(logged), qPrintable(log.text()));
    }

    void order() {
        QStringList asked;
        QByteArray policy;
        bool complete = false;
        const GraphicsVerdicts::DriverQueries queries = {
            [&] { return asked << "policy", policy; },
            [&] { return asked << "cards", cards("Intel on i915"); },
            [&](const QStringList& packages, QByteArray* error) {
                *error = complete ? "" : "package 'libvulkan1:i386' is not installed";
                return asked << packages.last(), complete;
            }};
        const LogCapture log;
        QVERIFY(!GraphicsVerdicts::driversComplete(queries));
        QCOMPARE(asked, QStringList{"policy"});
        QVERIFY(log.contains(QtWarningMsg, "No i386 version of vulkan driver in the repository"));
        policy = "libvulkan1:i386:\n";
        QVERIFY(!GraphicsVerdicts::driversComplete(queries));
        QVERIFY(log.contains(QtWarningMsg, "dpkg -s failed package 'libvulkan1:i386' is not installed"));
        complete = true;
        QVERIFY(GraphicsVerdicts::driversComplete(queries));
        QCOMPARE(asked.mid(4), QStringList({"policy", "cards", "libgl1-mesa-dri:i386"}));
    }
};

QTEST_GUILESS_MAIN(GraphicsVerdictsTest)
#include "GraphicsVerdictsTest.moc"

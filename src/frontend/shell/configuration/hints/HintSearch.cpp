#include "shell/configuration/hints/HintSearch.h"

#include <QDebug>
#include <QFileInfo>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/ComponentManager.h"
#include "backend/InBackground.h"
#include "backend/WindowsPath.h"
#include "launch/inspection/ExeFileChecker.h"
#include "launch/winelog/WineLogParser.h"
#include "shell/configuration/hints/SteamRuntime.h"

namespace {

QStringList sorted(const QSet<QString>& names) {
    QStringList list = names.values();
    list.sort();
    return list;
}

void readLog(const QString& logPath, HintFacts* facts) {
    WineLogParser parser;
    facts->findings = parser.parseFile(logPath);
    facts->isMonoMissing = parser.monoMissing;
    facts->missingFonts = sorted(parser.missingFonts);
    facts->missingComponents = sorted(parser.missingComponents);
}

void inspect(const HintSearch::Request& request, HintFacts* facts) {
    const QString path = WindowsPath::isWindowsPath(request.programPath)
                             ? WindowsPath::toUnix(request.bottlePath, request.programPath)
                             : request.programPath;
    if (path.isEmpty() || !QFileInfo(path).isFile())
        return;
    ExeFileChecker checker(path);
    facts->isConsole = checker.isConsole();
    facts->isGame = checker.isGame();
    facts->requiredComponent = checker.requiredComponent();
}

}  // namespace

HintSearch::HintSearch(QObject* parent) : QObject(parent), m_wanted(std::make_shared<std::atomic<int>>(0)) {}

HintSearch::~HintSearch() {
    *m_wanted = 0;
}

void HintSearch::start(const Request& request) {
    const int number = ++m_number;
    *m_wanted = number;
    const auto look = [request, number, wanted = m_wanted] {
        HintFacts facts = request.shown;
        if (*wanted == number)
            readLog(request.logPath, &facts);
        if (*wanted == number)
            inspect(request, &facts);
        return facts;
    };
    setUnderWay(true);
    const auto take = [this, number, request](const HintFacts& facts) {
        if (isCurrent(number))
            askForComponents(number, request, facts);
    };
    inBackground(this, look, take, m_thread.pool());
}

void HintSearch::cancel() {
    *m_wanted = ++m_number;
    setUnderWay(false);
}

void HintSearch::askForComponents(int number, const Request& request, const HintFacts& known) {
    BottlesConfig::instance()->watchBottle(
        request.bottle, this,
        [this, number, known, isAfterRun = request.isAfterRun](const BusResult& result) {
            if (!isCurrent(number))
                return;
            HintFacts facts = known;
            facts.installedComponents = BottleRecord::installedDependencies(result.object());
            facts.knownRunners = ComponentManager::instance()->knownRunners();
            qDebug() << "::: " << facts.runner;
            if (isAfterRun && HintRules::isSteamRuntimeBroken(facts))
                endSteamRuntime(number, facts);
            else
                finish(number, facts);
        });
}

void HintSearch::endSteamRuntime(int number, HintFacts facts) {
    SteamRuntime::terminate(this, [=](bool isEnded) mutable {
        facts.isSteamRuntimeEnded = isEnded;
        if (isCurrent(number))
            finish(number, facts);
    });
}

void HintSearch::finish(int number, const HintFacts& facts) {
    if (!isCurrent(number))
        return;
    setUnderWay(false);
    Q_EMIT found(HintRules::of(facts));
}

void HintSearch::setUnderWay(bool underWay) {
    if (underWay == m_isUnderWay)
        return;
    m_isUnderWay = underWay;
    Q_EMIT changed();
}

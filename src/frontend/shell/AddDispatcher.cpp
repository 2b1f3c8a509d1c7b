#include "shell/AddDispatcher.h"

#include <QDebug>
#include <QJsonObject>
#include <QLocale>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Dialog.h"
#include "net/LoggedAddress.h"
#include "shell/portable/PortableProgram.h"
#include "shell/requests/AddInputs.h"

namespace {
constexpr int PatienceMs = 1000;
}

AddDispatcher::AddDispatcher(QWidget* window) : QObject(window), m_window(window) {
    m_waiting.setSingleShot(true);
    m_waiting.setInterval(PatienceMs);
    connect(&m_waiting, &QTimer::timeout, this, [this] {
        Fenk::FloatingMessage::show(m_window, Fenk::Theme::icon("fenk-info"),
                                    tr("Waiting for the disk or the server that has the file"));
    });
}

void AddDispatcher::take(const QStringList& inputs) {
    const auto read = [inputs] {
        QVector<AddItem> items;
        for (const QString& input : inputs)
            items += AddItem::read(input);
        return AddRequest::of(items);
    };
    const auto take = [this](const AddRequest& request) {
        m_waiting.stop();
        carryOut(request);
    };
    for (const QString& input : inputs)
        qInfo().noquote() << "adding" << (AddInputs::isAddress(input) ? loggedAddress(QUrl(input)) : input);
    m_waiting.start();
    inBackground(this, read, take, m_thread.pool());
}

void AddDispatcher::carryOut(const AddRequest& request) {
    switch (request.kind) {
        case AddRequest::Kind::Nothing:
            break;
        case AddRequest::Kind::Open:
            open(request.items.first());
            break;
        case AddRequest::Kind::Several:
            askForSeveral(request.items);
            break;
        case AddRequest::Kind::Manifest:
            Q_EMIT manifestRequested(request.items.first().path);
            break;
        case AddRequest::Kind::Portable:
            addPortable(request.items.first().path);
            break;
        case AddRequest::Kind::Address:
            Q_EMIT addressRequested(QUrl(request.items.first().path));
            break;
        case AddRequest::Kind::Refused:
            refuse(request.errorText);
            break;
    }
}

void AddDispatcher::open(const AddItem& item) {
    if (item.bottle.isEmpty())
        Q_EMIT openRequested(item.path);
    else
        openInBottle(item);
}

/// A shortcut in a bottle means the program there, with what was installed beside it.
void AddDispatcher::openInBottle(const AddItem& item) {
    BottlesConfig::instance()->watchBottle(item.bottle, this, [this, item](const BusResult& result) {
        const QJsonObject programs = BottleRecord::programs(result.object());
        for (auto program = programs.begin(); program != programs.end(); ++program) {
            const QString path = ProgramRecord::path(program.value().toObject());
            if (path.compare(item.windowsPath, Qt::CaseInsensitive) == 0) {
                start({item.bottle, program.key()});
                return;
            }
        }
        Q_EMIT openRequested(item.path);
    });
}

void AddDispatcher::start(const ProgramRef& program) {
    Q_EMIT openRequested("lumorawine://" + program.bottle + '/' + program.uuid);
}

void AddDispatcher::addPortable(const QString& path) {
    const PortableProgram* program = PortableProgram::start(path, m_window);
    connect(program, &PortableProgram::startRequested, this, &AddDispatcher::start);
}

void AddDispatcher::askForSeveral(const QVector<AddItem>& programs) {
    QStringList names;
    for (const AddItem& program : programs)
        names += program.shown;
    auto* dialog = new Fenk::Dialog(
        tr("Run Several Programs"),
        tr("Each gets a container of its own:\n%1").arg(QLocale().createSeparatedList(names)), m_window);
    dialog->setObjectName("several_programs_question");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(tr("Cancel"));
    const int run = dialog->addButton(tr("Run All"), true, Fenk::Dialog::ButtonRecommend);
    connect(dialog, &Fenk::Dialog::buttonClicked, this, [this, run, programs](int index) {
        for (int i = 0; index == run && i < programs.size(); ++i)
            open(programs[i]);
    });
    dialog->open();
}

void AddDispatcher::refuse(const QString& errorText) {
    qWarning().noquote() << "not added:" << errorText;
    auto* dialog = new Fenk::Dialog(tr("This cannot be added"), errorText, m_window);
    dialog->setObjectName("add_refusal");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(tr("Close"), true);
    dialog->open();
}

#include "shell/AddDispatcher.h"

#include <QDebug>
#include <QFileInfo>
#include <QJsonObject>
#include <QLocale>
#include <QUuid>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "fenk/window/Dialog.h"
#include "shell/portable/PortableProgram.h"

AddDispatcher::AddDispatcher(QWidget* window)
    : QObject(window), m_window(window), m_reading(new AddReading(this)) {
    connect(m_reading, &AddReading::slow, this, &AddDispatcher::showReading);
    connect(m_reading, &AddReading::done, this, &AddDispatcher::onRead);
}

void AddDispatcher::take(const QStringList& inputs) {
    m_reading->start(inputs);
}

void AddDispatcher::showReading() {
    m_readingDialog = new Fenk::Dialog(tr("Looking at the Files"),
                                       tr("Waiting for the disk or the server that has the file"), m_window);
    m_readingDialog->setObjectName("add_reading");
    m_readingDialog->setAttribute(Qt::WA_DeleteOnClose);
    m_readingDialog->addButton(tr("Cancel"));
    connect(m_readingDialog, &QDialog::finished, m_reading, &AddReading::cancel);
    m_readingDialog->open();
}

void AddDispatcher::onRead(const AddRequest& request) {
    if (m_readingDialog)
        m_readingDialog->close();
    switch (request.kind) {
        case AddRequest::Kind::Nothing:
            break;
        case AddRequest::Kind::Open:
        case AddRequest::Kind::Several:
            carryOut(request);
            break;
        case AddRequest::Kind::Manifest:
        case AddRequest::Kind::Portable:
        case AddRequest::Kind::Address:
            Q_EMIT pageRequested(request);
            break;
        case AddRequest::Kind::Refused:
            refuse(tr("This cannot be added"),
                   request.items.isEmpty() ? request.errorText : request.shown() + '\n' + request.errorText);
            break;
    }
}

void AddDispatcher::carryOut(const AddRequest& request) {
    if (request.kind == AddRequest::Kind::Open)
        open(request.items.first());
    else if (request.kind == AddRequest::Kind::Several)
        askForSeveral(request.items);
    else if (request.kind == AddRequest::Kind::Portable)
        addPortable(request.items.first().path);
}

void AddDispatcher::open(const AddItem& item) {
    if (item.bottle.isEmpty())
        Q_EMIT openRequested(item.path);
    else
        openInBottle(item);
}

/// A shortcut in a bottle means the program there, with what was installed beside it.
void AddDispatcher::openInBottle(const AddItem& item) {
    BottlesConfig::instance()->watchBottle(
        item.bottle, this, [this, item](const BusResult& result) { startInBottle(item, result); });
}

void AddDispatcher::startInBottle(const AddItem& item, const BusResult& bottle) {
    if (!bottle.ok || BottleRecord::path(bottle.object()).isEmpty()) {
        refuse(tr("%1 cannot be started").arg(item.shown),
               bottle.ok ? tr("Its container %1 is not known any more.").arg(item.bottle)
                         : tr("Its container %1 could not be read: %2").arg(item.bottle, bottle.errorText()));
        return;
    }
    const QJsonObject programs = BottleRecord::programs(bottle.object());
    for (auto program = programs.begin(); program != programs.end(); ++program) {
        const QString path = ProgramRecord::path(program.value().toObject());
        if (path.compare(item.windowsPath, Qt::CaseInsensitive) == 0) {
            start({item.bottle, program.key()});
            return;
        }
    }
    enterInBottle(item);
}

void AddDispatcher::enterInBottle(const AddItem& item) {
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QString name = QFileInfo(item.shown).completeBaseName();
    const auto enter = [item, record = ProgramRecord::minimal(id, name, item.windowsPath)] {
        return BottlesConfig::instance()->updateExternalProgram(item.bottle, record);
    };
    changeServiceAsync(this, enter, [this, item, id](const BusResult& result) {
        if (result.ok)
            start({item.bottle, id});
        else
            refuse(tr("%1 cannot be started").arg(item.shown),
                   tr("It could not be added to its container %1: %2").arg(item.bottle, result.errorText()));
    });
}

void AddDispatcher::start(const ProgramRef& program) {
    Q_EMIT openRequested("lumorawine://" + program.bottle + '/' + program.uuid);
}

void AddDispatcher::addPortable(const QString& path) {
    const PortableProgram* program = PortableProgram::start(path, m_window);
    connect(program, &PortableProgram::startRequested, this, &AddDispatcher::start);
    connect(program, &PortableProgram::added, this, [this, path] { Q_EMIT portableAdded(path); });
}

void AddDispatcher::askForSeveral(const QVector<AddItem>& programs) {
    QStringList names;
    for (const AddItem& program : programs)
        names += program.shown;
    auto* dialog = new Fenk::Dialog(
        tr("Run Several Programs"),
        tr("These are started one after the other:\n%1").arg(QLocale().createSeparatedList(names)), m_window);
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

void AddDispatcher::refuse(const QString& title, const QString& errorText) {
    qWarning().noquote() << "not added:" << errorText;
    auto* dialog = new Fenk::Dialog(title, errorText, m_window);
    dialog->setObjectName("add_refusal");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(tr("Close"), true);
    dialog->open();
}

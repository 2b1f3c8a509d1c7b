#pragma once

#include <QObject>
#include <QString>

/// What the service's executable does for a shell instead of being the service.
namespace TemplateCommand {

/// 1 when templates have to be made anew, 0 otherwise. Asks no service and starts none.
int check(const QString& dataDir);

/// Lets the service make all templates anew, prints what it does, and returns 0 when all went well. The
/// service goes on when this process is ended.
int recreate();

/// Makes the template of the default runner if it is missing, in this process and without the bus; SIGTERM
/// takes back what would take longer than a second, and so does a service that is started meanwhile. Leaves
/// it to a service that runs, and never fails: what was not made is made with the first bottle.
int prepare(const QString& dataDir);

}  // namespace TemplateCommand

/// Prints the service's lines, on standard output, which nobody has to read.
class TemplatePrinter : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void print(const QString& line);
};

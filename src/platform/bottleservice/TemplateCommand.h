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

}  // namespace TemplateCommand

/// Prints the service's lines, on standard output, which nobody has to read.
class TemplatePrinter : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void print(const QString& line);
};

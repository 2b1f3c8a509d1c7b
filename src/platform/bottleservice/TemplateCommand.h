#pragma once

#include <QObject>
#include <QString>

/// The commands of the service's executable that run instead of the service.
namespace TemplateCommand {

/// Returns 1 when templates must be made again, 0 otherwise. Neither calls nor starts the service.
int check(const QString& dataDir);

/// Lets the service make all templates again, prints its progress, and returns 0 on success. The service
/// continues when this process is ended.
int recreate();

/// Makes the template of the default runner if it is missing, in this process and without the bus. SIGTERM,
/// and a service that is started meanwhile, cancel it unless it is done in a second. Does nothing while a
/// service runs. Always returns 0: a template that was not made is made with the first bottle.
int prepare(const QString& dataDir);

}  // namespace TemplateCommand

/// Prints the lines that the service sends, on standard output.
class TemplatePrinter : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void print(const QString& line);
};

#include "shell/Mainwindow.h"

#include <QCoreApplication>

#include "fenk/Theme.h"
#include "fenk/TitleBar.h"
#include "shell/WelcomePage.h"

namespace {
constexpr QSize FixedSize(950, 700);
}

Mainwindow::Mainwindow() {
    setObjectName("mainwindow");
    setAccessibleName("mainwindow");
    setWindowTitle(QCoreApplication::translate("Main", "Cellarix"));
    setFixedSize(FixedSize);
    titlebar()->setIcon(Fenk::Theme::icon("cellarix"));
    auto* page = new WelcomePage;
    connect(page, &WelcomePage::fileChosen, this, &Mainwindow::openRequested);
    setCentralWidget(page);
    page->setFocus();
}

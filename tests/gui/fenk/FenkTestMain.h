#pragma once

#include <QTemporaryDir>
#include <QtTest>

#include "fenk/window/Application.h"

/// A test program with our application object, and with a home of its own.
#define FENK_TEST_MAIN(Test)                                                                    \
    int main(int argc, char** argv) {                                                           \
        const QTemporaryDir home;                                                               \
        for (const char* name :                                                                 \
             {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) \
            qputenv(name, QFile::encodeName(home.path()));                                      \
        Fenk::Application app(argc, argv);                                                      \
        Test test;                                                                              \
        return QTest::qExec(&test, argc, argv);                                                 \
    }

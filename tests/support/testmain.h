#pragma once

#include "support/isolation.h"

#include <QApplication>
#include <QTest>

/// The `main` of a test program: isolated, without network, one application object.
#define NUBARIA_TEST_MAIN(TestClass)                                                                         \
    int main(int argc, char *argv[])                                                                         \
    {                                                                                                        \
        const Isolation isolation;                                                                           \
        const QApplication application(argc, argv);                                                          \
        const SilentNetwork network;                                                                         \
        TestClass test;                                                                                      \
        return QTest::qExec(&test, argc, argv);                                                              \
    }

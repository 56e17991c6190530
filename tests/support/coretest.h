#pragma once

#include "support/home.h"
#include "support/isolation.h"

#include <QCoreApplication>
#include <QTest>

/// A test whose cases begin without tasks and preferences.
class CoreTest : public QObject
{
    Q_OBJECT
protected slots:
    void init() { home::reset(); }
};

/// The `main` of a program that tests what needs no window: isolated, one application object.
#define NUBARIA_CORE_TEST_MAIN(TestClass)                                                                    \
    int main(int argc, char *argv[])                                                                         \
    {                                                                                                        \
        const Isolation isolation;                                                                           \
        const QCoreApplication application(argc, argv);                                                      \
        TestClass test;                                                                                      \
        return QTest::qExec(&test, argc, argv);                                                              \
    }

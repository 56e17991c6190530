#pragma once

#include "support/coretest.h"
#include "support/filedialog.h"
#include "support/silentnetwork.h"
#include "support/traymessages.h"

#include <QApplication>
#include <QRegularExpression>
#include <QTest>

/// A test whose cases begin without tasks and preferences, and before any message or question.
class WindowTest : public CoreTest
{
    Q_OBJECT
protected slots:
    void init()
    {
        CoreTest::init();
        // Of a sheet with a slip Qt keeps what it understands, and goes on.
        QTest::failOnWarning(QRegularExpression(QStringLiteral("Could not parse .*stylesheet")));
        filedialog::clear();
        traymessages::clear();
    }
};

/// The `main` of a program that tests widgets: isolated, without network, one application object.
#define NUBARIA_TEST_MAIN(TestClass)                                                                         \
    int main(int argc, char *argv[])                                                                         \
    {                                                                                                        \
        const Isolation isolation;                                                                           \
        const QApplication application(argc, argv);                                                          \
        const SilentNetwork network;                                                                         \
        TestClass test;                                                                                      \
        return QTest::qExec(&test, argc, argv);                                                              \
    }

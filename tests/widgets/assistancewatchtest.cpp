#include "widgets/assistancewatch.h"

#include "support/coretest.h"
#include "support/replaced.h"

#include <memory>

namespace {

bool &isAtWork()
{
    static bool atWork = false;
    return atWork;
}

} // namespace

// This definition wins over Qt's, whose answer is the platform's.
bool QAccessible::isActive()
{
    return isAtWork();
}
NUBARIA_REPLACES("_ZN11QAccessible8isActiveEv");

class AssistanceWatchTest final : public CoreTest
{
    Q_OBJECT
private slots:
    void init() { isAtWork() = false; }

    void callsOnceAssistiveTechnologyComes()
    {
        int calls = 0;
        const AssistanceWatch watch(nullptr, [&calls] { ++calls; });
        QAccessible::setActive(false);
        QCOMPARE(calls, 0);

        QAccessible::setActive(true);
        QCOMPARE(calls, 1);

        QAccessible::setActive(false);
        QAccessible::setActive(true);
        QCOMPARE(calls, 1);
    }

    void callsAtOnceWhereItIsThere()
    {
        isAtWork() = true;
        int calls = 0;
        const AssistanceWatch watch(nullptr, [&calls] { ++calls; });
        QCOMPARE(calls, 1);

        QAccessible::setActive(true);
        QCOMPARE(calls, 1);
    }

    void watchesNoMoreThanItLives()
    {
        int calls = 0;
        auto watch = std::make_unique<AssistanceWatch>(nullptr, [&calls] { ++calls; });
        watch.reset();

        QAccessible::setActive(true);

        QCOMPARE(calls, 0);
    }
};

NUBARIA_CORE_TEST_MAIN(AssistanceWatchTest)
#include "assistancewatchtest.moc"

#include "session.h"

#include "mainwindow/mainwindow.h"
#include "support/isolation.h"
#include "support/silentnetwork.h"

#include <QApplication>

#include <array>
#include <bit>
#include <cstdlib>
#include <iostream>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

// libFuzzer reads and clears what lies in this section.
__attribute__((section("__libfuzzer_extra_counters"))) std::array<std::uint8_t, 0x10000> seen;

/// What every target runs in: a home of its own, no network, one application object.
class Session final
{
    Q_DISABLE_COPY_MOVE(Session)
public:
    Session(int &argc, char **argv)
        : m_application(argc, argv)
    {
    }

    MainWindow &window() { return m_window ? *m_window : m_window.emplace(); }

private:
    Isolation m_isolation;
    QApplication m_application;
    SilentNetwork m_network;
    std::optional<MainWindow> m_window;
};

// libFuzzer has no end of its own, and at the process's end it is too late for an application object: there
// it stays.
Session *session = nullptr;

void keepQuiet(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    if (type == QtFatalMsg) {
        std::cerr << qPrintable(message) << std::endl;
    }
}

void refuseWarnings(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    // Qt's remark on a script for which the machine has no font.
    const bool isAboutFonts = message.contains("OpenType support missing"_L1);
    if (type != QtDebugMsg && type != QtInfoMsg && !isAboutFonts) {
        std::cerr << qPrintable(message) << std::endl;
        expect(false, "nothing is logged but what the input asks for");
    }
}

} // namespace

void expect(bool holds, const char *promise)
{
    if (!holds) {
        std::cerr << "broken promise: " << promise << std::endl;
        std::abort();
    }
}

void markSeen(std::uint32_t what, std::uint32_t value)
{
    constexpr std::uint32_t spread = 2654435761U;
    seen.at(((what * 8191U + value) * spread) >> 16U) = 1;
}

std::uint32_t magnitude(std::int64_t number)
{
    return static_cast<std::uint32_t>(std::bit_width(static_cast<std::uint64_t>(number)));
}

MainWindow &theWindow()
{
    return session->window();
}

void settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void forbidWarnings()
{
    qInstallMessageHandler(refuseWarnings);
}

void closeSession()
{
    delete session;
    session = nullptr;
}

// Fontconfig keeps what it has read of its configuration until the process ends.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the name is the sanitizer's
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig";
}

// Only what Clang's sanitizers are linked to has it.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the name is the sanitizer's
extern "C" __attribute__((weak)) void __lsan_do_leak_check();

namespace {

// Once Qt 6.8 has lost what it keeps for a thread it complains that the application object stays, and what
// that keeps looks leaked. No input has brought that about: what the inputs have leaked is looked for before.
void endQuietly()
{
    if (session == nullptr) {
        return;
    }
    if (__lsan_do_leak_check != nullptr) {
        __lsan_do_leak_check();
    }
    qInstallMessageHandler(keepQuiet);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char ***argv)
{
    static std::array<char *, 2> name = {(*argv)[0], nullptr};
    static int count = 1; // the options are libFuzzer's
    qInstallMessageHandler(keepQuiet);
    session = new Session(count, name.data());
    static_cast<void>(std::atexit(endQuietly));
    return 0;
}

// Starts a program and tells when its first window was painted, the same way for every program.
//
// Usage: firstpaint [--settle SECONDS] -- PROGRAM [ARGUMENT]...
//
// The display reports damage to every window that its clients make. The first damage after which a window of
// some size holds more than one colour is the first painted window: what a server's own background leaves is
// one colour. Prints wall time and processor time since the start, both in milliseconds; with --settle, also
// the proportional set size in kB that many seconds later. The window is then asked to close.

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::chrono::seconds patience{60};
constexpr std::uint16_t smallestSide = 150; // pixels; smaller windows are trays, pop-ups and splash marks

[[noreturn]] void fail(const char *what)
{
    std::cerr << "firstpaint: " << what << '\n';
    std::exit(1);
}

template <typename Reply> using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply> Owned<Reply> owned(Reply *reply)
{
    return {reply, &std::free};
}

class Display final
{
public:
    Display()
        : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection)) {
            fail("no display");
        }
        const xcb_query_extension_reply_t *extension = xcb_get_extension_data(m_connection, &xcb_damage_id);
        if (!extension || !extension->present) {
            fail("the display does not report damage");
        }
        m_damageEvent = extension->first_event + XCB_DAMAGE_NOTIFY;
        owned(xcb_damage_query_version_reply(
            m_connection, xcb_damage_query_version(m_connection, 1, 1), nullptr));
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        xcb_change_window_attributes(m_connection, root, XCB_CW_EVENT_MASK, &events);
        xcb_flush(m_connection);
    }
    ~Display() { xcb_disconnect(m_connection); }
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    /// Handles what has come; the window that was damaged first among it, or none.
    xcb_window_t nextDamagedWindow()
    {
        xcb_window_t damaged = XCB_NONE;
        while (damaged == XCB_NONE) {
            const auto event = owned(xcb_poll_for_event(m_connection));
            if (!event) {
                break;
            }
            damaged = handle(*event);
        }
        xcb_flush(m_connection);
        return damaged;
    }

    void waitForEvents(Milliseconds longest)
    {
        pollfd descriptor{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        poll(&descriptor, 1, static_cast<int>(longest.count()));
    }

    bool isPainted(xcb_window_t window)
    {
        const auto attributes = owned(xcb_get_window_attributes_reply(
            m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
        const auto geometry
            = owned(xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
        // Only a program's own window has a class; the frame around it is the window manager's.
        const auto name = owned(xcb_get_property_reply(m_connection,
            xcb_get_property(m_connection, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 1), nullptr));
        if (!attributes || !geometry || !name || name->value_len == 0
            || attributes->map_state != XCB_MAP_STATE_VIEWABLE
            || std::min(geometry->width, geometry->height) < smallestSide) {
            return false;
        }
        const auto image = owned(xcb_get_image_reply(m_connection,
            xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, geometry->width,
                geometry->height, ~0U),
            nullptr));
        return image && hasTwoColours(*image);
    }

    void askToClose(xcb_window_t window)
    {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = atom("WM_PROTOCOLS");
        message.data.data32[0] = atom("WM_DELETE_WINDOW");
        xcb_send_event(
            m_connection, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&message));
        xcb_flush(m_connection);
    }

private:
    xcb_window_t handle(const xcb_generic_event_t &event)
    {
        const int type = event.response_type & 0x7f;
        if (type == XCB_CREATE_NOTIFY) {
            const auto &created = reinterpret_cast<const xcb_create_notify_event_t &>(event);
            const xcb_damage_damage_t damage = xcb_generate_id(m_connection);
            xcb_damage_create(m_connection, damage, created.window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        } else if (type == m_damageEvent) {
            return reinterpret_cast<const xcb_damage_notify_event_t &>(event).drawable;
        }
        return XCB_NONE;
    }

    static bool hasTwoColours(const xcb_get_image_reply_t &image)
    {
        const std::uint8_t *bytes = xcb_get_image_data(&image);
        const int length = xcb_get_image_data_length(&image);
        constexpr int pixel = 4;
        return length > pixel && std::memcmp(bytes, bytes + pixel, length - pixel) != 0;
    }

    xcb_atom_t atom(std::string_view name)
    {
        const auto reply = owned(xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, name.size(), name.data()), nullptr));
        return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    xcb_connection_t *m_connection = nullptr;
    int m_damageEvent = 0;
};

/// Processor time of all threads of the process so far.
Milliseconds processorTime(pid_t process)
{
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0) {
        fail("the program has ended before it painted a window");
    }
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

long proportionalSetSize(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
    std::string word;
    long size = 0;
    while (file >> word) {
        if (word == "Pss:") {
            file >> size;
            return size;
        }
    }
    fail("the program has ended before its memory was measured");
}

pid_t start(char *const *command)
{
    const pid_t process = fork();
    if (process == 0) {
        execvp(command[0], command);
        std::perror("firstpaint: the program cannot be started");
        _exit(127);
    }
    return process;
}

void end(Display &display, xcb_window_t window, pid_t process)
{
    display.askToClose(window);
    for (const auto limit = Clock::now() + std::chrono::seconds(5); Clock::now() < limit;) {
        if (waitpid(process, nullptr, WNOHANG) == process) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    kill(process, SIGKILL); // one that asks whether it may close, or hides
    waitpid(process, nullptr, 0);
}

int run(char *const *command, std::chrono::seconds settle)
{
    Display display;
    display.waitForEvents(Milliseconds(0));
    const auto begin = Clock::now();
    const pid_t process = start(command);
    while (Clock::now() - begin < patience) {
        const xcb_window_t window = display.nextDamagedWindow();
        if (window == XCB_NONE) {
            display.waitForEvents(Milliseconds(100));
            continue;
        }
        const Milliseconds wall = Clock::now() - begin;
        const Milliseconds processor = processorTime(process);
        if (!display.isPainted(window)) {
            continue;
        }
        std::cout << std::fixed << std::setprecision(3) << wall.count() << ' ' << processor.count();
        if (settle.count() > 0) {
            std::this_thread::sleep_for(settle);
            std::cout << ' ' << proportionalSetSize(process);
        }
        std::cout << std::endl;
        end(display, window, process);
        return 0;
    }
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    fail("no window was painted");
}

} // namespace

int main(int argc, char **argv)
{
    std::chrono::seconds settle{0};
    int next = 1;
    if (next + 1 < argc && std::string_view(argv[next]) == "--settle") {
        settle = std::chrono::seconds(std::strtol(argv[next + 1], nullptr, 10));
        next += 2;
    }
    if (next + 1 >= argc || std::string_view(argv[next]) != "--") {
        fail("usage: firstpaint [--settle SECONDS] -- PROGRAM [ARGUMENT]...");
    }
    return run(argv + next + 1, settle);
}

// A library to be loaded before all others (LD_PRELOAD): it counts and times the calls into the system that
// concern one file, and has one of them go wrong.
//
//   FAULTY_FILE    path of the file, as the program spells it
//   FAULTY_TRACE   file that holds a line for each call when the program has ended by itself: kind, open
//   flags or size
//                  asked for, result or negative error, nanoseconds before and after the call, bytes of
//                  memory in use before it
//   FAULTY_CALL    "NUMBER KIND [ARGUMENT]": what becomes of the call with this number, counted from 1:
//                    fail ERROR      it is not made, and this is the error; a close is made all the same
//                    short SIZE      no more than this is read or written
//                    full SIZE       no more than this is written, and each later write fails for want of
//                    space amid SIZE       no more than this is written, then the process is killed before,
//                    after   the process is killed before or after the call
//
// Counting begins when the program calls `faultyFileBegin`.

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>

#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

enum class Fault { None, Fail, Short, Full, Amid, Before, After };

struct Plan
{
    const char *path = nullptr;
    int number = 0;
    Fault fault = Fault::None;
    long argument = 0;
};

struct Call
{
    const char *kind = "";
    long long asked = 0;
    long long result = 0;
    long long begun = 0;
    long long ended = 0;
    std::size_t memory = 0;
};

std::array<bool, 1024> isOurs{};
std::array<Call, 1024> calls{};
std::size_t made = 0;
bool counting = false;
bool isFull = false;

Plan makePlan()
{
    Plan plan{.path = getenv("FAULTY_FILE")};
    const char *text = getenv("FAULTY_CALL");
    if (text == nullptr) {
        return plan;
    }
    char *kind = nullptr;
    plan.number = static_cast<int>(strtol(text, &kind, 10));
    constexpr std::array names = {" none", " fail", " short", " full", " amid", " before", " after"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::size_t length = strlen(names.at(i));
        if (strncmp(kind, names.at(i), length) == 0) {
            plan.fault = static_cast<Fault>(i);
            plan.argument = strtol(kind + length, nullptr, 10);
        }
    }
    return plan;
}

const Plan &plan()
{
    static const Plan fromEnvironment = makePlan();
    return fromEnvironment;
}

bool isPath(const char *path)
{
    return counting && path != nullptr && plan().path != nullptr && strcmp(path, plan().path) == 0;
}

bool isDescriptor(int descriptor)
{
    const auto index = static_cast<std::size_t>(descriptor);
    return descriptor >= 0 && index < isOurs.size() && isOurs.at(index);
}

long long now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<long long>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

[[noreturn]] void die()
{
    kill(getpid(), SIGKILL);
    abort();
}

bool is(Fault fault)
{
    return made == static_cast<std::size_t>(plan().number) && plan().fault == fault;
}

Call &begin(const char *kind, long long asked)
{
    Call &call = calls.at(made++);
    const struct mallinfo2 memory = mallinfo2();
    call = {.kind = kind, .asked = asked, .memory = memory.uordblks + memory.hblkhd};
    call.begun = now();
    return call;
}

// What the call returns, with the error set; `make` makes it.
template <typename Make> auto finish(Call &call, const Make &make)
{
    if (is(Fault::Before)) {
        die();
    }
    decltype(make()) result = -1;
    if (is(Fault::Fail)) {
        errno = static_cast<int>(plan().argument);
    } else {
        result = make();
    }
    call.ended = now();
    call.result = result < 0 ? -errno : static_cast<long long>(result);
    if (is(Fault::After) || is(Fault::Amid)) {
        die();
    }
    return result;
}

template <typename Make> auto perform(bool concerns, const char *kind, const Make &make)
{
    return concerns ? finish(begin(kind, 0), make) : make();
}

// `make` opens.
template <typename Make> int performOpen(const char *path, int flags, const Make &make)
{
    if (!isPath(path)) {
        return make();
    }
    const int descriptor = finish(begin("open", flags), make);
    if (descriptor >= 0) {
        isOurs.at(static_cast<std::size_t>(descriptor)) = true;
    }
    return descriptor;
}

// `make` reads or writes as much as it is given.
template <typename Make>
ssize_t transfer(int descriptor, const char *kind, std::size_t size, const Make &make)
{
    if (!isDescriptor(descriptor)) {
        return make(size);
    }
    Call &call = begin(kind, static_cast<long long>(size));
    if (isFull && strcmp(kind, "write") == 0) {
        call.result = -ENOSPC;
        errno = ENOSPC;
        return -1;
    }
    isFull = isFull || is(Fault::Full);
    const bool partly = is(Fault::Short) || is(Fault::Full) || is(Fault::Amid);
    return finish(call, [&] { return make(partly ? static_cast<std::size_t>(plan().argument) : size); });
}

mode_t creationMode(int flags, va_list arguments)
{
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

// The C library's own function of this name.
#define REAL(name) static auto *const real = reinterpret_cast<decltype(&(name))>(dlsym(RTLD_NEXT, #name))

#define OPENING(name)                                                                                        \
    int name(const char *path, int flags, ...)                                                               \
    {                                                                                                        \
        REAL(name);                                                                                          \
        va_list arguments;                                                                                   \
        va_start(arguments, flags);                                                                          \
        const mode_t mode = creationMode(flags, arguments);                                                  \
        va_end(arguments);                                                                                   \
        return performOpen(path, flags, [=] { return real(path, flags, mode); });                            \
    }

#define ON_PATH(kind, name, parameters, path, ...)                                                           \
    int name parameters noexcept                                                                             \
    {                                                                                                        \
        REAL(name);                                                                                          \
        return perform(isPath(path), kind, [=] { return real(__VA_ARGS__); });                               \
    }

#define ON_DESCRIPTOR(kind, result, name, parameters, ...)                                                   \
    result name parameters                                                                                   \
    {                                                                                                        \
        REAL(name);                                                                                          \
        return perform(isDescriptor(descriptor), kind, [=] { return real(__VA_ARGS__); });                   \
    }

#define TRANSFER(kind, name, parameters, ...)                                                                \
    ssize_t name parameters                                                                                  \
    {                                                                                                        \
        REAL(name);                                                                                          \
        return transfer(descriptor, kind, size, [=](std::size_t part) { return real(__VA_ARGS__); });        \
    }

extern "C" {

void faultyFileBegin()
{
    counting = true;
}

__attribute__((destructor)) static void writeTrace()
{
    const char *path = getenv("FAULTY_TRACE");
    if (path == nullptr) {
        return;
    }
    std::ofstream trace(path);
    for (std::size_t i = 0; i < made; ++i) {
        const Call &call = calls.at(i);
        trace << call.kind << ' ' << call.asked << ' ' << call.result << ' ' << call.begun << ' '
              << call.ended << ' ' << call.memory << '\n';
    }
}

OPENING(open)
OPENING(open64)
ON_PATH("access", access, (const char *path, int mode), path, path, mode)
ON_PATH("stat", stat, (const char *path, struct stat *status), path, path, status)
ON_PATH("stat", stat64, (const char *path, struct stat64 *status), path, path, status)
ON_PATH("rename", rename, (const char *from, const char *to), to, from, to)
ON_PATH("unlink", unlink, (const char *path), path, path)
TRANSFER("read", read, (int descriptor, void *data, std::size_t size), descriptor, data, part)
TRANSFER(
    "read", pread64, (int descriptor, void *data, std::size_t size, off64_t at), descriptor, data, part, at)
TRANSFER("write", write, (int descriptor, const void *data, std::size_t size), descriptor, data, part)
TRANSFER("write", pwrite64, (int descriptor, const void *data, std::size_t size, off64_t at), descriptor,
    data, part, at)
ON_DESCRIPTOR(
    "write", ssize_t, writev, (int descriptor, const iovec *parts, int count), descriptor, parts, count)
ON_DESCRIPTOR("seek", off64_t, lseek64, (int descriptor, off64_t to, int from) noexcept, descriptor, to, from)
ON_DESCRIPTOR("fstat", int, fstat, (int descriptor, struct stat *status) noexcept, descriptor, status)
ON_DESCRIPTOR("fstat", int, fstat64, (int descriptor, struct stat64 *status) noexcept, descriptor, status)
ON_DESCRIPTOR("truncate", int, ftruncate64, (int descriptor, off64_t size) noexcept, descriptor, size)
ON_DESCRIPTOR("sync", int, fsync, (int descriptor), descriptor)
ON_DESCRIPTOR("sync", int, fdatasync, (int descriptor), descriptor)

int statx(int folder, const char *path, int flags, unsigned mask, struct statx *status) noexcept
{
    REAL(statx);
    const bool byDescriptor = isDescriptor(folder);
    return perform(byDescriptor || isPath(path), byDescriptor ? "fstat" : "stat",
        [=] { return real(folder, path, flags, mask, status); });
}

// A close that fails has closed all the same.
int close(int descriptor)
{
    REAL(close);
    if (!isDescriptor(descriptor)) {
        return real(descriptor);
    }
    isOurs.at(static_cast<std::size_t>(descriptor)) = false;
    Call &call = begin("close", 0);
    if (is(Fault::Fail)) {
        real(descriptor);
    }
    return finish(call, [=] { return real(descriptor); });
}
}

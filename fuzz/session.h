#pragma once

#include <cstdint>

class MainWindow;

/// Ends the process unless the promise holds: a finding to libFuzzer, a failure to a replay.
void expect(bool holds, const char *promise);

/**
 * Marks something about the input as seen. Qt is built without counters, so libFuzzer learns only from these
 * that an input made Qt's parser or decoder do something new. At most 65535 differ.
 */
void markSeen(std::uint32_t what, std::uint32_t value);

/// A number's order of magnitude, so that not every length counts as new.
std::uint32_t magnitude(std::int64_t number);

/// The one window of the process, built at the first call over the home folder of the time.
MainWindow &theWindow();

/// Lets the window do what it has put off, deletions included.
void settle();

/// From now on, every warning and error that is logged breaks a promise.
void forbidWarnings();

/// Ends what `LLVMFuzzerInitialize` has begun, the folders of the process included.
void closeSession();

#pragma once

#include <QLatin1StringView>

/// Name of the local server on which the running copy listens to be woken.
inline constexpr QLatin1StringView instanceServerName{"QuenoliIPC"};

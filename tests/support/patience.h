#pragma once

/// How long to wait for what a process or a server does, in milliseconds: a busy machine is slow.
inline constexpr int patience = 30000;

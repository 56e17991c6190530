#pragma once

/// Has Qt's core library call this function in place of the one that it imports by this name, which is
/// returned.
void *replaceImport(const char *name, void *replacement);

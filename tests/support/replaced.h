#pragma once

#include <QtGlobal>

/**
 * Stands behind a test program's own definition of one of Qt's functions, and names it as the linker does.
 *
 * Elsewhere the definition alone wins over that of Qt's library, and this only has the linker look for the
 * name, so that a wrong one is found everywhere. On Windows the program's calls go through a pointer, which
 * this makes one to the definition.
 */
#ifdef Q_OS_WIN
#pragma GCC diagnostic ignored "-Wattributes" // that it is defined here although it is imported
#define NUBARIA_REPLACES(name)                                                                               \
    asm(".data\n.balign 8\n.globl __imp_" name "\n__imp_" name ": .quad " name "\n.text\n")
#else
#define NUBARIA_REPLACES(name) asm(".pushsection .data\n.balign 8\n.quad " name "\n.popsection\n")
#endif

#pragma once

#include <QString>

/// Message boxes, which every target replaces by a count: none waits for an answer. Questions get "Yes".
namespace boxes {

int shown();
void clear();

} // namespace boxes

#pragma once

#include <QString>

#include <string_view>

/// The code units of a text that outlives them, which compare as numbers.
inline std::u16string_view codeUnits(const QString &text)
{
    return {reinterpret_cast<const char16_t *>(text.utf16()), static_cast<std::size_t>(text.size())};
}

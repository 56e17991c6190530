#pragma once

#include <QLatin1StringView>
#include <QString>

/// How one failed file operation is told: in the log and to the user. The two wordings differ by design.
struct FileReport
{
    const char *log = ""; ///< The error string follows after a blank, in double quotes.
    QLatin1StringView shown; ///< The error string follows directly.
};

/// Every report of a task file that could not be opened. Some differ in a letter only: they are what users
/// know.
namespace reports {

inline constexpr FileReport loadingTasks{
    "Failed to open file for reading:", QLatin1StringView("Error al cargar el dato: ")};
inline constexpr FileReport orderingTasks{loadingTasks.log, QLatin1StringView("Error el cargar el dato: ")};
inline constexpr FileReport searchingTasks{
    loadingTasks.log, QLatin1StringView("Error al cargar los datos: ")};
inline constexpr FileReport updatingTask{loadingTasks.log, QLatin1StringView("Error el cargar los datos: ")};
inline constexpr FileReport readingTask{
    loadingTasks.log, QLatin1StringView("Failed to open file for reading: ")};
inline constexpr FileReport writingTask{
    "Failed to open file for writing:", QLatin1StringView("Failed to open file for writing: ")};
inline constexpr FileReport creatingFile{
    "Hubo un error al crear el archivo:", QLatin1StringView("Hubo un error al crear el archivo: ")};
inline constexpr FileReport savingTask{
    "Error al abrir el archivo:", QLatin1StringView("Error al abrir el archivo: ")};

} // namespace reports

/// Writes a critical line to the log: `line`, then `error` in double quotes.
void logFileError(const char *line, const QString &error);

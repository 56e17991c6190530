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

using namespace Qt::Literals::StringLiterals;

inline constexpr FileReport loadingTasks{"Failed to open file for reading:", "Error al cargar el dato: "_L1};
inline constexpr FileReport orderingTasks{loadingTasks.log, "Error el cargar el dato: "_L1};
inline constexpr FileReport searchingTasks{loadingTasks.log, "Error al cargar los datos: "_L1};
inline constexpr FileReport updatingTask{loadingTasks.log, "Error el cargar los datos: "_L1};
inline constexpr FileReport readingTask{loadingTasks.log, "Failed to open file for reading: "_L1};
inline constexpr FileReport writingTask{
    "Failed to open file for writing:", "Failed to open file for writing: "_L1};
inline constexpr FileReport creatingFile{
    "Hubo un error al crear el archivo:", "Hubo un error al crear el archivo: "_L1};
inline constexpr FileReport savingTask{"Error al abrir el archivo:", "Error al abrir el archivo: "_L1};

} // namespace reports

/// Writes a critical line to the log: `line`, then `error` in double quotes.
void logFileError(const char *line, const QString &error);

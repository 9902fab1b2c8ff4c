#pragma once

#include "data/DataError.h"

#include <filesystem>

namespace zv::sqlite {

inline constexpr StringView noRight =
    u"no se puede escribir: dé a este usuario permiso de escritura sobre el fichero y sobre "
    u"su carpeta.";
inline constexpr StringView noRightToRead =
    u"no se puede leer: dé a este usuario permiso de lectura sobre el fichero y sobre los que estén "
    u"a su lado con el mismo nombre.";
inline constexpr StringView diskFull =
    u"no se puede abrir ni crear: el disco está lleno; deje sitio y repita la orden.";

/// A file that is no database, or not any more.
class DamagedFile : public RuntimeError {
public:
    explicit DamagedFile(const std::filesystem::path& file);
};

/// Follows links to the file itself, which need not exist.
std::filesystem::path resolved(std::filesystem::path file);
/// Fails with a message about a file that tells a person what to do.
[[noreturn]] void failFor(const std::filesystem::path& file, StringView words,
                          std::int32_t number = failure::otherData);
/// Precondition checks without the engine: fails where there is no file to open, or already one to create.
void checkPlace(const std::filesystem::path& file, bool create);
/// Whether the file and its side files (log, shared memory) can be read, as far as they exist.
bool canBeRead(const std::filesystem::path& file);
/// Deletes a database's file and its side files, as far as they exist.
void removeFile(const std::filesystem::path& file);

} // namespace zv::sqlite

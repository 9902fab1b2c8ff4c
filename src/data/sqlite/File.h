#pragma once

#include "runtime/Errors.h"

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

/// Fails with words about a file that tell a person what to do.
[[noreturn]] void failFor(const std::filesystem::path& file, StringView words);
/// Fails for what the place tells without the engine: there is nothing, or something already.
void checkPlace(const std::filesystem::path& file, bool create);
/// Whether the file and those that the engine keeps beside it can be read, as far as they are there.
bool canBeRead(const std::filesystem::path& file);
/// Takes away a database's file and what the engine keeps beside it, as far as they are there.
void removeFile(const std::filesystem::path& file);

} // namespace zv::sqlite

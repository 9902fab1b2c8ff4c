#include "runtime/SystemWords.h"

#include "runtime/System.h"

#include <system_error>
#include <utility>

namespace zv {

String wordsFor(const std::error_code& error)
{
    // The system's own words are English where its locale is not set, and on Windows there are none for
    // these.
    static constexpr std::pair<std::errc, StringView> known[] = {
        {std::errc::no_space_on_device, u"no queda sitio en el disco"},
        {std::errc::filename_too_long, u"el nombre es demasiado largo"},
        {std::errc::permission_denied, u"falta el permiso"},
        {std::errc::operation_not_permitted, u"falta el permiso"},
        {std::errc::read_only_file_system, u"en el disco sólo se puede leer"},
        {std::errc::no_such_file_or_directory, u"no existe"},
        {std::errc::not_a_directory, u"una de sus carpetas no es una carpeta"},
        {std::errc::is_a_directory, u"es una carpeta"},
        {std::errc::file_exists, u"ya existe"},
        {std::errc::directory_not_empty, u"la carpeta no está vacía"},
        {std::errc::file_too_large, u"es demasiado grande para ese disco"},
        {std::errc::io_error, u"el disco falla"},
    };
    for (const auto& [condition, words] : known)
        if (error == condition)
            return String(words);
    return systemWords(error);
}

} // namespace zv

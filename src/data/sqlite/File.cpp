#include "data/sqlite/File.h"

#include "data/Engine.h"

#include <fstream>
#include <utility>

namespace zv::sqlite {

DamagedFile::DamagedFile(const std::filesystem::path& file)
    : RuntimeError(failure::otherData,
                   u"«" + file.u16string() +
                       u"» no es una base de datos, o está dañada: compruebe el nombre, o ponga en su lugar "
                       u"la última copia de seguridad.")
{}

std::filesystem::path resolved(std::filesystem::path file)
{
    std::error_code error;
    for (int links = 0; links < 40; ++links) {
        const std::filesystem::path target = std::filesystem::read_symlink(file, error);
        if (error)
            break;
        file = file.parent_path() / target;
    }
    return file;
}

void failFor(const std::filesystem::path& file, StringView words, std::int32_t number)
{
    throw RuntimeError(number, u"«" + file.u16string() + u"» " + String(words));
}

namespace {

/// The live file of which this is one of the other two; empty if it is none, or that is not there.
std::filesystem::path liveOf(const std::filesystem::path& file)
{
    for (const auto& [which, word] :
         {std::pair(Database::borrado, StringView(u".borrado")), {Database::entrada, u".entrada"}}) {
        String name = file.filename().u16string();
        const std::size_t at = name.rfind(word);
        if (at == String::npos)
            continue;
        std::filesystem::path live = file.parent_path() / name.erase(at, word.size());
        std::error_code ignored;
        if (fileOf(live, which) == file && std::filesystem::exists(live, ignored))
            return live;
    }
    return {};
}

} // namespace

void checkPlace(const std::filesystem::path& file, bool create)
{
    std::error_code ignored;
    if (file.empty())
        throw RuntimeError(failure::otherData,
                           u"Falta el fichero de la base de datos: escriba sqlite:FICHERO.");
    if (std::filesystem::is_directory(file, ignored))
        failFor(file, u"es una carpeta; escriba el nombre de un fichero.");
    const bool exists = std::filesystem::exists(file, ignored);
    const String name = lowerName(file.u16string());
    for (const StringView ofServers : {u"SERVIDORES", u"ESQUEMA", u"ESPERA"})
        if (!exists && name.find(u";" + lowerName(ofServers) + u"=") != String::npos)
            failFor(withoutPassword(file.u16string()),
                    u"lleva " + String(ofServers) +
                        u"=, que es para servidores (odbc:): escriba sólo el nombre del fichero.");
    if (!exists && std::filesystem::is_symlink(std::filesystem::symlink_status(file, ignored)))
        failFor(file, u"es un enlace a un fichero que no existe: corrija el enlace, o elija otro nombre.");
    if (!create && exists && !std::filesystem::is_regular_file(file, ignored))
        failFor(file, u"no es un fichero con datos: compruebe el nombre.");
    if (create && exists)
        failFor(file, u"ya existe: elija otro nombre, o quítelo antes.");
    if (!create && !exists) {
        if (const std::filesystem::path live = liveOf(file); !live.empty())
            failFor(file, u"no existe, y un centro son tres ficheros: compruebe el nombre, tráigalo de donde "
                          u"estaba «" +
                              live.filename().u16string() + u"», o restaure una copia de seguridad.");
        failFor(file, u"no existe: compruebe el nombre, o cree antes la base de datos.");
    }
    if (create && file.has_parent_path() && !std::filesystem::is_directory(file.parent_path(), ignored))
        failFor(file, u"no se puede crear: su carpeta no existe.");
}

void removeFile(const std::filesystem::path& file)
{
    for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
        std::filesystem::path each = file;
        std::error_code ignored;
        std::filesystem::remove(each += suffix, ignored);
    }
}

bool canBeRead(const std::filesystem::path& file)
{
    for (const char* suffix : {"", "-wal", "-shm"}) {
        std::filesystem::path each = file;
        std::error_code ignored;
        if (std::filesystem::exists(each += suffix, ignored) && !std::ifstream(each))
            return false;
    }
    return true;
}

} // namespace zv::sqlite

#include "care/joins/JoinRecord.h"
#include "data/Statement.h"
#include "data/Transaction.h"
#include "zvconf/Command.h"

#include "data/Schools.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Words.h"
#include "runtime/Convert.h"
#include "suite/sodium/KeyFile.h"

namespace zv::zvconf {
namespace {

namespace fs = std::filesystem;

/// Path with a suffix appended.
fs::path beside(const fs::path& file, std::string_view ending)
{
    fs::path other = file;
    return other += ending;
}

constexpr StringView columns[] = {u"Nombre", u"Descripcion"};

/// Reference to a ciphertext in a database, with its value when it was read.
struct Enciphered {
    Connection* database;
    Long row;
    String column;
    String text;
    Long join = 0; ///< Of one in the record of a join: its number.
};

std::vector<Enciphered> encipheredTexts(const School& school)
{
    std::vector<Enciphered> all;
    for (Connection* database : {school.centro.get(), school.borrado.get()}) {
        const RecordsetPtr rows = database->Execute(u"Select * From Enfermedad Order By IDEnfermedad");
        for (; !rows->Eof(); rows->MoveNext())
            for (const StringView column : columns)
                // Skip NULL: a row of deleted records may have only its key.
                if (const String text = String() + rows->Fields(column); !text.empty())
                    all.push_back({database, CLng(rows->Fields(u"IDEnfermedad")), String(column), text});
    }
    // A row that was joined comes back when that is undone.
    for (const care::JoinRecord& each : care::joinRecords(*school.borrado))
        for (const history::Field& field : each.gone)
            if (const String text = String() + field.value;
                history::isSecret(each.pair.node->table, field.column) && !text.empty())
                all.push_back({school.borrado.get(), each.pair.goes, field.column, text, each.number});
    return all;
}

/// Re-encrypts a school with a new key, resumably: the new key is kept in a file of its own until every text
/// has it, so that the next run finishes one that was interrupted.
class KeyChange {
public:
    explicit KeyChange(const School& school)
        : school_(school), old_(readKey(place_)), begun_(exists(waiting_)),
          new_(begun_ ? readKey(waiting_) : CipherKey::random())
    {}

    int run()
    {
        if (!allReadable())
            return found;
        if (!begun_ && !createKey(waiting_, new_))
            failCipher(u"Otro programa está cambiando la clave: espere a que termine y repita la orden.");
        // Repeat until a pass finds none: other stations still write with the old key meanwhile.
        constexpr int mostPasses = 20;
        for (int passes = 0; const Long changed = pass(); changed_ += changed)
            if (++passes == mostPasses)
                failCipher(
                    u"Las enfermedades no dejan de cambiar. El cambio de clave queda a medias: cierre el "
                    u"programa en los demás puestos y repita la orden.");
        putNewKeyInPlace();
        printLine(statement(
            u"{}Textos cifrados con la clave nueva: {}; lo estaban ya: {}.",
            {begun_ ? u"Se ha terminado un cambio que quedó a medias. " : u"", changed_, already_}));
        printLine(u"La clave nueva está en " + place_.u16string() + u". Cópiela a los demás puestos.");
        printLine(u"La anterior queda en " + previous_.u16string() +
                  u"; bórrela cuando no haya copias de seguridad que la necesiten.");
        return done;
    }

private:
    /// Precondition, checked before any write: one of the two keys decrypts every text.
    bool allReadable() const
    {
        Long unreadable = 0;
        for (const Enciphered& each : encipheredTexts(school_)) {
            if (new_.open(each.text) || old_.open(each.text))
                continue;
            ++unreadable;
            printLine(
                statement(u"{}: la enfermedad {} no se puede descifrar ({}).",
                          {each.database == school_.centro.get() ? u"Base del centro" : u"Base de borrados",
                           each.row, each.column}));
        }
        if (unreadable > 0)
            printLine(
                statement(u"Textos que esta clave no descifra: {}. No se ha cambiado nada: ponga la clave "
                          u"con que se cifraron, o borre esas enfermedades.",
                          {unreadable}));
        return unreadable == 0;
    }
    /// One pass over all texts; returns how many it re-encrypted.
    Long pass()
    {
        Long changed = 0;
        already_ = 0;
        const std::vector<Enciphered> texts = encipheredTexts(school_);
        Transaction centro(*school_.centro);
        Transaction borrado(*school_.borrado);
        for (const Enciphered& each : texts) {
            if (new_.open(each.text)) {
                ++already_;
                continue;
            }
            const std::optional<String> plain = old_.open(each.text);
            if (!plain)
                failCipher(
                    statement(u"La enfermedad {} ha cambiado mientras tanto y ya no se puede descifrar. "
                              u"El cambio queda a medias: bórrela y repita la orden.",
                              {each.row}));
            // Compare-and-swap on the old text: what another station wrote since is left to the next pass.
            if (each.join != 0)
                care::replaceKept(*each.database, each.join, each.text, new_.seal(*plain));
            else
                each.database->Execute(
                    statement(u"Update Enfermedad Set {}='{}' Where IDEnfermedad={} And {}='{}'",
                              {each.column, new_.seal(*plain), each.row, each.column, doubled(each.text)}));
            ++changed;
        }
        centro.commit();
        borrado.commit();
        already_ -= changed_;
        return changed;
    }
    /// No earlier key is written over: copies of then may need each.
    void putNewKeyInPlace()
    {
        for (Long number = 2; !createKey(previous_, old_); ++number)
            previous_ = beside(place_, ".anterior-" + std::to_string(number));
        fs::rename(waiting_, place_);
    }

    fs::path place_ = keyPlace();
    fs::path waiting_ = beside(place_, ".nueva");
    fs::path previous_ = beside(place_, ".anterior");
    const School& school_;
    CipherKey old_;
    bool begun_;
    CipherKey new_;
    Long changed_ = 0; ///< Texts re-encrypted in this run.
    Long already_ = 0; ///< Texts re-encrypted by an earlier, interrupted run.
};

int makeKey(Arguments arguments)
{
    const Options options(arguments, {});
    const fs::path place = keyPlace();
    if (!createKey(place, CipherKey::random())) {
        readKey(place); // Fails with the better message if the file is no key.
        failCipher(u"Ya hay una clave en " + place.u16string() +
                   u": no se ha tocado. Con «zvconf clave cambiar» se hace una nueva.");
    }
    printLine(u"Creada la clave en " + place.u16string() +
              u". Guarde una copia en lugar seguro: sin ella las enfermedades no se pueden leer.");
    return done;
}

int tellPlace(Arguments arguments)
{
    const Options options(arguments, {});
    const fs::path place = keyPlace();
    printLine(place.u16string());
    try {
        readKey(place);
        return done;
    } catch (const RuntimeError& error) {
        printLine(error.description());
        return found;
    }
}

int changeKey(Arguments arguments)
{
    const Options options(arguments, {{u"--bd", 1}});
    const String& url = options.values(u"--bd").front();
    const School school = history::withHistory(openSchool(url), url);
    return KeyChange(school).run();
}

constexpr Command actions[] = {{u"crear", makeKey}, {u"lugar", tellPlace}, {u"cambiar", changeKey}};

} // namespace

int clave(Arguments arguments)
{
    for (const Command& action : actions)
        if (!arguments.empty() && arguments.front() == action.name)
            return action.run(arguments.subspan(1));
    throw UsageError(u"A clave le falta qué hacer: crear, lugar o cambiar.");
}

} // namespace zv::zvconf

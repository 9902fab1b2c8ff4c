#include "data/history/Verify.h"

#include "data/DataError.h"
#include "data/Statement.h"
#include "data/history/Chain.h"
#include "data/history/Erasure.h"

namespace zv::history {
namespace {

constexpr std::size_t mostFindings = 20;

class Verifier {
public:
    Verifier(Connection& centro, const std::optional<Head>& noted)
        : centro_(centro), noted_(noted), erasures_(centro)
    {}

    Verification run()
    {
        try {
            read(u"");
            // Read behind the entries: what was appended meanwhile lies between the last of them and the
            // head.
            result_.head = headOf(centro_);
            if (result_.head.number > last_.number)
                read(statement(u"Numero>{} AND Numero<={}", {last_.number, result_.head.number}));
            checkHead();
        } catch (const RuntimeError& error) {
            // A value that no engine of ours wrote: bytes, a text where a number belongs.
            if (error.number() != failure::otherData && error.number() != failure::typeMismatch &&
                error.number() != failure::overflow)
                throw;
            find(last_.number + 1, u"no se puede leer: " + error.description());
        }
        if (noted_ && !notedFound_)
            find(noted_->number, u"no es el que se anotó: falta, o ha cambiado.");
        return std::move(result_);
    }

private:
    void read(StringView condition)
    {
        forEach(centro_, condition, [&](const Entry& each) {
            check(each);
            return true;
        });
    }

    void check(const Entry& entry)
    {
        ++result_.entries;
        if (entry.number != last_.number + 1)
            find(entry.number,
                 statement(u"viene detrás del {}: falta lo que había en medio, o sobra él.", {last_.number}));
        if (entry.link != linkOf(last_.link, entry))
            find(entry.number, u"no enlaza con el anterior: uno de los dos ha cambiado.");
        checkTexts(entry);
        notedFound_ |= noted_ && noted_->number == entry.number && noted_->link == entry.link;
        // The link that is there, so that what follows is not blamed.
        last_ = {entry.number, entry.link};
    }

    void checkTexts(const Entry& entry)
    {
        const bool empty = entry.before.empty() && entry.after.empty() && entry.salt.empty();
        if (digestOf(entry) == entry.digest) {
            if (!empty && entry.kind != Kind::erased && erasures_.cover(entry))
                find(entry.number, u"se olvidó, y sus textos están otra vez ahí.");
            return;
        }
        if (!empty)
            find(entry.number, u"tiene otros textos que los que se anotaron.");
        else if (entry.kind == Kind::erased || !isErased(entry))
            find(entry.number, u"se ha quedado sin sus textos, y nadie los olvidó con la orden.");
    }

    bool isErased(const Entry& entry)
    {
        if (erasures_.cover(entry))
            return true;
        // Another station may have erased it since the erasures were read.
        if (const Long now = headOf(centro_).number; now != erasuresRead_) {
            erasures_ = Erasures(centro_);
            erasuresRead_ = now;
        }
        return erasures_.cover(entry);
    }

    void checkHead()
    {
        if (result_.head.number != last_.number || result_.head.link != last_.link)
            find(0, statement(u"dice que el último asiento es el {}, y el último que hay es el {}, o no "
                              u"es el mismo.",
                              {result_.head.number, last_.number}));
    }

    void find(Long number, String words)
    {
        ++result_.defects;
        if (result_.findings.size() < mostFindings)
            result_.findings.push_back({number, std::move(words)});
    }

    Connection& centro_;
    const std::optional<Head>& noted_;
    Erasures erasures_;
    Long erasuresRead_ = -1; ///< Head at which they were read again.
    Head last_;
    bool notedFound_ = false;
    Verification result_;
};

} // namespace

Verification verify(Connection& centro, const std::optional<Head>& noted)
{
    return Verifier(centro, noted).run();
}

} // namespace zv::history

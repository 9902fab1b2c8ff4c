#include "robot/Play.h"
#include "robot/ValueText.h"
#include "robot/Verbs.h"

#include "session/cConfiguracion.h"

namespace zv {

namespace {

/// Allow list: readable members of controls that are no properties, with their arity.
struct Readable {
    StringView name;
    std::size_t indices;
};
constexpr Readable readable[] = {
    {u"Text", 0},    {u"ListCount", 0}, {u"List", 1}, {u"ItemData", 1}, {u"TextMatrix", 2},
    {u"RowData", 1}, {u"ColWidth", 1},  {u"Tabs", 1}, {u"Selected", 1},
};

bool canBeRead(const Control& control, const MemberName& member)
{
    if (control.findProperty(member.name) != nullptr)
        return member.indices.empty();
    for (const Readable& each : readable)
        if (sameName(each.name, member.name))
            return each.indices == member.indices.size();
    return false;
}

Value controlMember(const Play& play, const GuionArgument& owner, const MemberName& member)
{
    Control& control = play.control(owner);
    if (!canBeRead(control, member))
        fail(failure::memberMissing);
    Value value = get(control, member.name, Arguments(member.indices.begin(), member.indices.end()));
    // A tab is an object; its caption stands for it.
    return sameName(member.name, u"Tabs") ? get(CObj(value), u"Caption") : value;
}

String formMember(const Play& play, StringView member)
{
    Form& form = play.formToLookAt();
    if (sameName(member, u"Foco"))
        return form.ActiveControl() != nullptr ? form.ActiveControl()->fullName() : valueText(ObjectPtr());
    if (sameName(member, u"Name"))
        return valueText(form.Name());
    const PropertyBase* property = form.findProperty(member);
    if (property == nullptr)
        fail(failure::memberMissing);
    return valueText(property->get());
}

String lookedAt(Play& play, const GuionArgument& owner, const MemberName& member)
{
    const auto of = [&](StringView name) { return member.indices.empty() && sameName(owner.text, name); };
    if (of(u"forma"))
        return formMember(play, member.name);
    if (of(u"config"))
        return valueText(get(Configuracion(), member.name));
    if (of(u"sesion"))
        return valueText(get(play.state().session, member.name));
    return valueText(controlMember(play, owner, member));
}

void look(Play& play, const GuionArgument& path)
{
    const std::size_t point = path.text.find(u'.');
    const GuionArgument owner{{}, path.text.substr(0, point), false};
    const auto member =
        parseMember(point == String::npos ? StringView() : StringView(path.text).substr(point + 1));
    if (!member || !parseMember(owner.text))
        play.mistake(u"se ve CONTROL.PROPIEDAD, con los índices entre paréntesis");
    try {
        play.observe(path.text + u" " + lookedAt(play, owner, *member));
    } catch (const RuntimeError& error) {
        if (error.number() == failure::listIndexOutside)
            play.mistake(path.text + u": el índice está fuera de rango");
        play.mistake(error.number() == failure::memberMissing ? owner.text + u" no tiene " + member->name
                                                              : error.description());
    }
}

void ver(Play& play, const GuionArguments& paths)
{
    for (const GuionArgument& path : paths)
        look(play, path);
}

constexpr Verb verbs[] = {{u"ver", u"p+", ver}};

} // namespace

std::span<const Verb> lookingVerbs() { return verbs; }

} // namespace zv

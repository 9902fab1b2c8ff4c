#include "com/AsignarDatos.h"

#include "com/Classes.h"
#include "com/Slots.h"
#include "session/cAsignarDatos.h"

namespace zv::com {

namespace {

Surroundings& current()
{
    static Surroundings surroundings;
    return surroundings;
}

enum Operation : std::size_t { bloquearBanco, obtenerDatos, activarFormulario, eliminar };

class AsignarDatos final : public Instance {
public:
    AsignarDatos();
    Value read(std::size_t /*field*/) override { return {}; }
    void write(std::size_t /*field*/, Value /*value*/) override {}
    Value run(std::size_t method, const Value& argument) override
    {
        Value result;
        const auto call = [&] { result = runPlain(method, argument); };
        if (current())
            current()(call);
        else
            call();
        return result;
    }

private:
    Value runPlain(std::size_t method, const Value& argument)
    {
        switch (method) {
        case bloquearBanco:
            facade_.BloquearBanco();
            return {};
        case obtenerDatos:
            facade_.ObtenerDatos(*argument.as<ObjectPtr>());
            return {};
        case activarFormulario:
            facade_.ActivarFormulario(*argument.as<Byte>());
            return {};
        default:
            return facade_.Eliminar(*argument.as<Byte>());
        }
    }
    cAsignarDatos facade_;
};

ZvResult ZV_CALL bloquearBancoSlot(Face* face)
{
    return guarded([&] { Self<Instance>(face)->run(bloquearBanco, {}); });
}

ZvResult ZV_CALL obtenerDatosSlot(Face* face, ZvDispatch** session)
{
    if (session == nullptr)
        return ZV_E_POINTER;
    return guarded([&] { Self<Instance>(face)->run(obtenerDatos, Travels<Kind::object>::in(*session)); });
}

ZvResult ZV_CALL activarFormularioSlot(Face* face, std::uint8_t node)
{
    return guarded([&] { Self<Instance>(face)->run(activarFormulario, Byte{node}); });
}

ZvResult ZV_CALL eliminarSlot(Face* face, std::uint8_t node, ZvBool* answer)
{
    if (answer == nullptr)
        return ZV_E_POINTER;
    *answer = 0;
    return guarded(
        [&] { Travels<Kind::truth>::out(Self<Instance>(face)->run(eliminar, Byte{node}), answer); });
}

const FunctionTable& functions()
{
    static const FunctionTable table = [] {
        FunctionTable made = dispatchFunctions();
        for (const AnyFunction function : {slot(bloquearBancoSlot), slot(obtenerDatosSlot),
                                           slot(activarFormularioSlot), slot(eliminarSlot)})
            made.push_back(function);
        return made;
    }();
    return table;
}

AsignarDatos::AsignarDatos() : Instance(functions(), cAsignarDatosClass) {}

} // namespace

void useSurroundings(Surroundings surroundings) { current() = std::move(surroundings); }

std::unique_ptr<ComObject> newAsignarDatos() { return std::make_unique<AsignarDatos>(); }

} // namespace zv::com

#include "data/Schema.h"
#include "data/sample/Parts.h"
#include "runtime/Convert.h"

namespace zv::sample {
namespace {

struct List {
    StringView table;
    StringView rows;
};

constexpr List catalogues[] = {
    {u"EstadoCivil", u"Soltero/a|Casado/a|Pareja de hecho|Separado/a|Divorciado/a|Viudo/a|No consta"},
    {u"Idioma",
     u"Castellano|Català|Galego|Euskara|Valencià|Inglés|Francés|Alemán|Portugués|Italiano|Latín|Árabe|"
     u"Chino mandarín"},
    {u"Pais",
     u"España|Marruecos|Rumanía|Ecuador|Colombia|China|Venezuela|Perú|Argentina|Portugal|Francia|Italia|"
     u"Reino Unido|Alemania|Bolivia|Paraguay|República Dominicana|Honduras|Cuba|Brasil|Ucrania|Rusia|"
     u"Bulgaria|Polonia|Pakistán|India|Senegal|Argelia|Guinea Ecuatorial|Costa de Marfil|Estados Unidos|"
     u"México|Chile|Uruguay|Bélgica|Países Bajos|Irlanda|Suiza|Andorra|Japón"},
    {u"Provincia",
     u"Álava|Albacete|Alicante|Almería|Ávila|Badajoz|Illes Balears|Barcelona|Burgos|Cáceres|Cádiz|"
     u"Castellón|Ciudad Real|Córdoba|A Coruña|Cuenca|Girona|Granada|Guadalajara|Gipuzkoa|Huelva|Huesca|"
     u"Jaén|León|Lleida|La Rioja|Lugo|Madrid|Málaga|Murcia|Navarra|Ourense|Asturias|Palencia|Las Palmas|"
     u"Pontevedra|Salamanca|Santa Cruz de Tenerife|Cantabria|Segovia|Sevilla|Soria|Tarragona|Teruel|"
     u"Toledo|Valencia|Valladolid|Bizkaia|Zamora|Zaragoza|Ceuta|Melilla"},
    {u"TipoAlumno",
     u"Ordinario|Repetidor|Necesidades educativas especiales|Altas capacidades|Incorporación tardía|"
     u"Intercambio|Oyente"},
    {u"TipoContrato",
     u"Indefinido a tiempo completo|Indefinido a tiempo parcial|Temporal por obra|Interinidad|Relevo|"
     u"Prácticas|Fijo discontinuo"},
    {u"TipoNivelEstudios",
     u"Sin estudios|Estudios primarios|Graduado en ESO|Bachillerato|Formación Profesional|Diplomatura|"
     u"Licenciatura o grado|Máster|Doctorado"},
    {u"CursoEspecializacion", u"Audición y lenguaje|Pedagogía terapéutica|Bilingüismo|Prevención de riesgos|"
                              u"Tecnologías de la información|Dirección de centros|Mediación escolar"},
    {u"Observacion", u"Progresa;Progresa adecuadamente|Atención;Necesita prestar más atención en clase|"
                     u"Deberes;No trae los deberes hechos|Lectura;Le conviene leer más en casa|"
                     u"Participa;Participa y ayuda a los compañeros|Material;Olvida el material"},
    {u"OpcionMateria", u"Religión católica;REL;Religión católica;RELIGIÓN|"
                       u"Alternativa;ALT;Actividades de estudio;ALTERNATIVA|"
                       u"Francés;FRA;Segunda lengua extranjera: francés;FRANCÉS|"
                       u"Refuerzo;REF;Refuerzo de matemáticas;REFUERZO"},
    {u"TipoMotivoBaja",
     u"Traslado;Traslado a otro centro|Cambio de domicilio;|Fin de estudios;Obtiene el título|"
     u"Petición de la familia;|Expulsión;Por resolución del consejo escolar"},
    {u"Nacionalidad",
     u"Española;ESP|Marroquí;MAR|Rumana;ROU|Ecuatoriana;ECU|Colombiana;COL|China;CHN|Venezolana;VEN|"
     u"Peruana;PER|Argentina;ARG|Portuguesa;PRT|Francesa;FRA|Italiana;ITA|Británica;GBR|Apátrida;XXA"},
    {u"profesion",
     u"Administrativo/a|Albañil|Abogado/a|Agricultor/a|Ama de casa|Camarero/a|Comerciante|Conductor/a|"
     u"Dependiente/a|Electricista|Enfermero/a|Funcionario/a|Ingeniero/a|Maestro/a|Mecánico/a|Médico/a|"
     u"Parado/a|Policía|Jubilado/a|Trabajador/a de l'Ajuntament|Farero/a"},
    {u"TipoParentesco", u"Madre|Padre|Tutor/a legal|Abuelo/a|Tío/a|Hermano/a|Padrino"},
    {u"TipoJustificacion",
     u"Certificado médico|Justificante de la familia|Citación oficial|Llamada telefónica|Sin justificar|"
     u"Huelga de transporte"},
    {u"TipoMaterialDidactico",
     u"Libro de texto|Cuaderno de ejercicios|Diccionario|Material de laboratorio|Instrumento musical|"
     u"Programa informático|Mapa mural"},
    {u"TipoCentro", u"Público|Concertado|Privado|Centro rural agrupado"},
    {u"TipoIva", u"0%;0|4%;0,04|10%;0,1|21%;0,21|16%;0,16"},
    {u"ponderacion", u"Hermanos en el centro;8|Domicilio en la zona;5.5|Renta familiar;2|Discapacidad;3.25|"
                     u"Familia numerosa;2.5|Antiguo alumno;1"},
    {u"TipoIncidencia",
     u"Falta de asistencia;Falta;1;1;1|Retraso;Retraso;1;1;0|Salida anticipada;;1;0;0|"
     u"Falta de material;;0;1;0|Conducta;Conducta contraria a las normas;0;1;0|Baja médica;;1;0;1|"
     u"Pérdida de carné;;0;0;0"},
    {u"TipoOcurrencia",
     u"Fiesta nacional;0|Fiesta local;0|Evaluación;1|Excursión;1|Reunión de padres;1|Vacaciones;0|"
     u"Jornada de puertas abiertas;1"},
    {u"Turno", u"Mañana;1|Tarde;2|Nocturno;3|A distancia;4"},
    {u"TipoMiembroCentro",
     u"Secretario/a;1|Administrativo/a;1|Conserje;2|Personal de limpieza;2|Cocinero/a;2|"
     u"Monitor/a de comedor;3|Enfermero/a;3|Jardinero/a;2"},
    {u"TipoTarea",
     u"Matrícula;1|Archivo;2|Apertura del centro;3|Limpieza de aulas;4|Menús;5|Vigilancia del recreo;6|"
     u"Inventario;2"},
};

constexpr List money[] = {
    {u"Banco", u"Banco de Ahorro Peninsular;0049|Caja de L'Horta;2077|Crédito Cantábrico;0182|"
               u"Caixa d'Estalvis del Penedès;2081|Banca de la Meseta;0075|Banco O'Higgins;0033"},
    {u"Sucursal", u"1;0001;Oficina principal;Gran Vía, 12;Madrid;28013;28|"
                  u"1;0142;Chamberí;Calle de Ponzano, 40;Madrid;28003;28|"
                  u"2;0310;Benimaclet;Carrer d'Emili Baró, 7;València;46020;46|"
                  u"2;0311;Alboraia;Plaça Major, 3;Alboraia;46120;46|"
                  u"3;0025;Puerto Chico;Paseo de Pereda, 31;Santander;39004;39|"
                  u"4;0108;L'Hospitalet centre;Rambla de Just Oliveras, 9;L'Hospitalet de Llobregat;08901;8|"
                  u"4;0109;Vilafranca;Carrer de la Cort, 18;Vilafranca del Penedès;08720;8|"
                  u"5;0007;Plaza Mayor;Plaza Mayor, 1;Valladolid;47001;47|"
                  u"5;0070;Delicias;Paseo de San Vicente, 2;Valladolid;47013;47"},
    {u"Presentador",
     u"Colegio San Isidro Labrador;G28123453;000;1;1|Asociación de Padres O'Donnell;G28765436;001;1;2|"
     u"Fundación Escolar Núñez;G08345670;000;4;6|Comedor Escolar;B47111224;002;5;8"},
    {u"PresentadorMTP", u"Servicio central de cobros|Servicio de cobros de Levante"},
    {u"BancoMTP", u"1|2"},
    {u"Emisor", u"Colegio San Isidro Labrador;G28123453;000;1;Calle del Álamo, 5;Madrid;28;28015;0;;0|"
                u"Comedor escolar;B28999886;001;2;'';'';0;'';0;;0|"
                u"Actividades extraescolares;G08345670;002;0;'';'';0;'';1;;-1|"
                u"Transporte L'Horta;B46777660;;0;Camí del Mar, 22;Alboraia;46;46120;0;4600012345;0|"
                u"Librería Peña;B28555449;;0;Calle de la Palma, 8;Madrid;28;28004;0;2800098765;0|"
                u"Escuela de verano;G47000112;003;3;'';'';0;'';0;;0"},
    {u"Cuenta", u"1;0049 0001 55 2110000011|2;0049 0142 27 2110000022|3;2077 0310 68 3100054321|"
                u"6;2081 0108 85 0200051332|8;0075 0007 57 0600012345"},
    {u"Centro_Cuenta_Emisor", u"1;1|2;2|3;3|4;4|5;5"},
    {u"Actividad",
     u"2;1;;Comedor|1;1;4;Ruta de transporte|4;3;;Ajedrez|4;3;;Judo|4;3;;Robótica|1;1;;Aula matinal|"
     u"3;1;5;Libros|2;2;;Excursión a Ávila|1;;;Coro"},
};

constexpr List school[] = {
    {u"Direccion", u"1;Calle del Álamo, 5;Madrid;28015|1;Calle de Alcalá, 200;Madrid;28028|"
                   u"1;Carrer Major, 14;L'Hospitalet;08901|1;Avenida de Castilla, 3;Valladolid;47014|"
                   u"10;Rua Augusta, 101;Lisboa;1100|11;Rue de l'Église, 4;Hendaye;64700"},
    {u"Centro", u"1;2;Colegio San Isidro Labrador;1"},
    {u"MaterialDidactico",
     u"1;Matemáticas 1|1;Lengua 1|1;Ciencias 2|2;Caligrafía|3;Diccionario escolar|4;Microscopio|"
     u"4;Probetas|5;Flauta dulce|5;Metalófono|6;Enciclopedia interactiva"},
    {u"OcurrenciaCalendario",
     u"1;12/10/2024|1;01/11/2024|1;06/12/2024|2;15/05/2025|3;20/12/2024|3;28/03/2025|3;20/06/2025|"
     u"4;14/02/2025|5;03/10/2024|6;23/12/2024"},
    {u"TipoEnsenanza",
     u"Educación Infantil;1|Educación Primaria;2|Educación Secundaria Obligatoria;3|Bachillerato;4|"
     u"Formación Profesional;5"},
    {u"SistemaCalificacion", u"2;Primaria|3;Secundaria|4;Bachillerato|5;Formación Profesional"},
    {u"Modelo", u"1;Boletín de Primaria|2;Boletín de ESO|3;Boletín de Bachillerato|3;Boletín antiguo"},
    {u"Curso", u"1º de Primaria;1;2;0|2º de Primaria;2;2;-1|3º de Primaria;3;2;0|4º de Primaria;4;2;-1|"
               u"5º de Primaria;5;2;0|6º de Primaria;6;2;-1|1º de ESO;1;3;0|2º de ESO;2;3;-1|3º de ESO;3;3;0|"
               u"4º de ESO;4;3;-1|1º de Bachillerato;1;4;0|2º de Bachillerato;2;4;-1"},
    // Seven of primary education, eight of ESO, seven of the last two years.
    {u"Materia",
     u"Lengua Castellana y Literatura;4|Matemáticas;4|Conocimiento del Medio;4|Educación Artística;4|"
     u"Educación Física;4|Inglés;4|Religión;4|Lengua y Literatura;1|Matemáticas;1|Ciencias Sociales;1|"
     u"Ciencias de la Naturaleza;1|Lengua Inglesa;1|Tecnología;1|Música;1|Educación Plástica y Visual;1|"
     u"Filosofía;2|Historia de España;2|Lengua Castellana II;2|Matemáticas II;2|Física;2|"
     u"Dibujo Técnico;2|Economía;2|Cultura Clásica;3"},
    {u"ConsejoOrientador",
     u"Capacidad de aprendizaje|Hábitos de trabajo|Interés y motivación|Intereses profesionales|"
     u"Madurez personal|Integración en el grupo|Aptitudes destacadas|Recomendación para el próximo curso"},
    {u"ConsejoOrientador_Respuesta",
     u"1;Muy alta|1;Alta|1;Media|1;Baja|2;Constante y ordenado|2;Irregular|2;Necesita ayuda|"
     u"3;Alto en todas las áreas|3;Alto en algunas áreas|3;Bajo|4;Científicos|4;Humanísticos|"
     u"4;Artísticos|4;Técnicos|4;Sin definir|5;Acorde con su edad|5;Por encima de su edad|"
     u"5;Por debajo de su edad|6;Plena|6;Buena|6;Con dificultades|7;Verbal|7;Numérica|7;Espacial|"
     u"7;Musical|8;Promociona sin dificultad|8;Promociona con refuerzo|8;Programa de diversificación|"
     u"8;Permanece un año más|8;Ciclo formativo: l'orientador ho decidirà"},
    {u"TipoInfInd", u"Respecto al propio alumno|Respecto a los objetivos|Integración de conceptos|"
                    u"Utilización de procedimientos|Nuevas actitudes"},
    {u"TipoRespInfInd",
     u"1;Trabaja con autonomía|1;Necesita apoyo|1;Se distrae con facilidad|2;Alcanza los objetivos|"
     u"2;Los alcanza en parte|2;No los alcanza|3;Comprende y aplica|3;Comprende con ayuda|3;Memoriza|"
     u"4;Los usa con soltura|4;Los usa con ayuda|4;No los usa|5;Colabora y respeta|5;Mejora|"
     u"5;Debe mejorar|5;Sin datos suficientes"},
};

/// Rows of association tables, without a key of their own.
constexpr List pairs[] = {
    {u"Centro_Idioma", u"1;1|6;1"},
    {u"Centro_TipoEnsenanza", u"2;1|3;1|4;1"},
    {u"Ponderacion_Centro", u"1;1|2;1|3;1|5;1"},
    {u"prematriculacion_ponderacion", u"1;101|2;101|2;102|3;103|4;103"},
};

/// "1 Descripcion"
String example(const schema::Column& column, Long number)
{
    const String text = decimalText(number) + u" " + column.name;
    return column.width == 0 ? text : String(cut(text, static_cast<std::size_t>(column.width)));
}

} // namespace

void addFixedRows(Writer& centro)
{
    for (const std::span<const List> lists :
         {std::span<const List>(catalogues), std::span<const List>(money), std::span<const List>(school)})
        for (const List& list : lists)
            centro.numbered(list.table, list.rows);
    for (const List& list : pairs)
        centro.rows(list.table, list.rows);
}

void addOtherRows(Writer& centro)
{
    for (const schema::Table& table : schema::tables(Database::centro)) {
        // Illnesses wait for the cipher.
        if (table.use == schema::Use::addedByUs || table.name == u"Enfermedad" || centro.wrote(table.name))
            continue;
        const bool joins = table.key == schema::Key::repeated;
        for (Long number = 1; number <= (joins ? 1 : 3); ++number) {
            std::vector<Value> values;
            for (const schema::Column& column : table.columns())
                values.push_back(column.type == schema::Type::text ? Value(example(column, number))
                                                                   : Value(Long{1}));
            if (!joins)
                values.front() = number;
            centro.row(table.name, values);
        }
    }
}

void addUsers(Writer& entrada)
{
    entrada.rows(u"Perfil", u"0;Dirección|1;Profesorado");
    entrada.numbered(u"Usuario",
                     u"Directora;0|Tutor de 1º A de Primaria;1|Tutora de 2º A de Primaria;1|"
                     u"Tutora de 3º A de Primaria;1|Tutor de 4º A de Primaria;1|Tutora de 5º A de Primaria;1|"
                     u"Tutor de 6º A de Primaria;1|Tutora de 1º A de ESO;1|Tutor de 2º A de ESO;1|"
                     u"Tutora de 3º A de ESO;1|Tutor de 4º A de ESO;1|Tutora de 1º A de Bachillerato;1|"
                     u"Tutor de 2º A de Bachillerato;1|Sustituto sin destino;1");
    entrada.rows(u"BotonAccesoRapido", u"1;frmEmisor;cmdNuevoPresentador|1;frmPresentador;cmdNuevoBanco");
}

} // namespace zv::sample

#include "zvconf/Command.h"

#include "data/history/HistoryEngine.h"
#include "data/odbc/OdbcEngine.h"
#include "data/sqlite/SqliteEngine.h"
#include "robot/LateEngine.h"
#include "runtime/Errors.h"
#include "runtime/System.h"
#include "suite/sodium/EncryptoApi.h"
#include "zv/Version.h"
#include "zvconf/System.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

namespace zv::zvconf {
namespace {

constexpr Command commands[] = {
    {u"crear", crear},         {u"comprobar", comprobar}, {u"registros", registros}, {u"clave", clave},
    {u"guion", guion},         {u"azar", azar},           {u"textos", textos},       {u"nodos", nodos},
    {u"historial", historial}, {u"copia", copia},         {u"restaurar", restaurar}, {u"mudar", mudar},
    {u"importar", importar},   {u"diario", diario},       {u"unir", unir},           {u"progreso", progreso},
    {u"centros", centros},     {u"dialogo", dialogo},     {u"galeria", galeria},
};

constexpr StringView help = uR"(zvconf: la configuración del centro, sin pantalla.

  zvconf crear --bd URL [--ejemplo]
      Crea las tres bases de datos de un centro: la del centro, la de borrados y la de entrada.
      Con --ejemplo las llena con un centro de ejemplo; sin ella quedan vacías.
  zvconf comprobar [--datos] [--json | --resumen] [--reparar] --bd URL
      Comprueba que las bases de datos tienen las tablas y columnas que hacen falta, y que el disco no
      ha estropeado sus ficheros. Con --datos mira además las filas: dice lo que harán con ellas las ventanas
      (respuestas que no se verán, textos que se perderán, bancos que no se podrán aceptar), con nombres, y qué
      hacer; y, como consejo, los NIF y las cuentas que no cuadran. Con --resumen dice sólo cuántos, sin nombres.
      Con --reparar añade los índices y la tabla que falten a un centro de una versión anterior; con --datos,
      arregla lo que no tiene más que un arreglo, después de nombrarlo; si hay historial, se puede deshacer.
  zvconf registros --bd URL [--liberar FORMULARIO FILA | --liberar-todo]
      Dice qué filas están abiertas, por quién y desde cuándo, o las libera.
  zvconf clave crear | lugar | cambiar --bd URL
      La clave con que se cifran las enfermedades: la crea, dice dónde está o por qué no sirve, o la cambia
      por una nueva con la que cifra otra vez las enfermedades de esas bases de datos. Nadie debe tener
      abierto el programa mientras tanto; si se corta a medias, se repite la orden y termina. Todos los
      puestos de un centro necesitan la misma clave: cópiela. Está en la carpeta de configuración de
      la persona, o donde diga la variable ZV_CLAVE.
  zvconf copia FICHERO --bd URL [--frase FICHERO]
      Copia en un fichero las tres bases de datos de un centro tal como están en un instante, aunque se esté
      trabajando, y comprueba lo que daría al restaurarla. Con --frase, cuya primera línea es una frase,
      lleva también la clave de las enfermedades, cerrada con ella.
  zvconf copia --diaria CARPETA --bd URL [--frase FICHERO]
      Hace la de hoy en la carpeta, si no está, y deja las de 7 días, 4 semanas y 12 meses.
  zvconf copia FICHERO --comprobar [--frase FICHERO]
      Comprueba una copia que hay y, con --frase, que la clave se abre con ella.
  zvconf restaurar FICHERO --bd URL [--frase FICHERO]
      Pone el centro de una copia en lugar del que haya, que queda al lado con otro nombre: o todo o nada.
  zvconf mudar --de URL --a URL
      Copia un centro a donde no hay ninguno, de un fichero a un servidor o al revés, y compara los dos antes
      de darlo por hecho: al final está entero o no está. El de partida queda como estaba. Nadie debe seguir
      cambiando el de partida: lo que cambie después no va.
  zvconf importar FICHERO --nodo NODO [--ensayo] [--json] --bd URL
      Añade a una lista (NODO: su número o su nombre, como los dice «nodos») las líneas de un fichero CSV, cuya
      primera línea son las columnas: cada una se teclea en la ventana de esa lista, y es la ventana la que la
      guarda o dice por qué no. Con --ensayo hace lo mismo en una copia que se tira, y no guarda nada. Dice qué
      ha sido de cada línea, y con qué orden se deshace todo junto.
  zvconf historial activar | desactivar --bd URL
      El historial guarda, en la misma base de datos, lo que había y lo que hay en cada fila que se cambia, quién
      la cambió, cuándo y en qué ventana. Los centros que hace «crear» lo tienen activado.
  zvconf historial comprobar [--cabeza NÚMERO:ENLACE] --bd URL
      Comprueba que nadie ha cambiado, quitado ni añadido asientos, y dice la cabeza, que es el último. Con
      --cabeza mira que uno que se anotó antes siga ahí: así se nota si faltan los últimos.
  zvconf historial olvidar --alumno N | --fila TABLA N [--si] --bd URL
      Cuenta los asientos con textos de un alumno o de una fila; con --si los borra, para siempre.
  zvconf historial plazo [MESES] [--si] --bd URL
      Dice a los cuántos meses se borran los textos, y cuántos tocan ya; con --si los borra, y queda ese plazo
      si se dan MESES (0: nunca). Los borra la orden, no el programa: repítala cada mes.
  zvconf historial exportar [--sin-nombres] FICHERO --bd URL
      Escribe todos los asientos en un fichero suyo y de nadie más, uno en cada línea, en JSON, y dice la
      cabeza. Con --sin-nombres van sin textos, y con números en lugar de usuarios, puestos y alumnos.
  zvconf historial ver [--tabla TABLA] [--fila N] [--usuario USUARIO] [--ventana NOMBRE] [--dia DIA]
      [--json] --bd URL
      Dice lo anotado: de una tabla, de una de sus filas, de una persona (por su nombre o su número), de una
      ventana, de un día (AAAA-MM-DD). Lo que está cifrado se queda en «(cifrado)».
  zvconf historial deshacer --apertura N | --guardado N | --fila TABLA N | --desde MOMENTO
      [--campo COLUMNA] [--si] --bd URL
      Deshace lo que se guardó en la ventana de la apertura N, en el guardado N (son los números que da «ver»), lo
      último que se guardó en una fila o en un campo suyo, o todo desde un momento ("AAAA-MM-DD HH:MM"). Dice
      qué cambia y qué no puede cambiar porque alguien lo ha escrito después; lo hace con --si. También eso se
      puede deshacer.
  zvconf historial cortados [--deshacer] [--si] --bd URL
      Dice qué guardados se cortaron a medias porque murió su puesto. Con --deshacer --si quita de la base de datos
      lo que cada uno llegó a escribir; sin --si sólo dice qué es.
  zvconf diario lista [--carpeta CARPETA]
      Dice, para la persona que da la orden, qué se quedó sin guardar en ventanas cuyo programa murió: el número de
      cada diario, cuándo, de quién, de qué centro y ventana, y cuánto. Se recupera al abrir otra vez la ventana.
      Los diarios están, cifrados, en su carpeta de estado, o en la de --carpeta.
  zvconf diario ver NÚMERO [--carpeta CARPETA]
      Dice, campo por campo, lo que había y lo que se escribió.
  zvconf diario exportar NÚMERO FICHERO [--carpeta CARPETA]
      Escribe lo que se hizo como un guion, en un fichero suyo y de nadie más.
  zvconf diario borrar NÚMERO [--si] [--carpeta CARPETA]
      Dice qué es ese diario; con --si lo borra, para siempre.
  zvconf unir --nodo N --queda CLAVE --sobra CLAVE [--ensayo] --bd URL
      Une dos filas de una lista (N es el número que da «nodos»; CLAVE, el de la fila): todo lo que se refiere a la
      que sobra pasa a referirse a la que queda, y la que sobra se quita. O todo o nada. Con --ensayo sólo dice qué
      pasaría. Dice el número de la unión, con el que se deshace.
  zvconf unir --parecidas [--nodo N] --bd URL
      Dice qué filas parecen la misma: sólo cambian mayúsculas, acentos o espacios.
  zvconf unir --hechas | --deshacer NÚMERO --bd URL
      Dice las uniones que se pueden deshacer, o deshace una: todo vuelve a como estaba.
  zvconf progreso [--seccion N] [--tipo consejo | eso | primaria] [--faltan] [--json | --csv] --bd URL
      Dice, por sección y alumno, qué está escrito del consejo orientador y de los informes individuales y qué
      falta, y qué cuenta como que falta; con --faltan, sólo de quien falta algo. Avisa de un texto en el que sale
      el nombre de otro alumno de la sección, por si se copió.
  zvconf centros crear FICHERO [--ejemplo] [--a-la-vez N] [--plazo MINUTOS] [--informe FICHERO] [--solo NOMBRE]
      Hace lo mismo con todos los centros de una lista, varios a la vez, cada uno por su lado: lo que pase en uno no
      para a los demás. FICHERO es la lista: texto en UTF-8, un centro en cada línea, un nombre y su URL; las líneas que
      empiezan por # no cuentan. Crea los que no están. Dice cada uno cuando acaba, y al final los que no están bien
      y qué hacer; --informe lo escribe todo en un fichero .csv o .json. Con Ctrl-C acaban los que están en marcha y
      no se empieza ninguno más; al repetir la orden sigue. A los que no encuentran su servidor se les prueba otra
      vez, 20 s después de los demás; al que pasa de MINUTOS (120) se le para. Con --solo lo hace con uno, y dice todo lo que
      diría la orden de un centro.
  zvconf centros comprobar FICHERO [--datos] [--resumen] [--reparar] [--a-la-vez N] [--plazo MINUTOS]
      [--informe FICHERO] [--solo NOMBRE]
      Los comprueba o, con --reparar, los arregla. Con --datos dice de cada uno sólo cuántos fallos, sin nombres.
  zvconf centros copia FICHERO --carpeta CARPETA [--frase FICHERO] [--a-la-vez N] [--plazo MINUTOS]
      [--informe FICHERO] [--solo NOMBRE]
      Hace la copia de hoy de cada uno en CARPETA, en una carpeta con su nombre, como «copia --diaria».
  zvconf guion [--comprobar | --reescribir] [--bd URL] [--ejemplo] [--en URL] [--motor] [--ventanas] FICHERO...
      Representa guiones: abre las ventanas, hace en ellas lo que haría una persona y dice qué se ve.
      Con --comprobar lo compara con lo que el guion espera; con --reescribir lo escribe en él.
      Cada guion estrena bases de datos en memoria, o en el motor de --bd, vacías o con --ejemplo llenas
      con el centro de ejemplo; con --en usa, y cambia, las que existen. Con --motor dice qué motor es.
      Con --ventanas, sólo en Windows, los representa en ventanas de verdad; en los demás, «zvhost guion».
  zvconf azar [--semilla N] [--actos N] [--fallos] [--consulta] [--bd URL]
      Hace N cosas al azar (1000) en todas las ventanas, sobre un centro de ejemplo que estrena, y escribe
      el guion que las repite con «zvconf guion --ejemplo». Otra semilla hace otras cosas. Con --fallos
      fallan algunas instrucciones; con --consulta la sesión no puede cambiar datos. Avisa de una ventana
      que no se deja cerrar, de lo que se escribe en una sesión de consulta y de fallos del propio módulo.
  zvconf textos [--ventana NOMBRE] [--cada N] [--bd URL]
      Teclea y pega más de 200 textos raros (comillas, SQL, controles, emojis, muy largos) en cada cuadro de
      texto de las ventanas, sobre un centro de ejemplo que estrena, y mira que se guarden como se ven o que
      se rechacen con un mensaje, y que no se ejecute más que lo que hace la ventana con un texto normal.
      Con --cada cada cuadro recibe uno de cada N textos.
  zvconf dialogo NODO [--fila N] --bd URL
      Abre la ventana de un nodo (su número o su nombre, como los dice «nodos») y termina con ella: con --fila,
      para cambiar esa fila; sin ella, para una nueva. Sólo en Windows; en los demás, «zvhost dialogo».
  zvconf galeria CARPETA
      Dibuja en la carpeta todas las ventanas, con un centro de ejemplo, como imágenes PNG: nuevas, para cambiar una
      fila, con un mensaje y de consulta. Salen a la escala que tenga la pantalla (96 puntos por pulgada es el 100 %);
      no la tape mientras dura. Sólo en Windows; en los demás, «zvhost galeria».
  zvconf nodos
      Dice, para quien escribe un anfitrión, los nodos que el módulo atiende, uno en cada línea y separado por
      tabuladores: número, lo que se lleva, ventana, si se abre, si responde a Eliminar, clave de la fila.
  zvconf --version
  zvconf --help

URL es sqlite:FICHERO (junto a colegio.db están colegio.borrado.db y colegio.entrada.db), o un servidor
por ODBC: odbc:DSN=NOMBRE u odbc:Driver=...;Server=...;Database=...;UID=...;PWD=... Las tres bases son
los esquemas (en MariaDB, las bases de datos) ESQUEMA, ESQUEMA_borrado y ESQUEMA_entrada: añada ESQUEMA=NOMBRE,
o será «centro» (en MariaDB, la base que nombre Database o la fuente de datos).
Con historial: delante de uno de estos URL se activa el historial de ese centro.
Si varios servidores llevan lo mismo, SERVIDORES=uno:3306,otro:3306 es su lista: sirve el primero que admite cambios.
Una instrucción que pasa de 60 segundos falla; ESPERA=N pone otro plazo, y ESPERA=0 ninguno.
Una contraseña en el URL la ve cualquiera en la lista de procesos: quite PWD=, y póngala en odbc.ini, en
la variable ZV_CONTRASENA, o en la primera línea del fichero, suyo y de nadie más (chmod 600; en Windows,
icacls), que nombre la variable ZV_CONTRASENA_FICHERO.

Termina con 0 si todo está bien; con 1 si lo que se mira no está como debe (a una base le falta
algo, la fila que se libera no estaba registrada, un guion ve otra cosa, hay guardados cortados, algo no se
puede deshacer, una línea no entra, una copia está estropeada, es de unas bases dañadas o va sin la clave que se
pidió, a un informe le falta algo, un centro de la lista no está bien o no se hizo); con 2 si la orden no se ha podido hacer.
)";

int run(const std::vector<String>& words)
{
    if (words.empty())
        throw UsageError(u"Falta la orden.");
    if (std::ranges::find(words, u"--help") != words.end()) {
        std::cout << toUtf8(help);
        return done;
    }
    if (words.front() == u"--version") {
        std::cout << "zvconf " << version << '\n';
        return done;
    }
    const auto command = std::ranges::find(commands, StringView(words.front()), &Command::name);
    if (command == std::end(commands))
        throw UsageError(u"«" + withoutPassword(words.front()) + u"» no es una orden.");
    registerEngine(sqliteEngine());
    registerEngine(odbcEngine());
    registerEngine(historyEngine());
    registerEngine(lateEngine());
    registerCipher();
    return command->run(Arguments(words).subspan(1));
}

int runGuarded(std::span<char*> arguments)
{
    try {
        const int result = run(commandLine(arguments));
        if (!std::cout.flush())
            throw std::runtime_error(
                "No se puede escribir el resultado: la salida está cerrada o el disco lleno.");
        return result;
    } catch (const UsageError& error) {
        std::cerr << "zvconf: " << error.what() << " Con --help se ven las órdenes.\n";
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << toUtf8(u"zvconf: «" + error.path1().u16string() + u"»: " + wordsFor(error.code()))
                  << ". Mire si el nombre es ése, si tiene permiso y si queda sitio.\n";
    } catch (const std::exception& error) {
        std::cerr << "zvconf: " << error.what() << '\n';
    }
    return failed;
}

} // namespace

void printLine(StringView line) { std::cout << toUtf8(line) << '\n'; }

} // namespace zv::zvconf

int main(int argc, char** argv)
{
    const zv::zvconf::Utf8Output output;
    return zv::zvconf::runGuarded(std::span(argv, static_cast<std::size_t>(argc)).subspan(argc > 0 ? 1 : 0));
}

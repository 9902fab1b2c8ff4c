#include "HostFixture.h"

#include "data/Schema.h"
#include "data/Statement.h"
#include "data/history/Losses.h"
#include "forms/Acts.h"
#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "qt/FormWindow.h"
#include "runtime/Convert.h"
#include "session/cNombreNodo.h"
#include "suite/Station.h"

#include <QPushButton>

namespace zv::host {

using history::HistoryConnection;

/// A school with a history, a person in the host's window, and another station on the same database.
struct HistoryTest : HostTest {
    std::unique_ptr<HistoryConnection> other;

    HistoryTest() : HostTest(u"historial:sqlite:")
    {
        const auto columns = [](StringView table) {
            std::vector<String> names;
            for (const schema::Column& each : schema::table(table)->columns())
                names.emplace_back(each.name);
            return names;
        };
        other = std::make_unique<HistoryConnection>(history::historyOf(school.centro)->inner(), columns);
    }
    /// What the user 7 saves meanwhile.
    void otherWrites(const String& statement)
    {
        other->dialogOpened({.dialog = u"frmOtra", .user = 7, .userName = u"otra"});
        other->Execute(statement);
        other->dialogClosed();
    }
    /// Control of the dialog in front.
    static Control& control(StringView name, int index = -1) { return *dialog().form().find(name, index); }
    static FormWindow& dialog() { return *dynamic_cast<FormWindow*>(QApplication::activeModalWidget()); }
    static void click(StringView name, int index = -1)
    {
        dialog().act([&](Acts& acts) { return acts.click(control(name, index)); });
    }
    static void write(StringView name, StringView text)
    {
        dialog().act([&](Acts& acts) { return acts.type(control(name), text); });
    }
    /// Opens the section of the report, acts in its dialog, accepts and leaves the choice of the section.
    void inSection(Byte node, Long section, StringView form, const std::function<void()>& acts)
    {
        window->go(*nodeOf(node));
        ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activeModalWidget() == nullptr; }));
        place();
        list().setFocus();
        selectSection(section);
        bool acted = false;
        enter([&](QWidget& front) {
            if (acted) {
                front.close();
            } else if (front.objectName() == toQt(form)) {
                acted = true;
                acts();
                click(u"cmdNotaManual1", 0);
            }
        });
        EXPECT_TRUE(acted);
    }
    void selectSection(Long section)
    {
        const QAbstractItemModel& rows = *list().model();
        const std::string course = one(statement(u"SELECT Curso.Descripcion FROM Curso INNER JOIN Seccion ON "
                                                 u"Curso.IDCurso=Seccion.CodCurso WHERE IDSeccion={}",
                                                 {section}));
        const std::string name =
            one(statement(u"SELECT Descripcion FROM Seccion WHERE IDSeccion={}", {section}));
        for (int row = 0; row < rows.rowCount(); ++row)
            if (rows.index(row, 1).data().toString().toStdString() == course &&
                rows.index(row, 2).data().toString().toStdString() == name)
                return list().selectRow(row); // Whatever keys were pressed last.
        FAIL() << "no section " << section;
    }
    /// Fills the database's disk, or gives it room again.
    void full(bool isFull)
    {
        Connection& disk = *history::historyOf(school.centro)->inner();
        if (!isFull) {
            disk.executeNative(u"PRAGMA max_page_count=1000000");
            return;
        }
        disk.executeNative(statement(u"PRAGMA max_page_count={}",
                                     {CLng(disk.executeNative(u"PRAGMA page_count")->row().front())}));
        const auto fill = [&] {
            disk.executeNative(u"INSERT INTO HistorialAsiento SELECT MAX(Numero)+1,'',9,0,0,'','" +
                               String(200, u'x') + u"',NULL,NULL,NULL,'','' FROM HistorialAsiento");
        };
        try {
            for (;;)
                fill();
        } catch (const RuntimeError&) {
            disk.executeNative(
                u"UPDATE HistorialCabeza SET Numero=(SELECT MAX(Numero) FROM HistorialAsiento)");
        }
    }
    /// The issuer 1 is open, and a new submitter is made from within.
    void newSubmitter()
    {
        school.centro->Execute(u"UPDATE Presentador SET Nombre='La de antes' WHERE IDPresentador=1");
        school.centro->Execute(u"UPDATE Emisor SET CodigoOrdenante='', Nombre='Aaa' WHERE IDEmisor=1");
        window->go(*nodeOf(u"frmEmisor"));
        list().setFocus();
        type("Aaa");
        key(Qt::Key_Return);
        bool opened = false;
        bool made = false;
        enter([&](QWidget& front) {
            if (front.objectName() == u"frmEmisor" && !opened) {
                opened = true;
                // Not within the timer's own slot, which does not run again before it ends.
                QTimer::singleShot(0, [] { click(u"cmdNuevoPresentador"); });
            } else if (front.objectName() == u"frmPresentador" && !made) {
                made = true;
                write(u"txtNombre", u"Caja Nueva");
                write(u"txtNIF", u"B12345678");
                for (const StringView each : {u"cboBancos", u"cboSucursales"})
                    dialog().act(
                        [&](Acts& acts) { return acts.choose(dynamic_cast<ComboBox&>(control(each)), 0); });
                click(u"cmdAceptar");
            } else if (made) {
                front.close();
            }
        });
        EXPECT_TRUE(made);
    }
    std::string told()
    {
        const auto& bar = *window->findChild<QWidget*>(QStringLiteral("aviso"));
        return bar.isVisible() ? bar.findChild<QLabel*>(QStringLiteral("avisoTexto"))->text().toStdString()
                               : std::string();
    }
    std::string pupil(const std::string& key)
    {
        return one(
            u"SELECT Nombre + ' ' + Apellido_1 + ' ' + Apellido_2 AS Entero FROM Alumno WHERE IDAlumno=" +
            fromUtf8(key));
    }
};

/// A loss, how it comes about, how it is told, and what stands again after one key.
struct Lost {
    const char* name;
    std::function<void(HistoryTest&)> happens;
    const char* told; ///< As a regular expression.
    const char* query;
    const char* before; ///< The answer to the query while it is lost.
    const char* after;
};
void PrintTo(const Lost& lost, std::ostream* out) { *out << lost.name; }

// Sections of the sample.
constexpr Long secondA = 15; // 2º A of the secondary stage.
constexpr Long primaryA = 3; // 2º A of the primary stage.

struct TheHost : HistoryTest, testing::WithParamInterface<Lost> {};

TEST_P(TheHost, tells_what_was_lost_and_gives_it_back_by_one_key)
{
    const Lost& lost = GetParam();
    lost.happens(*this);
    EXPECT_THAT(told(), testing::ContainsRegex(lost.told));
    EXPECT_EQ(one(fromUtf8(lost.query)), lost.before);
    key(Qt::Key_D, Qt::AltModifier);
    EXPECT_EQ(one(fromUtf8(lost.query)), lost.after);
    EXPECT_EQ(told(), "");
}

constexpr const char* ofFirst = "(SELECT MIN(IDAlumno) FROM Alumno WHERE codseccion=15)";

std::vector<Lost> everyLoss()
{
    return {
        Lost{"a_text_written_over",
             [](HistoryTest& t) {
                 t.inSection(cNombreNodo::InfIndiv, secondA, u"frmInfIndESO", [] {});
                 t.inSection(cNombreNodo::InfIndiv, secondA, u"frmInfIndESO", [&] {
                     t.otherWrites(u"UPDATE Alumno_InfInd SET Dificultad='Lee ya' WHERE CodAlumno=" +
                                   fromUtf8(ofFirst));
                 });
             },
             "Ha sustituido 1 texto que .* guardó a la",
             "SELECT COUNT(*) FROM Alumno_InfInd WHERE Dificultad='Lee ya'", "0", "1"},
        Lost{"a_rating_written_over",
             [](HistoryTest& t) {
                 t.school.centro->Execute(u"UPDATE Alumno_InfIndPrim SET codResp=1 WHERE codTipo=1");
                 t.inSection(cNombreNodo::InfIndiv, primaryA, u"frmInfIndPrim", [&] {
                     t.otherWrites(u"UPDATE Alumno_InfIndPrim SET codResp=2 WHERE codTipo=1 AND CodAlumno IN "
                                   u"(SELECT IDAlumno FROM Alumno WHERE codseccion=3) AND codMateria=(SELECT "
                                   u"MIN(codMateria) FROM Alumno_InfIndPrim)");
                 });
             },
             "Ha sustituido .* valoraciones que .* más",
             "SELECT MAX(codResp) FROM Alumno_InfIndPrim WHERE codTipo=1", "1", "2"},
        Lost{"an_answer_of_a_pupil_hidden_by_the_number_of_another",
             [](HistoryTest& t) {
                 for (const StringView each :
                      {u"DELETE FROM ConsejoOrientador_Nota WHERE codAlumno IN (12,112)",
                       u"UPDATE Alumno SET codseccion=15, Apellido_1='Aa' WHERE IDAlumno=112",
                       u"UPDATE Alumno SET codseccion=15, Apellido_1='Ab', Nombre='Nora', Apellido_2='Gil' "
                       u"WHERE IDAlumno=12",
                       u"INSERT INTO ConsejoOrientador_Nota VALUES (9001,12,15,3,1)",
                       u"INSERT INTO ConsejoOrientador_Nota VALUES (9002,112,15,3,1)"})
                     t.school.centro->Execute(each);
                 t.inSection(cNombreNodo::NotaConsejoOrientador, secondA, u"frmConsejoOrientador", [] {});
             },
             "Se ha borrado 1 respuesta de Nora Ab Gil[.]",
             "SELECT COUNT(*) FROM ConsejoOrientador_Nota WHERE codAlumno=12 AND codCOResp=3", "0", "1"},
        Lost{"a_text_without_a_row",
             [](HistoryTest& t) {
                 t.inSection(cNombreNodo::InfIndiv, secondA, u"frmInfIndESO", [] {});
                 t.school.centro->Execute(
                     u"DELETE FROM Alumno_InfIndESO WHERE CodAlumno IN (SELECT IDAlumno FROM "
                     u"Alumno WHERE codseccion=15)");
                 t.inSection(cNombreNodo::InfIndiv, secondA, u"frmInfIndESO",
                             [] { HistoryTest::write(u"txtCognitiva", u"Despierta"); });
             },
             "No se ha guardado 1 texto de ",
             "SELECT COUNT(*) FROM Alumno_InfIndESO WHERE Alumno1='Despierta'", "0", "1"},
        Lost{"an_answer_on_a_full_disk",
             [](HistoryTest& t) {
                 t.school.centro->Execute(u"UPDATE ConsejoOrientador_Nota SET codCOResp=0");
                 t.inSection(cNombreNodo::NotaConsejoOrientador, secondA, u"frmConsejoOrientador", [] {});
                 t.inSection(cNombreNodo::NotaConsejoOrientador, secondA, u"frmConsejoOrientador", [&] {
                     HistoryTest::dialog().act([](Acts& acts) {
                         return acts.choose(dynamic_cast<ComboBox&>(HistoryTest::control(u"cboRespuesta", 0)),
                                            2);
                     });
                     t.full(true);
                 });
                 t.full(false);
             },
             " respuestas se han guardado; el disco está lleno[.]",
             "SELECT COUNT(*) FROM ConsejoOrientador_Nota WHERE codCOResp>0", "0", "1"},
        Lost{
            "a_submitter_under_a_new_one", [](HistoryTest& t) { t.newSubmitter(); },
            "Al guardar «Caja Nueva» se ha sustituido «La de antes» [(]Presentadores[)][.]",
            "SELECT COUNT(*) FROM Presentador WHERE IDPresentador=1 AND Nombre='La de antes' OR Nombre='Caja "
            "Nueva' AND IDPresentador<>1",
            "0", "2"},
        Lost{"a_new_submitter_that_met_no_row",
             [](HistoryTest& t) {
                 t.school.centro->Execute(u"UPDATE Presentador SET IDPresentador=900 WHERE IDPresentador=1");
                 t.newSubmitter();
             },
             "No se ha guardado «Caja Nueva» [(]Presentadores[)]",
             "SELECT COUNT(*) FROM Presentador WHERE Nombre='Caja Nueva'", "0", "1"}};
}

INSTANTIATE_TEST_SUITE_P(Losses, TheHost, testing::ValuesIn(everyLoss()),
                         [](const auto& each) { return each.param.name; });

TEST_F(HistoryTest, nothing_is_told_of_saves_that_lost_nothing_and_nothing_newer_is_written_over)
{
    for (const auto& [node, section, form] :
         {std::tuple(cNombreNodo::InfIndiv, primaryA, u"frmInfIndPrim"),
          std::tuple(cNombreNodo::InfIndiv, secondA, u"frmInfIndESO"),
          std::tuple(cNombreNodo::NotaConsejoOrientador, secondA, u"frmConsejoOrientador")}) {
        inSection(node, section, form, [] {});
        EXPECT_EQ(told(), "");
    }
    const String first = fromUtf8(ofFirst);
    inSection(cNombreNodo::InfIndiv, secondA, u"frmInfIndESO", [&] {
        otherWrites(u"UPDATE Alumno_InfInd SET Dificultad='uno', Valoracion='dos' WHERE CodAlumno=" + first);
    });
    EXPECT_THAT(told(), HasSubstr("Ha sustituido 2 textos que " + nameOfUser(7) + " guardó a la"));
    otherWrites(u"UPDATE Alumno_InfInd SET Dificultad='tres' WHERE CodAlumno=" + first);
    // Field beside field, in a window of its own.
    then([] {
        const auto* rows = qobject_cast<QTableView*>(place());
        EXPECT_EQ(rows->model()->rowCount(), 2);
        EXPECT_EQ(rows->model()->index(0, 2).data().toString().toStdString(), "uno");
        EXPECT_EQ(rows->model()->index(0, 4).data().toString().toStdString(), "tres");
        key(Qt::Key_Escape);
    });
    key(Qt::Key_R, Qt::AltModifier);
    key(Qt::Key_D, Qt::AltModifier);
    EXPECT_EQ(one(u"SELECT Dificultad + '' + Valoracion AS Los FROM Alumno_InfInd WHERE CodAlumno=" + first),
              "tresdos");
}

TEST_F(HistoryTest, the_history_of_a_section_names_persons_pupils_and_fields)
{
    const String first = fromUtf8(ofFirst);
    const std::string theFirst = one(first.substr(1, first.size() - 2));
    otherWrites(u"INSERT INTO Alumno_InfInd VALUES (" + fromUtf8(theFirst) + u",'uno','','')");
    window->go(*nodeOf(cNombreNodo::InfIndiv));
    list().setFocus();
    selectSection(secondA);
    then([&] {
        const auto* rows = qobject_cast<QTableView*>(place());
        QStringList line;
        for (const int column : {1, 2, 4, 6})
            line += rows->model()->index(0, column).data().toString();
        EXPECT_EQ(rows->model()->rowCount(), 1);
        EXPECT_EQ(line.join(u'|').toStdString(),
                  nameOfUser(7) + "|" + pupil(theFirst) + "|Dificultades de asimilación|uno");
        key(Qt::Key_Escape);
    });
    key(Qt::Key_H, Qt::ControlModifier);
}

TEST_F(HistoryTest, the_last_save_is_taken_back_and_a_cut_one_is_told_at_the_start)
{
    const auto name = [this] { return one(u"SELECT Nombre FROM Banco WHERE IDBanco=1"); };
    const std::string before = name();
    // A station of this machine that died.
    QStringList station = toQt(thisStation().identity).split(u'/');
    station[1] = QStringLiteral("4194303");
    other->dialogOpened({.dialog = u"frmBanco",
                         .row = 1,
                         .user = 7,
                         .userName = u"otra",
                         .station = fromQt(station.join(u'/'))});
    other->Execute(u"UPDATE Banco SET Nombre='A medias' WHERE IDBanco=1");
    window->use(std::make_unique<Host>(u"sqlite:colegio.db", school));
    school.centro->Execute(u"INSERT INTO EstadoCivil VALUES (901,'Zona')");
    window->refresh();
    list().setFocus();
    type("Zona");
    key(Qt::Key_Return);
    thenAnswer("Otra");
    key(Qt::Key_Return);
    const auto text = [this] { return one(u"SELECT Descripcion FROM EstadoCivil WHERE IDEstadoCivil=901"); };
    EXPECT_EQ(text(), "Otra");
    EXPECT_THAT(done(), HasSubstr("Se ha guardado «Otra»"));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text(), "Zona");
    EXPECT_THAT(told(), HasSubstr("se cortó")) << "another matter";
    key(Qt::Key_D, Qt::AltModifier);
    EXPECT_EQ(name(), before);
    EXPECT_EQ(told(), "");
}

TEST_F(HistoryTest, what_a_dialog_will_do_to_its_section_is_told_once_before_it_opens)
{
    school.centro->Execute(u"DELETE FROM Alumno_InfIndESO WHERE CodAlumno=304");
    school.centro->Execute(u"DELETE FROM Seccion_Alumno WHERE codAlumno=314");
    const auto toldBefore = [&](Long section) {
        std::string seen;
        inSection(cNombreNodo::InfIndiv, section, u"frmInfIndESO", [&] { seen = told(); });
        return seen;
    };
    EXPECT_EQ(toldBefore(secondA), "") << "nothing of the other section";
    EXPECT_THAT(toldBefore(13),
                testing::AllOf(HasSubstr("no sale Pablo D'Angelo Cortés"), HasSubstr("Y otro aviso")));
    then([] {
        EXPECT_EQ(QApplication::activeModalWidget()->objectName(), u"reglas");
        const auto* rows = QApplication::activeModalWidget()->findChild<QTableView*>();
        EXPECT_THAT(rows->model()->index(1, 0).data().toString().toStdString(),
                    HasSubstr("lo que se escriba de Ana María D'Angelo Bosch"));
        key(Qt::Key_Escape);
    });
    key(Qt::Key_R, Qt::AltModifier);
    for (int taken = 0; taken < 5; ++taken)
        key(Qt::Key_E, Qt::AltModifier);
    EXPECT_EQ(toldBefore(13), "");
}

TEST_F(HostTest, a_school_without_a_history_shows_none_of_it)
{
    EXPECT_FALSE(window->findChild<QAction*>(QStringLiteral("historial"))->isVisible());
}

} // namespace zv::host

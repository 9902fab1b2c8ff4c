// The page of what the reports lack.
#include "forms/ComboBox.h"
#include "qt/FormWindow.h"
#include "zvhost/HostFixture.h"

#include <QCheckBox>

using namespace zv;
using namespace zv::host;

struct ProgressPage : HostTest {
    ProgressPage() { key(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier); }
    std::string cell(int column) { return list().model()->index(0, column).data().toString().toStdString(); }
    std::string count() { return countLabel().text().toStdString(); }
    QLabel& countLabel() { return child<QLabel>("cuenta"); }
};

TEST_F(ProgressPage, leads_with_one_key_into_each_kind_of_report_at_its_pupil)
{
    struct Case {
        const char *words, *dialog, *pupil, *shown;
    };
    for (const Case& each :
         {Case{"consejo 2º A abad arias", "frmConsejoOrientador", "Abad Arias, Pablo", "7 de 8"},
          Case{"secundaria zubiri sanz", "frmInfIndESO", "Zubiri Sanz, Andrés", "5 de 8"},
          Case{"primaria castro blanco pablo", "frmInfIndPrim", "Castro Blanco, Pablo", "30 de 37"}}) {
        SCOPED_TRACE(each.words);
        search(each.words);
        ASSERT_EQ(list().model()->rowCount(), 1);
        EXPECT_EQ(cell(3), each.shown);
        QStringList opened;
        bool there = false;
        enter([&](QWidget& front) {
            const auto& shown = dynamic_cast<FormWindow&>(front);
            if (front.objectName() == QLatin1String(each.dialog)) {
                const auto& pupils = dynamic_cast<ComboBox&>(*shown.form().find(u"cboAlumno"));
                there = toUtf8(pupils.List(pupils.ListIndex())) == each.pupil;
                if (!there && opened.size() < 100) { // Not chosen yet.
                    opened += QString();
                    return;
                }
            } else if (!there) {
                return;
            }
            front.close();
        });
        EXPECT_TRUE(there);
    }
}

TEST_F(ProgressPage, counts_what_is_missing_says_what_that_means_and_follows_the_reports)
{
    EXPECT_THAT(child<QLabel>("definicion").text().toStdString(), HasSubstr("lo que espera una familia"));
    search("consejo 2º A abad arias");
    EXPECT_EQ(count(), "Faltan 1 de 1 informes");
    EXPECT_EQ(cell(4), "Intereses profesionales");
    school.centro->Execute(u"UPDATE ConsejoOrientador_Nota SET codCOResp=11 WHERE codAlumno=359 AND "
                           u"codConsejoOrientador=4");
    school.centro->Execute(u"UPDATE Alumno_InfInd SET Valoracion='Sofía ha mejorado' WHERE CodAlumno=304");
    key(Qt::Key_F5);
    search("secundaria D'Angelo Bosch");
    EXPECT_EQ(cell(3), "9 de 9");
    EXPECT_THAT(cell(5), HasSubstr("dice «Sofía», y en su sección está Gil Serra, Sofía."));
    search("consejo 2º A abad arias");
    EXPECT_EQ(list().model()->rowCount(), 0);
    EXPECT_EQ(count(), "No falta nada en 1 informes");
    child<QCheckBox>("completos").click();
    EXPECT_EQ(cell(3), "8 de 8");
    // She tutors 2º A of the primary stage.
    Choices choices = window->host().choices();
    choices.user = 3;
    choices.profile = 1;
    window->host().choose(choices);
    search("primaria");
    key(Qt::Key_F5);
    EXPECT_EQ(count(), "Faltan 26 de 26 informes");
}

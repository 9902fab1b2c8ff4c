#include "qt/Asking.h"

#include "qt/QtText.h"

#include <QMessageBox>
#include <QPushButton>

namespace zv {

bool asks(QWidget& owner, const Question& question)
{
    QMessageBox box(QMessageBox::Warning, owner.windowTitle(), toQt(question.text), QMessageBox::NoButton,
                    &owner);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(toQt(question.detail));
    const QPushButton* yes = box.addButton(toQt(question.yes), QMessageBox::DestructiveRole);
    QPushButton* no = box.addButton(toQt(question.no), QMessageBox::RejectRole);
    box.setDefaultButton(no);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}

} // namespace zv

// The Windows MessageBox call on a modal QMessageBox with German buttons and
// the Windows result numbers.
#include "CrossPlatformApi.h"
#include "Cp1252.h"
#include "MessageOnStderr.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>

#include <vector>

namespace CrossPlatformApi {
namespace {

// Windows dialog results.
enum Result { IdOk = 1, IdCancel = 2, IdYes = 6, IdNo = 7, IdTryAgain = 10, IdContinue = 11 };

// The answer of a box closed without a click on one of its buttons.
const int kFailed = IdCancel;

QString fromCp1252(const char* text)
{
    QString result;
    for (const char* p = text ? text : ""; *p; ++p)
        result += QChar(KZBasicServices::cp1252ToUnicode(static_cast<unsigned char>(*p)));
    return result;
}

bool canShowWidgets()
{
    QCoreApplication* app = QCoreApplication::instance();
    return qobject_cast<QApplication*>(app) && QThread::currentThread() == app->thread();
}

struct Choice {
    const char* title;
    QMessageBox::ButtonRole role;
    int result;
};

} // namespace

int messageBox(const char* text, const char* caption, int type)
{
    if (!canShowWidgets())
        return KZBasicServices::messageOnStderr(text, caption);

    static const Choice kOk[] = {{"OK", QMessageBox::AcceptRole, IdOk}};
    static const Choice kYesNo[] = {{"Ja", QMessageBox::YesRole, IdYes}, {"Nein", QMessageBox::NoRole, IdNo}};
    static const Choice kCancelTryContinue[] = {{"Abbrechen", QMessageBox::RejectRole, IdCancel},
                                                {"Wiederholen", QMessageBox::ActionRole, IdTryAgain},
                                                {"Weiter", QMessageBox::AcceptRole, IdContinue}};

    const Choice* choices = kOk;
    size_t count = 1;
    switch (type & 0x0F) {
    case 4:
        choices = kYesNo;
        count = 2;
        break;
    case 6:
        choices = kCancelTryContinue;
        count = 3;
        break;
    default: break;
    }

    QMessageBox box((type & 0x30) ? QMessageBox::Critical : QMessageBox::NoIcon, fromCp1252(caption), fromCp1252(text));
    box.setTextFormat(Qt::PlainText);
    std::vector<QPushButton*> buttons;
    for (size_t i = 0; i < count; ++i)
        buttons.push_back(box.addButton(QString::fromLatin1(choices[i].title), choices[i].role));
    box.setDefaultButton(buttons.front());
    if (count == 3)
        box.setEscapeButton(buttons.front()); // Escape cancels, as on Windows

    box.exec();

    QAbstractButton* clicked = box.clickedButton();
    for (size_t i = 0; i < count; ++i)
        if (clicked == buttons[i])
            return choices[i].result;
    return kFailed;
}

} // namespace CrossPlatformApi

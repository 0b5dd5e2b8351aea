// The Windows MessageBox call on a modal QMessageBox with German buttons and
// the Windows result numbers.
#include "CrossPlatformApi.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>

#include <cstdio>
#include <vector>

namespace CrossPlatformApi {
namespace {

// Windows dialog results.
enum Result { IdOk = 1, IdCancel = 2, IdYes = 6, IdNo = 7, IdTryAgain = 10, IdContinue = 11 };

// The answer of a box that could not be shown or was closed otherwise.
const int kFailed = IdCancel;

// Windows-1252 differs from Latin-1 in 0x80..0x9F only. Its five unassigned
// bytes there stay the control characters of the same number, as Qt 5's codec
// read them (Qt 6 has no Windows-1252 decoder in its core).
QString fromCp1252(const char* text)
{
    static const char16_t kHigh[32] = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
        0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    QString result;
    for (const char* p = text ? text : ""; *p; ++p) {
        const unsigned char byte = static_cast<unsigned char>(*p);
        result += byte >= 0x80 && byte < 0xA0 ? QChar(kHigh[byte - 0x80]) : QChar(static_cast<char16_t>(byte));
    }
    return result;
}

bool canShowWidgets()
{
    QCoreApplication* app = QCoreApplication::instance();
    return qobject_cast<QApplication*>(app) && QThread::currentThread() == app->thread();
}

int reportOnStderr(const char* text, const char* caption)
{
    const std::string line = fileSystemEncoding(std::string(caption ? caption : "") + ": "
                                                + (text ? text : "") + "\n");
    std::fputs(line.c_str(), stderr);
    return kFailed;
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
        return reportOnStderr(text, caption);

    static const Choice kOk[] = {{"OK", QMessageBox::AcceptRole, IdOk}};
    static const Choice kYesNo[] = {{"Ja", QMessageBox::YesRole, IdYes},
                                    {"Nein", QMessageBox::NoRole, IdNo}};
    static const Choice kCancelTryContinue[] = {
        {"Abbrechen", QMessageBox::RejectRole, IdCancel},
        {"Wiederholen", QMessageBox::ActionRole, IdTryAgain},
        {"Weiter", QMessageBox::AcceptRole, IdContinue}};

    const Choice* choices = kOk;
    size_t count = 1;
    switch (type & 0x0F) {
    case 4: choices = kYesNo; count = 2; break;
    case 6: choices = kCancelTryContinue; count = 3; break;
    default: break;
    }

    QMessageBox box((type & 0x30) ? QMessageBox::Critical : QMessageBox::NoIcon,
                    fromCp1252(caption), fromCp1252(text));
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

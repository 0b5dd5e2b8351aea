// Message boxes as real widgets on Qt's offscreen platform, and the assertion
// handler built on them.
#include "CrossPlatformApi.h"
#include "KZStringFunctions.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <functional>
#include <thread>

namespace cpa = CrossPlatformApi;

namespace {

std::string latin1(const QString& text)
{
    return text.toLatin1().toStdString();
}

class Gui : public testing::Test {
protected:
    // Runs `call`; once its modal box is open, records "title|text|buttons (the
    // default one starred),icon", clicks the button titled `click` (or presses
    // "Escape", or "close"s the window) and appends "=result".
    std::string answer(const std::string& click, const std::function<int()>& call)
    {
        std::string shown;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            timer.stop();
            shown = latin1(box->windowTitle()) + "|" + latin1(box->text()) + "|";
            QAbstractButton* target = box->buttons().value(0);
            for (QAbstractButton* button : box->buttons()) {
                shown += latin1(button->text()) + (button == box->defaultButton() ? "*," : ",");
                target = latin1(button->text()) == click ? button : target;
            }
            shown += box->icon() == QMessageBox::Critical ? "critical" : "plain";
            if (click == "Escape") {
                QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
                QApplication::sendEvent(box, &escape);
            } else if (click == "close") {
                box->close();
            } else {
                target->click();
            }
        });
        timer.start(10);
        const int result = call();
        return shown + "=" + std::to_string(result);
    }

    int argc = 1;
    char name[5] = "test", *argv[2] = {name, nullptr};
    QApplication app{argc, argv};
};

} // namespace

TEST_F(Gui, MessageBoxButtonSetsStylesAndResults)
{
    struct Case {
        int type;
        const char* click;
        const char* shown;
    };
    const Case cases[] = {
        {0x00, "OK", "OK*,plain=1"},
        {0x01, "OK", "OK*,plain=1"}, // OK/Cancel is no recognised set
        {0x40, "OK", "OK*,plain=1"},
        {0x24, "Ja", "Ja*,Nein,critical=6"},
        {0x04, "Nein", "Ja*,Nein,plain=7"},
        {0x36, "Abbrechen", "Weiter,Abbrechen*,Wiederholen,critical=2"},
        {0x36, "Wiederholen", "Weiter,Abbrechen*,Wiederholen,critical=10"},
        {0x06, "Weiter", "Weiter,Abbrechen*,Wiederholen,plain=11"},
        // Closed without a click: the escape button's answer.
        {0x00, "Escape", "OK*,plain=1"},
        {0x10, "close", "OK*,critical=1"},
        {0x04, "Escape", "Ja*,Nein,plain=7"},
        {0x24, "close", "Ja*,Nein,critical=7"},
        {0x06, "Escape", "Weiter,Abbrechen*,Wiederholen,plain=2"},
        {0x36, "close", "Weiter,Abbrechen*,Wiederholen,critical=2"},
    };
    for (const Case& c : cases) // the Windows-1252 euro sign is no Latin-1 character
        EXPECT_EQ(answer(c.click, [&] { return cpa::messageBox("100% gel\xF6scht.", "Planer \x80", c.type); }),
                  std::string("Planer ?|100% gel\xF6scht.|") + c.shown);
    int result = 0; // off the GUI thread: reported on stderr
    testing::internal::CaptureStderr();
    std::thread([&result] { result = cpa::messageBox("Text", "Titel", 0x24); }).join();
    EXPECT_EQ(testing::internal::GetCapturedStderr() + std::to_string(result), "Titel: Text\n2");
}

TEST_F(Gui, AssertionShowsExpressionAndPositionAndFollowsTheChoice)
{
    const std::string shown =
        "ASSERTION|ASSERTION in main.c, line 12.\nAusdruck:\nx > 0\nAbbrechen = Beenden\n"
        "Wiederholen = Debuggen\nWeiter = Weitermachen|Weiter,Abbrechen*,Wiederholen,critical";
    struct Case {
        bool condition;
        const char* click;
        std::string result;
    };
    for (const Case& c : {Case{false, "Weiter", shown + "=1"}, Case{false, "Wiederholen", shown + "=0"},
                          Case{true, "Weiter", "=1"}}) // a true condition shows nothing
        EXPECT_EQ(answer(c.click, [&] { return processAssertion(c.condition, "main.c", 12, "x > 0"); }), c.result);
}

// Message boxes as real widgets on Qt's offscreen platform: a timer finds the
// open box, records what it shows and clicks a button. Also the assertion
// handler built on it.
#include "CrossPlatformApi.h"
#include "KZStringFunctions.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <clocale>
#include <memory>
#include <thread>

namespace cpa = CrossPlatformApi;

namespace {

// What the box showed.
struct Shown {
    bool found = false;
    std::string title, text, defaultButton;
    std::vector<std::string> buttons; // sorted
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

std::string cp1252(const QString& text) { return text.toLatin1().toStdString(); }

// A QApplication for each test; the C locale it takes from the environment is
// put back, so nothing after it depends on the host.
class GuiTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_app = std::make_unique<QApplication>(s_argc, s_argv);
        std::setlocale(LC_ALL, "C");
    }
    void TearDown() override { m_app.reset(); }

    // Once a modal message box is open, records it into `shown` and clicks
    // the button titled `button` (the first one if there is none such).
    std::unique_ptr<QTimer> clickWhenShown(const std::string& button, Shown& shown)
    {
        auto timer = std::make_unique<QTimer>();
        QTimer* self = timer.get();
        QObject::connect(self, &QTimer::timeout, [self, button, &shown] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            self->stop();
            shown.found = true;
            shown.title = cp1252(box->windowTitle());
            shown.text = cp1252(box->text());
            shown.icon = box->icon();
            if (box->defaultButton())
                shown.defaultButton = cp1252(box->defaultButton()->text());
            QAbstractButton* target = box->buttons().value(0);
            for (QAbstractButton* candidate : box->buttons()) {
                shown.buttons.push_back(cp1252(candidate->text()));
                if (cp1252(candidate->text()) == button)
                    target = candidate;
            }
            std::sort(shown.buttons.begin(), shown.buttons.end());
            target->click();
        });
        timer->start(10);
        return timer;
    }

private:
    static int s_argc;
    static char* s_argv[];
    std::unique_ptr<QApplication> m_app;
};

char g_name[] = "platform_messagebox_test";
int GuiTest::s_argc = 1;
char* GuiTest::s_argv[] = {g_name, nullptr};

using MessageBox = GuiTest;
using Assertion = GuiTest;
using Desktop = GuiTest;

const char* const kAssertionText =
    "ASSERTION in main.c, line 12.\nAusdruck:\nx > 0\n"
    "Abbrechen = Beenden\nWiederholen = Debuggen\nWeiter = Weitermachen";

} // namespace

TEST_F(MessageBox, ButtonSetsStylesAndResults)
{
    using Buttons = std::vector<std::string>;
    const Buttons ok{"OK"};
    const Buttons yesNo{"Ja", "Nein"};
    const Buttons cancelTryContinue{"Abbrechen", "Weiter", "Wiederholen"};
    struct Case { int type; Buttons buttons; bool critical; const char* click; int result; };
    const Case cases[] = {
        {0x00, ok, false, "OK", 1},
        {0x01, ok, false, "OK", 1},    // OK/Cancel is not a recognised set: OK alone
        {0x03, ok, false, "OK", 1},
        {0x10, ok, true, "OK", 1},
        {0x04, yesNo, false, "Ja", 6},
        {0x24, yesNo, true, "Ja", 6},
        {0x24, yesNo, true, "Nein", 7},
        {0x06, cancelTryContinue, false, "Weiter", 11},
        {0x36, cancelTryContinue, true, "Abbrechen", 2},
        {0x36, cancelTryContinue, true, "Wiederholen", 10},
        {0x36, cancelTryContinue, true, "Weiter", 11},
        {0x40, ok, false, "OK", 1},    // the information icon is no critical one
        {0x44, yesNo, false, "Nein", 7},
    };
    for (const Case& c : cases) {
        Shown shown;
        auto timer = clickWhenShown(c.click, shown);
        EXPECT_EQ(cpa::messageBox("Datei gel\xF6scht.", "Planer \x80", c.type), c.result) << c.type;
        ASSERT_TRUE(shown.found) << c.type;
        EXPECT_EQ(shown.title, "Planer ?") << "the euro sign is no Latin-1 character";
        EXPECT_EQ(shown.text, "Datei gel\xF6scht.");
        EXPECT_EQ(shown.buttons, c.buttons) << c.type;
        EXPECT_EQ(shown.defaultButton, c.buttons == cancelTryContinue ? "Abbrechen"
                                       : c.buttons == yesNo          ? "Ja"
                                                                     : "OK");
        EXPECT_EQ(shown.icon, c.critical ? QMessageBox::Critical : QMessageBox::NoIcon) << c.type;
    }
}

TEST_F(MessageBox, TextIsShownAsItStands)
{
    Shown shown;
    auto timer = clickWhenShown("OK", shown);
    EXPECT_EQ(cpa::messageBox("100% <b>sicher</b>\nzweite Zeile", "", 0), 1);
    EXPECT_EQ(shown.text, "100% <b>sicher</b>\nzweite Zeile");
}

TEST_F(MessageBox, OffTheGuiThreadItReportsOnStderr)
{
    int result = 0;
    testing::internal::CaptureStderr();
    std::thread worker([&result] { result = cpa::messageBox("Text", "Titel", 0x24); });
    worker.join();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Titel: Text\n");
    EXPECT_EQ(result, 2);
}

TEST(MessageBoxWithoutGui, ReportsOnStderrAndAnswersLikeAFailedBox)
{
    struct Case { const char* text; const char* caption; int type; std::string printed; };
    const Case cases[] = {
        {"Datei gel\xF6scht.", "Planer", 0, "Planer: Datei gel\xC3\xB6scht.\n"},
        {"Frage?", "", 0x24, ": Frage?\n"},
        {nullptr, nullptr, 0x36, ": \n"},
    };
    for (const Case& c : cases) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(cpa::messageBox(c.text, c.caption, c.type), 2);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.printed);
    }
}

TEST_F(Desktop, ActivateAppBringsAWindowToTheFront)
{
    activateApp(); // no window yet: nothing to do
    QWidget first, second;
    first.show();
    second.show();
    QApplication::setActiveWindow(&second);
    second.hide();
    QApplication::processEvents();
    activateApp();
    QApplication::processEvents();
    EXPECT_EQ(QApplication::activeWindow(), &first);
}

TEST(DesktopWithoutGui, ActivateAppDoesNothing)
{
    activateApp();
}

TEST_F(Assertion, ShowsExpressionAndPositionAndFollowsTheChoice)
{
    struct Case { const char* click; bool result; };
    const Case cases[] = {{"Weiter", true}, {"Wiederholen", false}};
    for (const Case& c : cases) {
        Shown shown;
        auto timer = clickWhenShown(c.click, shown);
        EXPECT_EQ(processAssertion(false, "main.c", 12, "x > 0"), c.result) << c.click;
        ASSERT_TRUE(shown.found);
        EXPECT_EQ(shown.title, "ASSERTION");
        EXPECT_EQ(shown.text, kAssertionText);
        EXPECT_EQ(shown.buttons, (std::vector<std::string>{"Abbrechen", "Weiter", "Wiederholen"}));
        EXPECT_EQ(shown.icon, QMessageBox::Critical);
    }
}

TEST_F(Assertion, ATrueConditionShowsNothing)
{
    Shown shown;
    auto timer = clickWhenShown("Abbrechen", shown);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(processAssertion(true, "main.c", 12, "x > 0"));
    QApplication::processEvents();
    EXPECT_FALSE(shown.found);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Assertion, CancelEndsTheProcessWithStatus99)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            Shown shown;
            auto timer = clickWhenShown("Abbrechen", shown);
            processAssertion(false, "main.c", 12, "x > 0");
        },
        testing::ExitedWithCode(99), "");
}

TEST(AssertionWithoutGui, EndsTheProcessWithStatus99)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(processAssertion(false, "main.c", 12, "x > 0"), testing::ExitedWithCode(99),
                "ASSERTION: ASSERTION in main.c, line 12.");
}

TEST(AssertionWithoutGui, LongPositionsAreCutNotOverrun)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::string file(1000, 'f');
    EXPECT_EXIT(processAssertion(false, file.c_str(), 1, nullptr), testing::ExitedWithCode(99),
                "ASSERTION in f{200}");
}

TEST(ErrorTexts, OneSentenceForEveryCode)
{
    const std::string expected = "WindowsApi-Fehler auf Mac oder Linux? Das ist ein wenig absurd.";
    for (unsigned long code : {0ul, 5ul, 0xFFFFFFFFul})
        EXPECT_EQ(getErrorMsgForErrorCode(code), expected) << code;
}

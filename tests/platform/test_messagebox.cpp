// Message boxes as real widgets on Qt's offscreen platform: a timer finds the
// open box, records what it shows and clicks a button. Also the assertion
// handler built on it, and activateApp.
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
using Texts = std::vector<std::string>;

namespace {

struct Shown {
    bool found = false;
    std::string title, text, defaultButton;
    Texts buttons; // sorted
    bool critical = false;
};

std::string latin1(const QString& text) { return text.toLatin1().toStdString(); }

char g_name[] = "platform_messagebox_test";
int g_argc = 1;
char* g_argv[] = {g_name, nullptr};

// A QApplication per test; the C locale it takes from the environment is put
// back, so nothing after it depends on the host.
class GuiTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_app = std::make_unique<QApplication>(g_argc, g_argv);
        std::setlocale(LC_ALL, "C");
    }

    // Once a modal message box is open, records it into `shown` and clicks
    // the button titled `button` (or the first one).
    std::unique_ptr<QTimer> clickWhenShown(const std::string& button, Shown& shown)
    {
        auto timer = std::make_unique<QTimer>();
        QObject::connect(timer.get(), &QTimer::timeout, [self = timer.get(), button, &shown] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            self->stop();
            shown = {true, latin1(box->windowTitle()), latin1(box->text()),
                     box->defaultButton() ? latin1(box->defaultButton()->text()) : "", {},
                     box->icon() == QMessageBox::Critical};
            QAbstractButton* target = box->buttons().value(0);
            for (QAbstractButton* candidate : box->buttons()) {
                shown.buttons.push_back(latin1(candidate->text()));
                target = shown.buttons.back() == button ? candidate : target;
            }
            std::sort(shown.buttons.begin(), shown.buttons.end());
            target->click();
        });
        timer->start(10);
        return timer;
    }

private:
    std::unique_ptr<QApplication> m_app;
};

using MessageBox = GuiTest;
using Assertion = GuiTest;
using Desktop = GuiTest;

} // namespace

TEST_F(MessageBox, ButtonSetsStylesAndResults)
{
    const Texts ok{"OK"}, yesNo{"Ja", "Nein"}, cancelTryContinue{"Abbrechen", "Weiter", "Wiederholen"};
    struct Case { int type; const Texts& buttons; bool critical; const char* click; int result; };
    const Case cases[] = {
        {0x00, ok, false, "OK", 1},   {0x01, ok, false, "OK", 1}, // OK/Cancel is no recognised set
        {0x10, ok, true, "OK", 1},    {0x40, ok, false, "OK", 1}, // information is no critical icon
        {0x04, yesNo, false, "Ja", 6}, {0x24, yesNo, true, "Ja", 6}, {0x24, yesNo, true, "Nein", 7},
        {0x06, cancelTryContinue, false, "Weiter", 11},  {0x36, cancelTryContinue, true, "Abbrechen", 2},
        {0x36, cancelTryContinue, true, "Wiederholen", 10}, {0x36, cancelTryContinue, true, "Weiter", 11},
    };
    for (const Case& c : cases) {
        Shown shown;
        auto timer = clickWhenShown(c.click, shown);
        EXPECT_EQ(cpa::messageBox("100% gel\xF6scht.", "Planer \x80", c.type), c.result) << c.type;
        EXPECT_EQ(shown.title, "Planer ?") << "the Windows-1252 euro sign is no Latin-1 character";
        EXPECT_EQ(shown.text, "100% gel\xF6scht.");
        EXPECT_EQ(shown.buttons, c.buttons) << c.type;
        EXPECT_EQ(shown.defaultButton, c.buttons.size() == 3 ? "Abbrechen" : c.buttons.front());
        EXPECT_EQ(shown.critical, c.critical) << c.type;
    }
}

TEST_F(MessageBox, OffTheGuiThreadItReportsOnStderr)
{
    int result = 0;
    testing::internal::CaptureStderr();
    std::thread([&result] { result = cpa::messageBox("Text", "Titel", 0x24); }).join();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Titel: Text\n");
    EXPECT_EQ(result, 2);
}

TEST(MessageBoxWithoutGui, ReportsOnStderrAndAnswersLikeAFailedBox)
{
    struct Case { const char* text; const char* caption; int type; std::string printed; };
    const Case cases[] = {{"gel\xF6scht.", "Planer", 0, "Planer: gel\xC3\xB6scht.\n"}, {nullptr, nullptr, 0x36, ": \n"}};
    for (const Case& c : cases) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(cpa::messageBox(c.text, c.caption, c.type), 2);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.printed);
    }
}

TEST_F(Desktop, ActivateAppBringsAVisibleWindowToTheFront)
{
    activateApp(); // no window: nothing to do
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

TEST_F(Assertion, ShowsExpressionAndPositionAndFollowsTheChoice)
{
    struct Case { const char* click; bool result; };
    for (const Case& c : {Case{"Weiter", true}, Case{"Wiederholen", false}}) {
        Shown shown;
        auto timer = clickWhenShown(c.click, shown);
        EXPECT_EQ(processAssertion(false, "main.c", 12, "x > 0"), c.result) << c.click;
        EXPECT_EQ(shown.title, "ASSERTION");
        EXPECT_EQ(shown.text, "ASSERTION in main.c, line 12.\nAusdruck:\nx > 0\n"
                              "Abbrechen = Beenden\nWiederholen = Debuggen\nWeiter = Weitermachen");
        EXPECT_EQ(shown.buttons, (Texts{"Abbrechen", "Weiter", "Wiederholen"}));
        EXPECT_TRUE(shown.critical);
    }
    Shown shown;
    auto timer = clickWhenShown("Abbrechen", shown);
    EXPECT_TRUE(processAssertion(true, "main.c", 12, "x > 0"));
    QApplication::processEvents();
    EXPECT_FALSE(shown.found) << "a true condition shows nothing";
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

TEST(AssertionWithoutGui, EndsTheProcessWithStatus99AndCutsLongPositions)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(processAssertion(false, "main.c", 12, "x > 0"), testing::ExitedWithCode(99),
                "ASSERTION: ASSERTION in main.c, line 12.");
    const std::string file(1000, 'f');
    EXPECT_EXIT(processAssertion(false, file.c_str(), 1, nullptr), testing::ExitedWithCode(99),
                "ASSERTION in f{299}\nAusdruck:");
}

TEST(ErrorTexts, OneSentenceForEveryCode)
{
    for (unsigned long code : {0ul, 5ul, 0xFFFFFFFFul})
        EXPECT_EQ(getErrorMsgForErrorCode(code), "WindowsApi-Fehler auf Mac oder Linux? Das ist ein wenig absurd.");
}

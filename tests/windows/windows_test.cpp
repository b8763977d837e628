// Every window fits its screen, and its buttons can be reached, whatever the screen's size and the system's font.
#include <gmock/gmock.h>

#include <QApplication>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>

#include "groupeditor/frmFehlerHptkt.h"
#include "platform/desktop/application/OnScreen.h"
#include "platform/desktop/qt/QtMessageBoxes.h"
#include "startup/frmInfoStart.h"
#include "startup/frmStatus.h"
#include "tests/groupeditor/Buehne.h"
#include "tests/transfer/TransferTest.h"

using namespace Qt::StringLiterals;

namespace {

class Windows : public TransferTest, public testing::WithParamInterface<int>
{
protected:
    void SetUp() override
    {
        QFont font = m_font;
        font.setPointSize(GetParam());
        QApplication::setFont(font);
    }
    void TearDown() override { QApplication::setFont(m_font); }

private:
    QFont m_font = QApplication::font();
};

// Scrolls it into view first, as the keyboard does.
bool canBeReached(QWidget &widget)
{
    for (QWidget *above = widget.parentWidget(); above; above = above->parentWidget()) {
        if (auto *scroll = qobject_cast<QScrollArea *>(above))
            scroll->ensureWidgetVisible(&widget, 0, 0);
    }
    QApplication::processEvents();
    return widget.visibleRegion().boundingRect() == widget.rect();
}

void check(QWidget &window, const char *name, int buttons)
{
    SCOPED_TRACE(name);
    QTest::qWait(50); // layouts and what is shown late
    constexpr int titleBar = 24;
    const QSize screen = window.screen()->availableSize();
    EXPECT_LE(window.width(), screen.width());
    EXPECT_LE(window.height(), screen.height() - titleBar);
    const QList<QPushButton *> all = window.findChildren<QPushButton *>();
    int reached = 0;
    for (QPushButton *button : all) {
        if (!button->isHidden())
            reached += canBeReached(*button);
    }
    EXPECT_EQ(reached, buttons);
    const QString pictures = qEnvironmentVariable("WINDOWS_PICTURES");
    if (!pictures.isEmpty()) {
        window.grab().save(u"%1/%2-%3-%4.png"_s.arg(pictures, qEnvironmentVariable("WINDOWS_SCREEN"))
                               .arg(QApplication::font().pointSize())
                               .arg(QString::fromLatin1(name)));
    }
}

} // namespace

TEST_P(Windows, FitTheScreenWithTheirButtons)
{
    ASSERT_EQ(u"%1x%2"_s.arg(QGuiApplication::primaryScreen()->size().width())
                  .arg(QGuiApplication::primaryScreen()->size().height()),
              qEnvironmentVariable("WINDOWS_SCREEN"));
    Buehne b(u"A; B H D2/X Alpha Nord; C H D2/X Alpha Süd");
    b.zeige();
    check(b.fenster(), "main", 7); // two are hidden
    b.suche(u"Alpha");
    b.uebernimm(u"B");
    ASSERT_TRUE(b.mehrdeutig());
    check(*b.mehrdeutig(), "several-main-contacts", 1);
    b.mehrdeutig()->hide(); // another program's, as far as the next window knows: it would stay in front of it
    b.fenster().hide();

    zeigeMitMandant();
    check(dialog(), "transfer", 3);
    frmMandantenpasswort kennwort(*m_haupt, &dialog());
    kennwort.show();
    check(kennwort, "password", 2);
    frmInfoStart info({});
    info.show();
    check(info, "information", 1);
    frmStatus status;
    status.show();
    check(status, "status", 0);
}

TEST_P(Windows, BoxesScrollALongText)
{
    const QString words = u"INSERT INTO sPersKto (PersKtoNummer) VALUES ('D000001') "_s;
    // clang-format off
    struct Row { const char *name; QString text; desktop::Buttons buttons; int count; std::optional<bool> scrolls; };
    const Row rows[] = {
        {"short",         u"Die Nummer ist schon vergeben !"_s, desktop::Buttons::Ok,    1, false},
        {"statement",     words.repeated(36),                   desktop::Buttons::Ok,    1, std::nullopt},
        {"one-long-word", QString(2000, u'x'),                  desktop::Buttons::Ok,    1, true},
        {"many-lines",    u"Zeile\r\n"_s.repeated(200),         desktop::Buttons::YesNo, 2, true},
    };
    // clang-format on
    for (const Row &row : rows) {
        bool shown = false;
        QTimer::singleShot(0, qApp, [&] {
            QWidget *box = QApplication::activeModalWidget();
            ASSERT_TRUE(box);
            shown = true;
            check(*box, row.name, row.count);
            const bool scrolls = !box->findChildren<QScrollArea *>().isEmpty();
            EXPECT_EQ(scrolls, row.scrolls.value_or(scrolls)); // a large screen may have room for a statement
            box->close();
        });
        desktop::QtMessageBoxes().show({row.text, desktop::Icon::Critical, row.buttons});
        EXPECT_TRUE(shown);
    }
}

TEST_P(Windows, ADialogWithoutAVisibleParentStandsInTheMiddle)
{
    zeigeMitMandant();
    dialog().hide();
    dialog().move(0, 0);
    frmMandantenpasswort kennwort(*m_haupt, &dialog());
    kennwort.show();
    const QPoint off = kennwort.frameGeometry().center() - kennwort.screen()->availableGeometry().center();
    EXPECT_LT(off.manhattanLength(), 60);
}

INSTANTIATE_TEST_SUITE_P(Fonts, Windows, testing::Values(9, 16));

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const desktop::OnScreen onScreen;
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

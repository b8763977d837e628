// A contact program with an automation interface: what other programs meet as ACT! on this system.
#include <cstdio>
#include <optional>

#include <QAction>
#include <QApplication>

#include "acthost/ActService.h"
#include "acthost/ContactBook.h"
#include "acthost/MainWindow.h"
#include "acthost/Options.h"
#include "platform/dbf/DbfDriver.h"
#include "platform/desktop/application/DisplayGuard.h"
#include "platform/desktop/application/EndRequests.h"
#include "platform/desktop/application/OnScreen.h"
#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;
using namespace acthost;

namespace {

void write(std::FILE *stream, const QString &text)
{
    std::fputs(text.toUtf8().constData(), stream);
    std::fflush(stream);
}

void connectStates(MainWindow &window, ActService &service, const QString &busName)
{
    const auto offerOrWithdraw = [&window, &service, busName](bool without) {
        if (without) {
            service.withdraw(busName);
            window.setServiceText(u"Automatisierung noch nicht bereit"_s, false);
            return;
        }
        const QString problem = service.offer(busName);
        window.setServiceText(problem.isEmpty() ? u"Automatisierung bereit"_s
                                                : u"Automatisierung nicht möglich: "_s + problem,
                              problem.isEmpty());
        if (!problem.isEmpty())
            write(stderr, problem + u'\n');
    };
    QObject::connect(window.withoutAutomationAction(), &QAction::toggled, &window, offerOrWithdraw);
    QObject::connect(window.hangingAction(), &QAction::toggled, &window,
                     [&service](bool hanging) { service.setHanging(hanging); });
    offerOrWithdraw(window.withoutAutomationAction()->isChecked());
}

int run(const Options &options)
{
    dbf::DbfDriver driver;
    ContactBook book(driver, options.database, FieldList::read(options.fieldList));
    MainWindow window(book);
    ActService service(book, window, options.faults);

    if (!options.uniqueId.isEmpty()) {
        const std::optional<storage::RowId> row = book.find(options.uniqueId);
        if (!row)
            throw RunTimeError(5, u"Einen Kontakt mit der Kennung „%1“ gibt es nicht."_s.arg(options.uniqueId));
        window.showContact(row);
    }
    window.show();
    window.withoutAutomationAction()->setChecked(options.withoutAutomation);
    window.noticeAction()->setChecked(options.noticeOpen);
    connectStates(window, service, options.busName);
    window.hangingAction()->setChecked(options.hanging);
    const desktop::EndRequests ending([] { QCoreApplication::exit(0); }); // the table is closed behind the event loop
    write(stdout, u"bereit\n"_s); // whoever starts the program with a pipe can wait for this line
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList words; // what can be said about them needs no display
    for (int i = 1; i < argc; ++i)
        words += QString::fromLocal8Bit(argv[i]);
    if (words.contains(u"--help"_s)) {
        write(stdout, Options::helpText());
        return 0;
    }
    try {
        const Options options = Options::parse(words);
        std::optional<desktop::DisplayGuard> guard(u"acthost"_s);
        const QApplication application(argc, argv);
        guard.reset();
        const desktop::OnScreen onScreen;
        QApplication::setApplicationName(u"acthost"_s); // the window's class follows from it
        return run(options);
    } catch (const RunTimeError &error) {
        write(stderr, u"acthost: %1\nHilfe mit acthost --help\n"_s.arg(error.Description()));
        return 2;
    }
}

// The program itself, without a screen, called over a bus of the test's own.
#include <csignal>

#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>

#include "platform/automation/dbus/DBusAutomation.h"
#include "tests/acthost/Samples.h"
#include "tests/automation/PrivateBus.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class ActHostTest : public testing::Test
{
protected:
    void start(const QStringList &options)
    {
        ASSERT_TRUE(bus.start(host, QStringLiteral(ACTHOST), QStringList{path} + options));
    }
    AutomationObjectPtr view() const
    {
        const AutomationObjectPtr views = objectOf(application()->get(u"Views"_s));
        return objectOf(views->call(u"Create"_s, {short(1), u"abc"_s}));
    }
    AutomationObjectPtr application() const { return automation->CreateObject(u"ACTOLE.APPOBJECT"_s); }
    void TearDown() override { PrivateBus::end(host); }

    QTemporaryDir folder;
    QString path = makeContacts(folder.filePath(u"Büro"_s));
    PrivateBus bus;
    QProcess host;
    std::unique_ptr<DBusAutomation> automation
        = std::make_unique<DBusAutomation>(DBusSettings{.timeout = 5s, .busAddress = bus.address()});
};

int failureOf(const AutomationObjectPtr &object, const QString &method, const Arguments &arguments = {})
{
    try {
        object->call(method, arguments);
    } catch (const AutomationError &error) {
        return error.Number();
    }
    return 0;
}

TEST_F(ActHostTest, TheApplicationAnswers)
{
    start({});
    const AutomationObjectPtr act = application();
    ASSERT_TRUE(act);
    EXPECT_EQ(act->call(u"getopendbname"_s).toString(), path);
    EXPECT_EQ(act->get(u"ActVersion"_s).toString(), u"6.0.4"_s);
    EXPECT_FALSE(act->call(u"getcurrentusername"_s).toString().isEmpty());
    EXPECT_FALSE(act->call(u"getuserprivilege"_s).toString().isEmpty());

    int width = 0;
    int height = 0;
    const Arguments size{Argument::byReference(width), Argument::byReference(height)};
    act->call(u"getsize"_s, size);
    EXPECT_GT(width, 500);
    act->call(u"Minimize"_s);
    act->call(u"maximize"_s);
    act->call(u"Resize"_s, {900, 650});
    act->call(u"getsize"_s, size);
    EXPECT_TRUE(width == 900 && height == 650) << width << " x " << height;
    EXPECT_EQ(failureOf(act, u"Resize"_s, {0, -1}), 5);
    EXPECT_EQ(failureOf(act, u"Resize"_s, {900}), 450);
    EXPECT_EQ(failureOf(act, u"LookupALL"_s), 438) << "a member of the contact window";
}

TEST_F(ActHostTest, AContactWindowReadsAndWrites)
{
    start({u"--kontakt"_s, u"id-1"_s});
    const AutomationObjectPtr contacts = view();
    short field = 26;
    EXPECT_EQ(contacts->call(u"getfield"_s, {Argument::byReference(field)}).toString(), u"Anna Groß"_s)
        << "a new window stands on the contact on screen";
    contacts->call(u"LookupALL"_s);
    EXPECT_EQ(contacts->call(u"GetCount"_s).toInt(), 3);
    contacts->call(u"createLookup"_s, {u"id-3"_s});
    EXPECT_EQ(contacts->call(u"GetCount"_s).toInt(), 1);
    field = 62;
    contacts->call(u"SetField"_s, {Argument::byReference(field), u"N"_s});
    EXPECT_EQ(contacts->call(u"getfield"_s, {field}).toString(), u"N"_s);
    EXPECT_EQ(failureOf(contacts, u"SetField"_s, {field, u"NN"_s}), 5);
    EXPECT_EQ(contacts->call(u"getfield"_s, {field}).toString(), u"N"_s);
    EXPECT_EQ(failureOf(contacts, u"getfield"_s, {short(99)}), 5);
    EXPECT_EQ(failureOf(contacts, u"getfield"_s, {62}), 450) << "field numbers have 16 bit";

    const AutomationObjectPtr second = view();
    EXPECT_EQ(second->call(u"getfield"_s, {short(1)}).toString(), u"id-3"_s) << "the screen has followed";
    second->call(u"createLookup"_s, {u"niemand"_s});
    EXPECT_EQ(failureOf(second, u"getfield"_s, {short(1)}), 3021);
    EXPECT_EQ(contacts->call(u"getfield"_s, {short(1)}).toString(), u"id-3"_s) << "windows are apart";
}

TEST_F(ActHostTest, ClosesItsTableWhenItIsAskedToEnd)
{
    const auto files = [this] { return QDir(folder.filePath(u"Büro"_s)).entryList(QDir::Files); };
    const QStringList before = files();
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(signal);
        start({u"--kontakt"_s, u"id-1"_s});
        view()->call(u"SetField"_s, {short(62), u"N"_s});
        kill(static_cast<pid_t>(host.processId()), signal);
        ASSERT_TRUE(host.waitForFinished());
        EXPECT_EQ(host.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(host.exitCode(), 0);
        EXPECT_EQ(files(), before);
    }
}

TEST_F(ActHostTest, CanBeBlockedUnreachableOrHanging)
{
    start({u"--hinweis"_s});
    const AutomationObjectPtr contacts = view();
    EXPECT_EQ(failureOf(contacts, u"LookupALL"_s), 91);
    EXPECT_EQ(failureOf(contacts, u"SetField"_s, {short(62), u"H"_s}), 91);
    EXPECT_FALSE(application()->call(u"getopendbname"_s).toString().isEmpty());
    PrivateBus::end(host);

    start({u"--ohne-automation"_s});
    EXPECT_FALSE(application());
    PrivateBus::end(host);

    start({u"--haengend"_s});
    automation = std::make_unique<DBusAutomation>(DBusSettings{.timeout = 500ms, .busAddress = bus.address()});
    const AutomationObjectPtr act = application();
    ASSERT_TRUE(act) << "the name is there";
    EXPECT_EQ(failureOf(act, u"getopendbname"_s), 440);
}

TEST_F(ActHostTest, AFaultyCallEndsWithAMessage)
{
    QProcess process;
    process.start(QStringLiteral(ACTHOST), {u"/nirgends/A.DBF"_s});
    ASSERT_TRUE(process.waitForFinished(20000));
    EXPECT_EQ(process.exitCode(), 2);
    EXPECT_TRUE(QString::fromUtf8(process.readAllStandardError()).contains(u"/nirgends/A.felder"_s));
}

} // namespace

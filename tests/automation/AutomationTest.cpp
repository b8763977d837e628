// Late-bound objects of another process over a bus of the test's own.
#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include "platform/automation/dbus/DBusAutomation.h"
#include "tests/automation/ForeignProgram.h"
#include "tests/automation/PrivateBus.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class AutomationTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_FALSE(bus.address().isEmpty());
        ASSERT_TRUE(bus.start(foreign, QCoreApplication::applicationFilePath(), {u"--foreign"_s}));
        object = automation.CreateObject(u"TEST.FOREIGN"_s);
        ASSERT_TRUE(object);
    }
    void TearDown() override { PrivateBus::end(foreign); }

    PrivateBus bus;
    QProcess foreign;
    DBusAutomation automation{{2s, bus.address()}};
    AutomationObjectPtr object;
};

const QVariant empty = QVariant::fromValue(nullptr); // what a member without a result gives

// The number and text of the failure; 0 if there was none.
std::pair<int, QString> failureOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const AutomationError &error) {
        return {error.Number(), error.Description()};
    }
    return {0, {}};
}

TEST_F(AutomationTest, ReferencesComeBackBeforeTheResult)
{
    int width = 1;
    int height = 2;
    EXPECT_EQ(object->call(u"getsize"_s, {Argument::byReference(width), Argument::byReference(height)}), empty);
    EXPECT_EQ(width, 801);
    EXPECT_EQ(height, 602);

    short sum = 40;
    EXPECT_EQ(object->call(u"addTo"_s, {Argument::byReference(sum), 2}).toString(), u"sum of ni"_s);
    EXPECT_EQ(sum, 42);

    short number = 1; // left alone by methods that give nothing back
    EXPECT_EQ(object->call(u"getfield"_s, {Argument::byReference(number)}).toString(), u"Müller & Söhne"_s);
    object->call(u"SetField"_s, {Argument::byReference(number), u"D000001"_s});
    EXPECT_EQ(number, 1);
}

TEST_F(AutomationTest, ValuesKeepTheirWidth)
{
    // clang-format off
    const std::pair<QVariant, const char *> rows[] = {
        {QVariant::fromValue<short>(5), "n"}, {5, "i"}, {u"5"_s, "s"}, {QString(), "s"}, {5.0, "d"}, {5.0F, "d"},
        {true, "b"},
    };
    // clang-format on
    for (const auto &[value, signature] : rows)
        EXPECT_EQ(object->call(u"signature"_s, {value}).toString().toStdString(), signature);
    const auto field = [this](short number) { return object->call(u"getfield"_s, {QVariant::fromValue(number)}); };
    EXPECT_EQ(field(2).typeId(), QMetaType::Double);
    EXPECT_EQ(field(3).typeId(), QMetaType::Short) << "variant within a variant";
    EXPECT_EQ(field(4).typeId(), QMetaType::Bool);
}

TEST_F(AutomationTest, FailuresHaveNumbersAndNameTheMember)
{
    short number = 0;
    // clang-format off
    struct Row { QString member; Arguments arguments; int number; };
    const Row rows[] = {
        {u"fail"_s,           {91},                            91},
        {u"fail"_s,           {3021},                          3021},
        {u"failStrangely"_s,  {},                              440},
        {u"getSize"_s,        {},                              438}, // names are case-sensitive
        {u"Introspect"_s,     {},                              438}, // the bus's own members do not count
        {u"promised"_s,       {},                              438},
        {u"wrongArguments"_s, {},                              450},
        {u"halfAnswer"_s,     {Argument::byReference(number)}, 440},
        {u"list"_s,           {},                              13},
        {u"SetField"_s,       {QVariant()},                    13},
        {u"hang"_s,           {},                              440},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.member.toStdString());
        const auto [errorNumber, text] = failureOf([&] { object->call(row.member, row.arguments); });
        EXPECT_EQ(errorNumber, row.number) << text.toStdString();
        EXPECT_TRUE(text.contains(row.member));
    }
    EXPECT_EQ(failureOf([&] { object->get(u"getsize"_s); }).first, 438) << "a method is no property";
    EXPECT_EQ(failureOf([&] { object->call(u"fail"_s, {91}); }).second, u"fail: Hinweisfenster offen"_s);
    EXPECT_TRUE(failureOf([&] { object->call(u"hang"_s); }).second.contains(u"nach 2 Sekunden"_s));
}

TEST_F(AutomationTest, EveryTypeOfValueIsTakenOrRefused)
{
    // clang-format off
    struct Row { const char *kinds; int error; const char *text; };
    const Row rows[] = {
        {"b", 0, "true"},        {"n", 0, "-32768"},               {"q", 0, "65535"},                {"i", 0, "-7"},
        {"u", 0, "4294967295"},  {"x", 0, "-9223372036854775808"}, {"t", 0, "18446744073709551615"}, {"d", 0, "1e+300"},
        {"s", 0, "Groß"},        {"e", 0, ""},                     {"v", 0, "innen"},                {"-", 0, ""},
        {"si", 0, "Groß"}, // more than described
        {"N", 6, ""},  {"I", 6, ""},  {"g", 13, ""}, {"h", 13, ""}, {"A", 13, ""}, {"B", 13, ""}, {"C", 13, ""},
        {"D", 13, ""}, {"E", 13, ""}, {"S", 13, ""},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.kinds);
        QVariant value;
        const auto [number, text]
            = failureOf([&] { value = object->call(u"any"_s, {QString::fromLatin1(row.kinds)}); });
        EXPECT_EQ(number, row.error);
        EXPECT_EQ(text.startsWith(u"any: "_s), row.error != 0) << text.toStdString();
        EXPECT_EQ(value.toString().toStdString(), row.text);
    }
    EXPECT_EQ(object->call(u"any"_s, {u"y"_s}).value<uchar>(), 255);
    EXPECT_EQ(object->call(u"any"_s, {u"L"_s}).toString(), QString(1'000'000, u'ü'));
    const AutomationObjectPtr path = objectOf(object->call(u"any"_s, {u"o"_s}));
    EXPECT_EQ(path->get(u"Version"_s).toString(), u"6.0.4"_s);
    EXPECT_FALSE(objectOf(path->get(u"Version"_s)));
    EXPECT_EQ(object->call(u"any"_s, {u"-"_s}), empty);
    EXPECT_FALSE(objectOf(empty));
}

TEST_F(AutomationTest, ReferencesComeBackAsTheyWentOrNotAtAll)
{
    const std::pair<QString, int> rows[]
        = {{u"ii"_s, 0},  {u"iii"_s, 0}, {u"-"_s, 440}, {u"i"_s, 440}, {u"is"_s, 13}, {u"si"_s, 13},
           {u"ix"_s, 13}, {u"in"_s, 13}, {u"iA"_s, 13}, {u"iN"_s, 6},  {u"ie"_s, 13}};
    for (const auto &[kinds, error] : rows) {
        SCOPED_TRACE(kinds.toStdString());
        int first = 1;
        int second = 2;
        const Arguments arguments{Argument::byReference(first), kinds, Argument::byReference(second)};
        EXPECT_EQ(failureOf([&] { object->call(u"giveBack"_s, arguments); }).first, error);
        EXPECT_EQ(first, error == 0 ? -7 : 1);
        EXPECT_EQ(second, error == 0 ? -7 : 2);
    }
}

TEST_F(AutomationTest, ABusyProgramIsAskedAgain)
{
    const auto busy = [this](const QString &error, int times) {
        return object->call(u"busy"_s, {error, times}).toInt();
    };
    const QString refusal = u"ACTOLE.Error.Busy"_s;
    EXPECT_EQ(busy(refusal, 3), 4) << "refused three times";
    EXPECT_EQ(busy(u"org.freedesktop.DBus.Error.LimitsExceeded"_s, 2), 3);

    const auto [number, text] = failureOf([&] { busy(refusal, 1000); });
    EXPECT_EQ(number, 440);
    EXPECT_EQ(text,
              u"busy: Das andere Programm ist beschäftigt und hat den Aufruf nach 2 Sekunden noch nicht "
              "angenommen."_s);
    EXPECT_TRUE(failureOf([&] { busy(refusal, 1000); }).second.contains(u" 1 "_s)) << "less time the second time";
    EXPECT_GE(busy(refusal, 0), 15) << "one question each tenth of a second";
}

TEST_F(AutomationTest, ACallWithoutAnAnswerIsNotRepeatedAndHandlesNoUserEvents)
{
    bool handled = false;
    QTimer::singleShot(0, qApp, [&handled] { handled = true; });
    EXPECT_EQ(failureOf([&] { object->call(u"hang"_s); }).first, 440);
    EXPECT_FALSE(handled);
    QCoreApplication::processEvents();
    EXPECT_TRUE(handled);

    EXPECT_TRUE(failureOf([&] { object->call(u"hang"_s); }).second.contains(u"nach 1 Sekunden"_s)) << "waits less now";
    EXPECT_EQ(object->call(u"hung"_s).toInt(), 2);
    EXPECT_TRUE(failureOf([&] { object->call(u"hang"_s); }).second.contains(u"nach 2 Sekunden"_s)) << "answered again";
}

TEST(WholeNumber, IsNumericAndFits)
{
    // clang-format off
    struct Row { QVariant value; int error; int number; };
    const Row rows[] = {
        {3, 0, 3}, {QVariant::fromValue<short>(-3), 0, -3}, {2.5, 0, 2}, {2147483647LL, 0, 2147483647},
        {2147483648LL, 6, 0}, {1e300, 6, 0}, {QVariant(), 13, 0}, {u"3"_s, 13, 0},
        {QVariant::fromValue(AutomationObjectPtr()), 13, 0},
    };
    // clang-format on
    for (const Row &row : rows) {
        int number = 0;
        EXPECT_EQ(failureOf([&] { number = wholeNumberOf(u"GetCount"_s, row.value); }).first, row.error);
        EXPECT_EQ(number, row.number);
    }
}

TEST_F(AutomationTest, AProgramThatEndsIsGone)
{
    EXPECT_EQ(failureOf([&] { object->call(u"die"_s); }).first, 462) << "while it is asked, not the time-out's 440";
    EXPECT_EQ(failureOf([&] { object->get(u"Version"_s); }).first, 462);
    EXPECT_EQ(automation.nameKnown(u"TEST.FOREIGN"_s), false);
    EXPECT_FALSE(automation.CreateObject(u"TEST.FOREIGN"_s));

    DBusAutomation early({2s, bus.address()});
    EXPECT_FALSE(early.CreateObject(u"TEST.FOREIGN"_s)) << "nobody owns the name yet";
    foreign.waitForFinished();
    ASSERT_TRUE(bus.start(foreign, QCoreApplication::applicationFilePath(), {u"--foreign"_s}));
    EXPECT_EQ(failureOf([&] { object->get(u"Version"_s); }).first, 462) << "a new program has new objects";
    EXPECT_EQ(automation.nameKnown(u"TEST.FOREIGN"_s), true);
    EXPECT_TRUE(automation.CreateObject(u"TEST.FOREIGN"_s));
    EXPECT_TRUE(early.CreateObject(u"TEST.FOREIGN"_s));
}

TEST_F(AutomationTest, WithoutABusThereIsNoObject)
{
    bus.stop();
    EXPECT_EQ(failureOf([&] { object->get(u"Version"_s); }).first, 462);
    EXPECT_FALSE(automation.CreateObject(u"TEST.FOREIGN"_s));
    EXPECT_EQ(automation.nameKnown(u"TEST.FOREIGN"_s), std::nullopt);

    DBusAutomation nowhere({2s, u"unix:path=/nonexistent/bus"_s});
    EXPECT_EQ(nowhere.nameKnown(u"TEST.FOREIGN"_s), std::nullopt);
    EXPECT_FALSE(nowhere.CreateObject(u"TEST.FOREIGN"_s));
}

TEST(ActivatableName, IsKnownBeforeAnybodyOwnsIt)
{
    const QTemporaryDir data;
    ASSERT_TRUE(QDir(data.path()).mkpath(u"dbus-1/services"_s));
    QFile service(data.filePath(u"dbus-1/services/TEST.LATER.service"_s));
    ASSERT_TRUE(service.open(QFile::WriteOnly));
    service.write("[D-BUS Service]\nName=TEST.LATER\nExec=/bin/false\n");
    service.close();
    const PrivateBus bus(data.path());
    DBusAutomation automation({2s, bus.address()});
    EXPECT_EQ(automation.nameKnown(u"TEST.LATER"_s), true);
    EXPECT_EQ(automation.nameKnown(u"TEST.NEVER"_s), false);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(u"--foreign"_s))
        return runForeignProgram();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "core/DatabasePaths.h"
#include "prefs/PrefsController.h"
#include "support/AppFixture.h"
#include "support/CliRunner.h"
#include "support/LogCapture.h"

#include <QDir>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

QString storedText(const QString &key)
{
    const QSettings settings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick"));
    return settings.value(key).toString();
}

void storeText(const QString &key, const QVariant &value)
{
    QSettings settings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick"));
    settings.setValue(key, value);
}

// Each stored status colour as "status red green blue alpha".
QStringList storedColours()
{
    QStringList entries;
    const QSettings settings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick"));
    for (const QVariant &entry : settings.value(QStringLiteral("LedgerwickFlagColours")).toList()) {
        const QVariantMap map = entry.toMap();
        QStringList parts;
        for (const char *key : {"Status", "redComponent", "greenComponent", "blueComponent", "alphaComponent"})
            parts << map.value(QLatin1String(key)).toString();
        entries << parts.join(QLatin1Char(' ')) + (map.size() == 5 ? QString() : QStringLiteral(" and more"));
    }
    return entries;
}

QStringList lines(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts)
        list << QString::fromUtf8(text);
    return list;
}

} // namespace

class TestPrefsController : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { m_app = std::make_unique<AppFixture>(); }
    void cleanup() { m_app.reset(); }

    void firstRunShowsTheDesignValues();
    void okStoresEveryKeyAndReadsItBack();
    void dateFormatSwitch_data();
    void dateFormatSwitch();
    void taxGetters_data();
    void taxGetters();
    void listGetters_data();
    void listGetters();
    void populateListsRefillsAndRepeats();
    void notepadWriteFailureIsOnlyLogged();
    void statusColoursAreStoredAtOnce();
    void statusSelectorShowsTheStoredColour();
    void databaseLocation_data();
    void databaseLocation();

private:
    std::unique_ptr<AppFixture> m_app;
};

void TestPrefsController::firstRunShowsTheDesignValues()
{
    PrefsController prefs(&m_app->platform);
    QSignalSpy termsSpy(&prefs, &PrefsController::termsApplied);
    QSignalSpy datesSpy(&prefs, &PrefsController::dateFormatApplied);
    QSignalSpy listsSpy(&prefs, &PrefsController::listsPopulated);
    prefs.readDefaults(nullptr);

    QVERIFY(prefs.controls() == PrefsControls());
    QVERIFY(prefs.isUKFormat());
    QCOMPARE(prefs.dateFormat(), QStringLiteral("%d/%m/%y"));
    QCOMPARE(prefs.selectFromItemsTitle(), QStringLiteral("Select From Items"));
    // The first-run location is the bundle the loader opens with no preference.
    QCOMPARE(DatabasePaths::expandTilde(prefs.getDbLocation()), DatabasePaths::databaseLocation());

    QCOMPARE(termsSpy.count(), 1);
    QCOMPARE(datesSpy.count(), 1);
    // No notepad yet: the pop-ups are not filled until the first OK.
    QCOMPARE(listsSpy.count(), 0);
    QVERIFY(prefs.orderStatusItems().isEmpty());
    QVERIFY(prefs.contactTypeItems().isEmpty());
    // Reading writes nothing.
    QVERIFY(QSettings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick")).allKeys().isEmpty());
}

void TestPrefsController::okStoresEveryKeyAndReadsItBack()
{
    PrefsController prefs(&m_app->platform);
    prefs.readDefaults();
    PrefsControls &c = prefs.controls();
    c.taxRate = QStringLiteral("17.5");
    c.taxStatement = QStringLiteral("VAT no 123");
    c.dateFormatColumn = 1;
    c.currency = QStringLiteral("€");
    c.terms = {QStringLiteral("Job"), QStringLiteral("Jobs"), QStringLiteral("Part"), QStringLiteral("Parts"),
               QStringLiteral("Lines")};
    c.invoiceCategories = QStringLiteral("Rent\n\nFuel");
    c.statuses = QStringLiteral("New\nDone\n");
    c.contactTypes = QString();
    c.dbLocation = QStringLiteral("/srv/shop/shop.lwkdb");
    const PrefsControls edited = c;

    QTextCursor cursor(prefs.notepad());
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.insertText(QStringLiteral("Call the bank"), bold);

    LogCapture log;
    QSignalSpy closeSpy(&prefs, &PrefsController::closeWindowRequested);
    QSignalSpy datesSpy(&prefs, &PrefsController::dateFormatApplied);
    QSignalSpy termsSpy(&prefs, &PrefsController::termsApplied);
    prefs.OKButton(nullptr);
    QCOMPARE(closeSpy.count(), 1);
    // The date format and the terms apply at the next start; the getters read the controls.
    QCOMPARE(datesSpy.count() + termsSpy.count(), 0);
    QVERIFY(prefs.isUKFormat());
    QCOMPARE(prefs.appliedTerms().orders, QStringLiteral("Orders"));
    QCOMPARE(prefs.getTermOrders(), QStringLiteral("Jobs"));
    QCOMPARE(log.lines(), lines({"Saving terms", "Saving lists", "Saving notepad"}));
    QVERIFY(m_app->platform.alerts.isEmpty());

    // Every control has its own key, written even when empty.
    QSettings settings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick"));
    QCOMPARE(settings.allKeys().size(), 16);
    QCOMPARE(storedText(QStringLiteral("LedgerwickTermBOM")), QStringLiteral("Lines"));
    QCOMPARE(storedText(QStringLiteral("LedgerwickInvoiceCategories")), QStringLiteral("Rent\n\nFuel"));
    // The database loader reads the same key from the same store.
    QCOMPARE(DatabasePaths::locationPreference(), QStringLiteral("/srv/shop/shop.lwkdb"));

    // The notepad sits in the standard bundle, wherever the database goes.
    QVERIFY(QFileInfo(DatabasePaths::standardBundleFolder()).isDir());
    QVERIFY(QFileInfo::exists(PrefsController::notepadPath() + QStringLiteral("/TXT.rtf")));
    // Saving ends by filling the pop-ups.
    QCOMPARE(prefs.billCategoryItems(), lines({"Rent", "", "Fuel"}));

    // A fresh start finds it all again.
    PrefsController next(&m_app->platform);
    next.readDefaults();
    QVERIFY(next.controls() == edited);
    QVERIFY(!next.isUKFormat());
    QCOMPARE(next.appliedTerms().orders, QStringLiteral("Jobs"));
    QCOMPARE(next.selectFromItemsTitle(), QStringLiteral("Select From Parts"));
    QCOMPARE(next.notepad()->toPlainText(), QStringLiteral("Call the bank"));
    QTextCursor read(next.notepad());
    read.movePosition(QTextCursor::NextCharacter);
    QCOMPARE(read.charFormat().fontWeight(), int(QFont::Bold));
    QVERIFY(!next.notepad()->isUndoAvailable());
    QCOMPARE(next.orderStatusItems(), lines({"New", "Done", ""}));
}

void TestPrefsController::dateFormatSwitch_data()
{
    QTest::addColumn<QVariant>("stored"); // invalid: the key is absent
    QTest::addColumn<int>("shownColumn"); // the matrix before loading
    QTest::addColumn<bool>("ukFormat");

    QTest::addRow("1 is month first") << QVariant(QStringLiteral("1")) << 0 << false;
    QTest::addRow("2 is day first") << QVariant(QStringLiteral("2")) << 1 << true;
    QTest::addRow("absent keeps day first") << QVariant() << 0 << true;
    QTest::addRow("absent keeps month first") << QVariant() << 1 << false;
}

void TestPrefsController::dateFormatSwitch()
{
    QFETCH(QVariant, stored);
    QFETCH(int, shownColumn);
    QFETCH(bool, ukFormat);
    if (stored.isValid())
        storeText(QStringLiteral("LedgerwickDateFormat"), stored);

    PrefsController prefs(&m_app->platform);
    prefs.controls().dateFormatColumn = shownColumn;
    prefs.readDefaults();
    QCOMPARE(prefs.isUKFormat(), ukFormat);
    QCOMPARE(prefs.controls().dateFormatColumn, ukFormat ? 0 : 1);
    QCOMPARE(prefs.dateFormat(), ukFormat ? QStringLiteral("%d/%m/%y") : QStringLiteral("%m/%d/%y"));
    QCOMPARE(prefs.dateTimeFormat(), prefs.dateFormat() + QStringLiteral(" %H:%M"));
    QCOMPARE(prefs.dateFormatLabel(), ukFormat ? QStringLiteral("dd/mm/yy") : QStringLiteral("mm/dd/yy"));

    // Whatever was read, OK writes one of the two values.
    prefs.OKButton();
    QCOMPARE(storedText(QStringLiteral("LedgerwickDateFormat")), ukFormat ? QStringLiteral("0") : QStringLiteral("1"));
}

void TestPrefsController::taxGetters_data()
{
    QTest::addColumn<QString>("rate");
    QTest::addColumn<float>("rateValue");
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("trimmed");

    QTest::addRow("spaces and line end") << QStringLiteral("17.5") << 17.5f << QStringLiteral("  VAT no 123\n")
                                         << QStringLiteral("VAT no 123");
    QTest::addRow("percent sign") << QStringLiteral(" 12.5%") << 12.5f << QStringLiteral("\r\nTax\t")
                                  << QStringLiteral("Tax");
    QTest::addRow("not a number") << QStringLiteral("abc") << 0.0f << QString() << QString();
    QTest::addRow("inner line end kept") << QString() << 0.0f << QStringLiteral("VAT\nreg 9\n\n")
                                         << QStringLiteral("VAT\nreg 9");
}

void TestPrefsController::taxGetters()
{
    QFETCH(QString, rate);
    QFETCH(QString, statement);
    PrefsController prefs(&m_app->platform);
    prefs.controls().taxRate = rate;
    prefs.controls().taxStatement = statement;
    QTEST(prefs.getGlobalTaxRate(), "rateValue");
    QTEST(prefs.getTaxStatement(), "trimmed");
}

void TestPrefsController::listGetters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("list"); // bill categories and statuses
    QTest::addColumn<QStringList>("contactTypes");

    QTest::addRow("empty") << QString() << QStringList{QString()} << QStringList();
    QTest::addRow("blank line kept") << QStringLiteral("a\n\nb") << lines({"a", "", "b"}) << lines({"a", "", "b"});
    QTest::addRow("trailing line end") << QStringLiteral("a\n") << lines({"a", ""}) << lines({"a", ""});
    QTest::addRow("spaces kept") << QStringLiteral(" a \nb") << lines({" a ", "b"}) << lines({" a ", "b"});
}

void TestPrefsController::listGetters()
{
    QFETCH(QString, text);
    QFETCH(QStringList, list);
    QFETCH(QStringList, contactTypes);
    PrefsController prefs(&m_app->platform);
    prefs.controls().invoiceCategories = text;
    prefs.controls().statuses = text;
    prefs.controls().contactTypes = text;
    QCOMPARE(prefs.getInvoiceCategoryList(), list);
    QCOMPARE(prefs.getStatusList(), list);
    QCOMPARE(prefs.getContactTypeList(), contactTypes);
}

void TestPrefsController::populateListsRefillsAndRepeats()
{
    PrefsController prefs(&m_app->platform);
    QSignalSpy spy(&prefs, &PrefsController::listsPopulated);
    prefs.controls().invoiceCategories = QStringLiteral("Rent");
    prefs.controls().statuses = QStringLiteral("Quote\nOrder");
    prefs.controls().contactTypes = QStringLiteral("Customer\nSupplier");
    prefs.populateLists();
    prefs.setColourStatusIndex(1);
    prefs.populateLists();

    QCOMPARE(spy.count(), 2);
    QCOMPARE(prefs.billCategoryItems(), lines({"Rent"}));
    QCOMPARE(prefs.orderStatusItems(), lines({"Quote", "Order"}));
    QCOMPARE(prefs.colourStatusItems(), lines({"Quote", "Order"}));
    QCOMPARE(prefs.colourStatusIndex(), 0); // a refilled pop-up shows its first entry
    const QStringList twice = lines({"Customer", "Supplier", "Customer", "Supplier"});
    QCOMPARE(prefs.contactTypeItems(), twice);
    QCOMPARE(prefs.contactFilterItems(), twice);
    QCOMPARE(prefs.companyTypeItems(), twice);

    // No contact types: the contact pop-ups keep what they have.
    prefs.controls().contactTypes.clear();
    prefs.controls().statuses.clear();
    prefs.controls().invoiceCategories = QStringLiteral("Fuel\nWages");
    prefs.populateLists();
    QCOMPARE(prefs.companyTypeItems(), twice);
    QCOMPARE(prefs.billCategoryItems(), lines({"Fuel", "Wages"}));
    QCOMPARE(prefs.orderStatusItems(), QStringList{QString()});
    QCOMPARE(prefs.selectedColourStatus(), QString());
}

void TestPrefsController::notepadWriteFailureIsOnlyLogged()
{
    // A file where the bundle folder should be: nothing can be written in it.
    QVERIFY(QDir().mkpath(DatabasePaths::applicationSupportFolder()));
    QVERIFY(writeBytes(DatabasePaths::standardBundleFolder(), QByteArray()));

    PrefsController prefs(&m_app->platform);
    QSignalSpy spy(&prefs, &PrefsController::listsPopulated);
    LogCapture log;
    prefs.OKButton();
    QCOMPARE(log.lines().size(), 4);
    QVERIFY(log.lines().at(3).startsWith(QStringLiteral("notepad not written")));
    QVERIFY(m_app->platform.alerts.isEmpty());
    QCOMPARE(storedText(QStringLiteral("LedgerwickCurrency")), QStringLiteral("£"));
    QCOMPARE(spy.count(), 1); // the lists are filled all the same
}

void TestPrefsController::statusColoursAreStoredAtOnce()
{
    PrefsController prefs(&m_app->platform);
    prefs.controls().statuses = QStringLiteral("Quote\nOrder");
    prefs.populateLists();

    prefs.setColorForStatus(QColor(128, 0, 255));
    QCOMPARE(storedColours(), lines({"Quote 0.501961 0.000000 1.000000 1.000000"}));
    // A status with no colour yet is appended.
    prefs.setColourStatusIndex(1);
    prefs.setColorForStatus(QColor(0, 0, 0, 64));
    const QString order = QStringLiteral("Order 0.000000 0.000000 0.000000 0.250980");
    QCOMPARE(storedColours(), (QStringList{QStringLiteral("Quote 0.501961 0.000000 1.000000 1.000000"), order}));

    // Setting it again replaces that one entry in place.
    prefs.setColourStatusIndex(0);
    prefs.setColorForStatus(QColor(255, 0, 0));
    const QStringList colours{QStringLiteral("Quote 1.000000 0.000000 0.000000 1.000000"), order};
    QCOMPARE(storedColours(), colours);
    QCOMPARE(PrefsController::colourForStatus(QStringLiteral("Quote")), QColor(255, 0, 0));

    // Nothing selected: nothing to colour.
    prefs.controls().statuses.clear();
    prefs.populateLists();
    prefs.setColourStatusIndex(-1);
    prefs.setColorForStatus(QColor(0, 255, 0));
    QCOMPARE(storedColours(), colours);
}

void TestPrefsController::statusSelectorShowsTheStoredColour()
{
    auto entry = [](const char *status, const char *red, const char *alpha) {
        return QVariantMap{{QStringLiteral("Status"), QString::fromUtf8(status)},
                           {QStringLiteral("redComponent"), QString::fromUtf8(red)},
                           {QStringLiteral("greenComponent"), QStringLiteral("0.000000")},
                           {QStringLiteral("blueComponent"), QStringLiteral("0.000000")},
                           {QStringLiteral("alphaComponent"), QString::fromUtf8(alpha)}};
    };
    storeText(QStringLiteral("LedgerwickFlagColours"),
              QVariantList{entry("Quote", "0.2", "0.25"), entry("Order", "7", "1"), entry("Quote", "0.6", "0.25")});

    PrefsController prefs(&m_app->platform);
    prefs.controls().statuses = QStringLiteral("Quote\nOrder\nComplete");
    prefs.populateLists();
    QSignalSpy spy(&prefs, &PrefsController::wellColourChanged);

    prefs.statusSelectorHasChanged();
    // The last matching entry wins; the stored alpha is ignored.
    QCOMPARE(prefs.wellColour(), QColor::fromRgbF(0.6f, 0.0f, 0.0f, 1.0f));
    prefs.setColourStatusIndex(1);
    prefs.statusSelectorHasChanged();
    QCOMPARE(prefs.wellColour(), QColor(255, 0, 0)); // clamped to the calibrated range
    prefs.setColourStatusIndex(2);
    prefs.statusSelectorHasChanged();
    QCOMPARE(prefs.wellColour(), QColor(Qt::white));
    QCOMPARE(spy.count(), 3);
    QCOMPARE(PrefsController::colourForStatus(QStringLiteral("Invoiced")), QColor(Qt::white));
}

void TestPrefsController::databaseLocation_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("answer"); // what the panel returns; "" cancels
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("panelTitle");

    const QString before = QStringLiteral("~/Library/Application Support/Ledgerwick/ledgerwickdatabase.lwkdb");
    QTest::addRow("choose existing") << u"choose"_s << u"/srv/shop/other.lwkdb"_s << u"/srv/shop/other.lwkdb"_s
                                     << u"Choose an existing database"_s;
    QTest::addRow("choose not a database")
        << u"choose"_s << u"/srv/shop/notes"_s << before << u"Choose an existing database"_s;
    QTest::addRow("create gets the type")
        << u"create"_s << u"/srv/shop/new"_s << u"/srv/shop/new.lwkdb"_s << u"Create new database"_s;
    QTest::addRow("create cancelled") << u"create"_s << u""_s << before << u"Create new database"_s;
}

void TestPrefsController::databaseLocation()
{
    QFETCH(QString, action);
    QFETCH(QString, answer);
    QFETCH(QString, location);

    PrefsController prefs(&m_app->platform);
    prefs.readDefaults();
    const QString before = prefs.getDbLocation();
    m_app->platform.panelAnswers.enqueue(answer);
    QSignalSpy spy(&prefs, &PrefsController::controlsChanged);
    if (action == QLatin1String("choose"))
        prefs.selectDbLocation(nullptr);
    else
        prefs.createDbLocation(nullptr);

    QCOMPARE(m_app->platform.panels.size(), 1);
    const Platform::Panel &panel = m_app->platform.panels.at(0);
    QTEST(panel.title, "panelTitle");
    QCOMPARE(panel.prompt, action == u"create"_s ? u"Create"_s : u"Choose"_s);
    QCOMPARE(panel.nameLabel, u"database name"_s);
    QCOMPARE(panel.fileTypes, QStringList{QStringLiteral("lwkdb")});
    QCOMPARE(panel.directory, DatabasePaths::applicationSupportFolder());
    QCOMPARE(prefs.getDbLocation(), location);

    const bool changed = location != before;
    QCOMPARE(spy.count(), changed ? 1 : 0);
    QStringList alerts;
    for (const Platform::Alert &alert : std::as_const(m_app->platform.alerts))
        alerts << AppFixture::alertText(alert);
    QCOMPARE(alerts, changed ? lines({"Create / switch Ledgerwick database | You will need to quit and re-start "
                                      "Ledgerwick to see your change. | OK"})
                             : QStringList());
    // Nothing made or switched until OK and the next start.
    QVERIFY(!QFileInfo::exists(location));
    QCOMPARE(DatabasePaths::databaseLocation(), DatabasePaths::standardBundleFolder());

    // The next panel starts in the folder of the new location; Default puts the first one back.
    prefs.selectDbLocation(nullptr);
    QCOMPARE(m_app->platform.panels.at(1).directory, QFileInfo(DatabasePaths::expandTilde(location)).absolutePath());
    prefs.setDbLocationToDefault(nullptr);
    QCOMPARE(prefs.getDbLocation(), before);
}

QTEST_MAIN(TestPrefsController) // the notepad is a QTextDocument: fonts need the gui application
#include "tst_prefscontroller.moc"

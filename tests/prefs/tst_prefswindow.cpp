#include "core/DatabasePaths.h"
#include "prefs/PrefsController.h"
#include "support/AppFixture.h"
#include "support/Widgets.h"
#include "ui/NotepadWindow.h"
#include "ui/PrefsWindow.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>

#include <memory>

namespace {

QVariant stored(const QString &key)
{
    return QSettings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick")).value(key);
}

} // namespace

class TestPrefsWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { m = std::make_unique<Fixture>(); }
    void cleanup() { m.reset(); }

    void showsTheStoreAfterReadDefaults();
    void editsReachTheGettersCancelStoresNothing();
    void okStoresWhatWasTyped();
    void databaseButtonsFillTheLocation();
    void colourPopUpFollowsTheLists();
    void notepadEditsTheControllersDocument();

private:
    template<typename T> T *child(const char *name) { return control<T>(&m->window, QLatin1String(name)); }
    void click(const char *button) { clickButton(&m->window, QLatin1String(button)); }
    void showRead() // the stored preferences read, the window shown
    {
        m->prefs.readDefaults();
        m->window.show();
    }

    struct Fixture
    {
        AppFixture app;
        PrefsController prefs{&app.platform};
        PrefsWindow window{&prefs};
    };
    std::unique_ptr<Fixture> m;
};

void TestPrefsWindow::showsTheStoreAfterReadDefaults()
{
    {
        QSettings settings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick"));
        settings.setValue(QStringLiteral("LedgerwickTaxRate"), QStringLiteral("17.5"));
        settings.setValue(QStringLiteral("LedgerwickDateFormat"), QStringLiteral("1"));
        settings.setValue(QStringLiteral("LedgerwickTermOrders"), QStringLiteral("Jobs"));
        settings.setValue(QStringLiteral("LedgerwickStatuses"), QStringLiteral("New\nDone"));
    }
    m->prefs.readDefaults();

    QCOMPARE(child<QLineEdit>("taxRateEdit")->text(), QStringLiteral("17.5"));
    QCOMPARE(child<QLineEdit>("currencyEdit")->text(), QStringLiteral("£"));
    QVERIFY(child<QRadioButton>("monthFirstRadio")->isChecked());
    QCOMPARE(child<QPlainTextEdit>("statusesEdit")->toPlainText(), QStringLiteral("New\nDone"));
    auto *tabs = child<QTabWidget>("tabs");
    QCOMPARE(tabs->tabText(1), QStringLiteral("Jobs"));
    QCOMPARE(tabs->tabText(2), QStringLiteral("Items"));

    QVERIFY(!m->window.isVisible());
    m->prefs.openWindow(nullptr);
    QVERIFY(m->window.isVisible());
}

void TestPrefsWindow::editsReachTheGettersCancelStoresNothing()
{
    showRead();

    auto *currency = child<QLineEdit>("currencyEdit");
    currency->clear();
    QTest::keyClicks(currency, QStringLiteral("$"));
    auto *termItem = child<QLineEdit>("termItemEdit");
    termItem->selectAll();
    QTest::keyClicks(termItem, QStringLiteral("Part"));
    child<QPlainTextEdit>("contactTypesEdit")->setPlainText(QString());
    QTest::mouseClick(child<QRadioButton>("monthFirstRadio"), Qt::LeftButton);

    QCOMPARE(m->prefs.getCurrency(), QStringLiteral("$"));
    QCOMPARE(m->prefs.getTermItem(), QStringLiteral("Part"));
    QVERIFY(m->prefs.getContactTypeList().isEmpty());
    QCOMPARE(m->prefs.controls().dateFormatColumn, 1);

    QTest::mouseClick(child<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Cancel), Qt::LeftButton);
    QVERIFY(!m->window.isVisible());
    QVERIFY(!stored(QStringLiteral("LedgerwickCurrency")).isValid());
    // What was typed stays in force, and shows again when the window reopens.
    QCOMPARE(m->prefs.getCurrency(), QStringLiteral("$"));
    m->prefs.openWindow(nullptr);
    QCOMPARE(currency->text(), QStringLiteral("$"));
}

void TestPrefsWindow::okStoresWhatWasTyped()
{
    showRead();

    QTest::mouseClick(child<QRadioButton>("monthFirstRadio"), Qt::LeftButton);
    QTest::mouseClick(child<QRadioButton>("dayFirstRadio"), Qt::LeftButton);
    child<QPlainTextEdit>("statusesEdit")->setPlainText(QStringLiteral("Open\nShut"));

    QTest::mouseClick(child<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(!m->window.isVisible());
    QCOMPARE(stored(QStringLiteral("LedgerwickDateFormat")).toString(), QStringLiteral("0"));
    QCOMPARE(stored(QStringLiteral("LedgerwickStatuses")).toString(), QStringLiteral("Open\nShut"));
    // OK fills the pop-ups, the window's own colour pop-up among them.
    auto *combo = child<QComboBox>("colourStatusCombo");
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->itemText(1), QStringLiteral("Shut"));
}

void TestPrefsWindow::databaseButtonsFillTheLocation()
{
    showRead();
    auto *location = child<QLineEdit>("dbLocationEdit");

    m->app.platform.panelAnswers.enqueue(QStringLiteral("/srv/shop/other.lwkdb"));
    click("chooseDbButton");
    QCOMPARE(location->text(), QStringLiteral("/srv/shop/other.lwkdb"));

    m->app.platform.panelAnswers.enqueue(QStringLiteral("/srv/shop/fresh.lwkdb"));
    click("createDbButton");
    QCOMPARE(location->text(), QStringLiteral("/srv/shop/fresh.lwkdb"));

    click("defaultDbButton");
    QCOMPARE(location->text(), PrefsController::defaultDbLocation());

    location->clear();
    QTest::keyClicks(location, QStringLiteral("~/shop.lwkdb"));
    QCOMPARE(m->prefs.getDbLocation(), QStringLiteral("~/shop.lwkdb"));
}

void TestPrefsWindow::colourPopUpFollowsTheLists()
{
    m->window.show();
    auto *combo = child<QComboBox>("colourStatusCombo");
    auto *button = child<QPushButton>("colourButton");
    QVERIFY(!button->isEnabled()); // nothing to colour before the lists are filled

    m->prefs.controls().statuses = QStringLiteral("Quote\nOrder");
    m->prefs.populateLists();
    QCOMPARE(combo->count(), 2);
    QVERIFY(button->isEnabled());
    m->prefs.setColorForStatus(QColor(0, 0, 255));

    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(m->prefs.selectedColourStatus(), QStringLiteral("Order"));
    QCOMPARE(m->prefs.wellColour(), QColor(Qt::white));
    QTest::keyClick(combo, Qt::Key_Up);
    QCOMPARE(m->prefs.selectedColourStatus(), QStringLiteral("Quote"));
    QCOMPARE(m->prefs.wellColour(), QColor(0, 0, 255));
}

void TestPrefsWindow::notepadEditsTheControllersDocument()
{
    PrefsController *prefs = &m->prefs;
    prefs->readDefaults();
    {
        NotepadWindow notepad(prefs);
        notepad.show();
        QCOMPARE(notepad.windowTitle(), QStringLiteral("Notepad"));
        QTextEdit *editor = notepad.editor();
        QCOMPARE(editor->document(), prefs->notepad());
        QTest::keyClicks(editor, QStringLiteral("Plain "));
        notepad.boldAction()->trigger();
        QTest::keyClicks(editor, QStringLiteral("bold"));
        QCOMPARE(prefs->notepad()->toPlainText(), QStringLiteral("Plain bold"));
        QVERIFY(notepad.boldAction()->isChecked());
    }
    // The window is gone; the document stays with the controller.
    QCOMPARE(prefs->notepad()->toPlainText(), QStringLiteral("Plain bold"));

    // A window showing the notepad lets go of it when the controller goes first.
    auto owner = std::make_unique<PrefsController>(&m->app.platform);
    NotepadWindow orphan(owner.get());
    owner.reset();
    QVERIFY(orphan.editor()->document() != nullptr);
    QTest::keyClicks(orphan.editor(), QStringLiteral("x"));
}

QTEST_MAIN(TestPrefsWindow)
#include "tst_prefswindow.moc"

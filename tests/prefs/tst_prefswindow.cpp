#include "core/DatabasePaths.h"
#include "prefs/PrefsController.h"
#include "support/AppFixture.h"
#include "ui/NotepadWindow.h"
#include "ui/PrefsWindow.h"

#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QTabWidget>
#include <QTest>
#include <QTextDocument>
#include <QTextEdit>

#include <memory>

namespace {

QVariant stored(const QString &key)
{
    return QSettings(QStringLiteral("Ledgerwick"), QStringLiteral("Ledgerwick")).value(key);
}

template<typename T> T *child(QWidget *window, const char *name)
{
    T *widget = window->findChild<T *>(QLatin1String(name));
    if (!widget)
        qFatal("no widget %s", name);
    return widget;
}

} // namespace

class TestPrefsWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { m_app = std::make_unique<AppFixture>(); }
    void cleanup() { m_app.reset(); }

    void showsTheStoreAfterReadDefaults();
    void editsReachTheGettersCancelStoresNothing();
    void okStoresWhatWasTyped();
    void databaseButtonsFillTheLocation();
    void colourPopUpFollowsTheLists();
    void notepadEditsTheControllersDocument();

private:
    std::unique_ptr<AppFixture> m_app;
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
    PrefsController prefs(&m_app->platform);
    PrefsWindow window(&prefs);
    prefs.readDefaults();

    QCOMPARE(child<QLineEdit>(&window, "taxRateEdit")->text(), QStringLiteral("17.5"));
    QCOMPARE(child<QLineEdit>(&window, "currencyEdit")->text(), QStringLiteral("£"));
    QVERIFY(child<QRadioButton>(&window, "monthFirstRadio")->isChecked());
    QCOMPARE(child<QPlainTextEdit>(&window, "statusesEdit")->toPlainText(), QStringLiteral("New\nDone"));
    auto *tabs = child<QTabWidget>(&window, "tabs");
    QCOMPARE(tabs->tabText(1), QStringLiteral("Jobs"));
    QCOMPARE(tabs->tabText(2), QStringLiteral("Items"));

    QVERIFY(!window.isVisible());
    prefs.openWindow(nullptr);
    QVERIFY(window.isVisible());
}

void TestPrefsWindow::editsReachTheGettersCancelStoresNothing()
{
    PrefsController prefs(&m_app->platform);
    prefs.readDefaults();
    PrefsWindow window(&prefs);
    window.show();

    auto *currency = child<QLineEdit>(&window, "currencyEdit");
    currency->clear();
    QTest::keyClicks(currency, QStringLiteral("$"));
    auto *termItem = child<QLineEdit>(&window, "termItemEdit");
    termItem->selectAll();
    QTest::keyClicks(termItem, QStringLiteral("Part"));
    child<QPlainTextEdit>(&window, "contactTypesEdit")->setPlainText(QString());
    QTest::mouseClick(child<QRadioButton>(&window, "monthFirstRadio"), Qt::LeftButton);

    QCOMPARE(prefs.getCurrency(), QStringLiteral("$"));
    QCOMPARE(prefs.getTermItem(), QStringLiteral("Part"));
    QVERIFY(prefs.getContactTypeList().isEmpty());
    QCOMPARE(prefs.controls().dateFormatColumn, 1);

    QTest::mouseClick(child<QDialogButtonBox>(&window, "buttonBox")->button(QDialogButtonBox::Cancel), Qt::LeftButton);
    QVERIFY(!window.isVisible());
    QVERIFY(!stored(QStringLiteral("LedgerwickCurrency")).isValid());
    // What was typed stays in force, and shows again when the window reopens.
    QCOMPARE(prefs.getCurrency(), QStringLiteral("$"));
    prefs.openWindow(nullptr);
    QCOMPARE(currency->text(), QStringLiteral("$"));
}

void TestPrefsWindow::okStoresWhatWasTyped()
{
    PrefsController prefs(&m_app->platform);
    prefs.readDefaults();
    PrefsWindow window(&prefs);
    window.show();

    QTest::mouseClick(child<QRadioButton>(&window, "monthFirstRadio"), Qt::LeftButton);
    QTest::mouseClick(child<QRadioButton>(&window, "dayFirstRadio"), Qt::LeftButton);
    child<QPlainTextEdit>(&window, "statusesEdit")->setPlainText(QStringLiteral("Open\nShut"));

    QTest::mouseClick(child<QDialogButtonBox>(&window, "buttonBox")->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(!window.isVisible());
    QCOMPARE(stored(QStringLiteral("LedgerwickDateFormat")).toString(), QStringLiteral("0"));
    QCOMPARE(stored(QStringLiteral("LedgerwickStatuses")).toString(), QStringLiteral("Open\nShut"));
    // OK fills the pop-ups, the window's own colour pop-up among them.
    auto *combo = child<QComboBox>(&window, "colourStatusCombo");
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->itemText(1), QStringLiteral("Shut"));
}

void TestPrefsWindow::databaseButtonsFillTheLocation()
{
    PrefsController prefs(&m_app->platform);
    prefs.readDefaults();
    PrefsWindow window(&prefs);
    window.show();
    auto *location = child<QLineEdit>(&window, "dbLocationEdit");

    m_app->platform.panelAnswers.enqueue(QStringLiteral("/srv/shop/other.lwkdb"));
    QTest::mouseClick(child<QPushButton>(&window, "chooseDbButton"), Qt::LeftButton);
    QCOMPARE(location->text(), QStringLiteral("/srv/shop/other.lwkdb"));

    m_app->platform.panelAnswers.enqueue(QStringLiteral("/srv/shop/fresh.lwkdb"));
    QTest::mouseClick(child<QPushButton>(&window, "createDbButton"), Qt::LeftButton);
    QCOMPARE(location->text(), QStringLiteral("/srv/shop/fresh.lwkdb"));

    QTest::mouseClick(child<QPushButton>(&window, "defaultDbButton"), Qt::LeftButton);
    QCOMPARE(location->text(), PrefsController::defaultDbLocation());

    location->clear();
    QTest::keyClicks(location, QStringLiteral("~/shop.lwkdb"));
    QCOMPARE(prefs.getDbLocation(), QStringLiteral("~/shop.lwkdb"));
}

void TestPrefsWindow::colourPopUpFollowsTheLists()
{
    PrefsController prefs(&m_app->platform);
    PrefsWindow window(&prefs);
    window.show();
    auto *combo = child<QComboBox>(&window, "colourStatusCombo");
    auto *button = child<QPushButton>(&window, "colourButton");
    QVERIFY(!button->isEnabled()); // nothing to colour before the lists are filled

    prefs.controls().statuses = QStringLiteral("Quote\nOrder");
    prefs.populateLists();
    QCOMPARE(combo->count(), 2);
    QVERIFY(button->isEnabled());
    prefs.setColorForStatus(QColor(0, 0, 255));

    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(prefs.selectedColourStatus(), QStringLiteral("Order"));
    QCOMPARE(prefs.wellColour(), QColor(Qt::white));
    QTest::keyClick(combo, Qt::Key_Up);
    QCOMPARE(prefs.selectedColourStatus(), QStringLiteral("Quote"));
    QCOMPARE(prefs.wellColour(), QColor(0, 0, 255));
}

void TestPrefsWindow::notepadEditsTheControllersDocument()
{
    auto prefs = std::make_unique<PrefsController>(&m_app->platform);
    prefs->readDefaults();
    {
        NotepadWindow notepad(prefs.get());
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
    auto owner = std::make_unique<PrefsController>(&m_app->platform);
    NotepadWindow orphan(owner.get());
    owner.reset();
    QVERIFY(orphan.editor()->document() != nullptr);
    QTest::keyClicks(orphan.editor(), QStringLiteral("x"));
}

QTEST_MAIN(TestPrefsWindow)
#include "tst_prefswindow.moc"

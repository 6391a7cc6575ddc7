#include "ui/lwWindowPlacement.h"

#include <QMainWindow>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

class TestWindowPlacement : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void fittedKeepsTheWindowOnScreen_data();
    void fittedKeepsTheWindowOnScreen();
    void aWindowReopensWhereItWasLeft();

private:
    QTemporaryDir m_dir;
};

void TestWindowPlacement::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_dir.path());
    QCoreApplication::setOrganizationName(QStringLiteral("LedgerwickTest"));
}

void TestWindowPlacement::fittedKeepsTheWindowOnScreen_data()
{
    QTest::addColumn<QRect>("wanted");
    QTest::addColumn<QRect>("fitted");
    // On a screen of 1440 by 900:
    QTest::addRow("inside stays") << QRect(100, 100, 500, 600) << QRect(100, 100, 500, 600);
    QTest::addRow("bottom edge off") << QRect(100, 400, 500, 600) << QRect(100, 300, 500, 600);
    QTest::addRow("right and left") << QRect(1200, 0, 500, 600) << QRect(940, 0, 500, 600);
    QTest::addRow("above and left of the screen") << QRect(-50, -20, 500, 600) << QRect(0, 0, 500, 600);
    QTest::addRow("taller than the screen") << QRect(0, 100, 500, 1200) << QRect(0, 0, 500, 900);
}

void TestWindowPlacement::fittedKeepsTheWindowOnScreen()
{
    QFETCH(QRect, wanted);
    QFETCH(QRect, fitted);
    QCOMPARE(lwWindowPlacement::fitted(wanted, QRect(0, 0, 1440, 900)), fitted);
    // A screen of unknown size leaves the window alone.
    QCOMPARE(lwWindowPlacement::fitted(wanted, QRect()), wanted);
}

void TestWindowPlacement::aWindowReopensWhereItWasLeft()
{
    lwWindowPlacement placement;
    qApp->installEventFilter(&placement);
    QRect left;
    {
        QMainWindow window;
        window.setObjectName(QStringLiteral("notePad"));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.setGeometry(120, 140, 420, 330);
        left = window.geometry();
        window.close();
    }
    QVERIFY(QSettings().contains(QStringLiteral("Windows/notePad")));
    QMainWindow again;
    again.setObjectName(QStringLiteral("notePad"));
    again.resize(700, 700);
    again.show();
    QVERIFY(QTest::qWaitForWindowExposed(&again));
    QCOMPARE(again.geometry(), left);

    // A sheet is put over the middle of the window that asked for it.
    QWidget sheet;
    sheet.resize(100, 60);
    sheet.show();
    lwWindowPlacement::centreOver(&sheet, &again);
    QCOMPARE(sheet.frameGeometry().center(), again.frameGeometry().center());

    // An unnamed window is not the program's own: nothing is kept for it.
    QMainWindow stranger;
    stranger.show();
    stranger.close();
    QCOMPARE(QSettings().allKeys().filter(QStringLiteral("Windows/")), QStringList{QStringLiteral("Windows/notePad")});
}

QTEST_MAIN(TestWindowPlacement)
#include "tst_windowplacement.moc"

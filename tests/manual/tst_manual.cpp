#include "prefs/Manual.h"
#include "support/LogCapture.h"
#include "support/ScriptedPlatform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

namespace {

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// What a test needs to know of one page: its links, the ids it defines and
// a few landmarks.
struct PageOutline
{
    QString error;
    QStringList links;
    QSet<QString> ids;
    QString title;
    int headings1 = 0;
};

// The pages are written so that they also read as XML, which lets the test
// catch an unclosed or mistyped element.
PageOutline outline(const QString &path)
{
    PageOutline page;
    QXmlStreamReader xml(readAll(path));
    bool inTitle = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            const auto attributes = xml.attributes();
            for (const char *name : {"href", "src"})
                if (attributes.hasAttribute(QLatin1String(name)))
                    page.links << attributes.value(QLatin1String(name)).toString();
            if (attributes.hasAttribute(QLatin1String("id")))
                page.ids << attributes.value(QLatin1String("id")).toString();
            inTitle = xml.name() == QLatin1String("title");
            if (xml.name() == QLatin1String("h1"))
                ++page.headings1;
        } else if (xml.isCharacters() && inTitle) {
            page.title += xml.text().toString().trimmed();
        } else if (xml.isEndElement()) {
            inTitle = false;
        }
    }
    if (xml.hasError())
        page.error = QStringLiteral("%1 at line %2").arg(xml.errorString()).arg(xml.lineNumber());
    return page;
}

} // namespace

class TestManual : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void pageActionsOpenTheirPage_data();
    void pageActionsOpenTheirPage();
    void changedOrMissingPagesAreRestoredOthersLeftAlone();
    void pageIsOpenedEvenWhenItCannotBeWritten();
    void pagesAreWellFormedAndTheirLinksResolve_data();
    void pagesAreWellFormedAndTheirLinksResolve();
    void updatesOpensTheHomePage();

private:
    QTemporaryDir m_dir;
    QString m_dataHome;
};

void TestManual::initTestCase()
{
    QVERIFY(m_dir.isValid());
    // A space, a "#" and a letter outside ASCII in the folder: each would
    // break an address built carelessly.
    m_dataHome = m_dir.path() + QStringLiteral("/my data #1 \u00e9t\u00e9");
    QVERIFY(QDir().mkpath(m_dataHome));
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_dataHome));
    QVERIFY(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation).startsWith(m_dataHome));
}

void TestManual::pageActionsOpenTheirPage_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QString>("page");
    const struct
    {
        const char *action;
        const char *page;
    } rows[] = {
        {"menu1", "menu.html"},
        {"quickstart", "quickstart.html"},
        {"orders", "orders1.html"},
        {"BOM", "orders2.html"},
        {"financial", "orders3.html"},
        {"recurrence", "orders4.html"},
        {"contacts", "contacts.html"},
        {"items", "items.html"},
        {"prefs", "prefs.html"},
        {"protime", "timemanagement.html"},
        {"prodata", "datamanagement.html"},
        {"proaccounts", "accountsmanagement.html"},
        {"prodatabase", "usermanagement.html"},
    };
    for (const auto &row : rows)
        QTest::addRow("%s", row.action) << QByteArray(row.action) << QString::fromLatin1(row.page);
}

void TestManual::pageActionsOpenTheirPage()
{
    QFETCH(QByteArray, action);
    QFETCH(QString, page);
    QDir(Manual::folder()).removeRecursively();

    ScriptedPlatform platform;
    Manual manual(&platform);
    // Through the meta-object, as a menu or button reaches it, with and
    // without the sender.
    QVERIFY(QMetaObject::invokeMethod(&manual, action.constData()));
    QVERIFY(QMetaObject::invokeMethod(&manual, action.constData(), Q_ARG(QObject *, this)));

    QCOMPARE(platform.openedUrls.size(), 2);
    for (const QUrl &url : std::as_const(platform.openedUrls)) {
        QVERIFY(url.isLocalFile());
        QCOMPARE(url.toLocalFile(), Manual::folder() + QLatin1Char('/') + page);
        QCOMPARE(url.toString(QUrl::FullyEncoded), Manual::baseAddress() + page);
    }
    const QString opened = platform.openedUrls.constFirst().toLocalFile();
    QVERIFY2(QFileInfo(opened).isFile(), qPrintable(opened));
    QCOMPARE(readAll(opened), readAll(QStringLiteral(":/manual/v5Pro/") + page));
    QVERIFY(Manual::pageNames().contains(page));
    QVERIFY(platform.alerts.isEmpty());
}

void TestManual::changedOrMissingPagesAreRestoredOthersLeftAlone()
{
    QVERIFY(Manual::installPages());
    const QString dir = Manual::folder() + QLatin1Char('/');
    {
        QFile stale(dir + QStringLiteral("items.html"));
        QVERIFY(stale.open(QIODevice::WriteOnly | QIODevice::Truncate));
        stale.write("<p>an older manual</p>");
    }
    QVERIFY(QFile::remove(dir + QStringLiteral("contacts.html")));
    // A page already right must not be rewritten on every click.
    const QDateTime longAgo(QDate(2001, 2, 3), QTime(4, 5, 6));
    {
        QFile same(dir + QStringLiteral("menu.html"));
        QVERIFY(same.open(QIODevice::ReadWrite));
        QVERIFY(same.setFileTime(longAgo, QFileDevice::FileModificationTime));
    }

    ScriptedPlatform platform;
    Manual manual(&platform);
    manual.items();

    QCOMPARE(readAll(dir + QStringLiteral("items.html")), readAll(QStringLiteral(":/manual/v5Pro/items.html")));
    QCOMPARE(readAll(dir + QStringLiteral("contacts.html")), readAll(QStringLiteral(":/manual/v5Pro/contacts.html")));
    QCOMPARE(QFileInfo(dir + QStringLiteral("menu.html")).lastModified(), longAgo);
    QCOMPARE(platform.openedUrls.size(), 1);
}

void TestManual::pageIsOpenedEvenWhenItCannotBeWritten()
{
    // A plain file where the manual folder should be: nothing can be written.
    const QString manualRoot =
        QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/manual");
    QDir(manualRoot).removeRecursively();
    {
        QFile blocker(manualRoot);
        QVERIFY(blocker.open(QIODevice::WriteOnly));
    }
    LogCapture log;
    ScriptedPlatform platform;
    Manual manual(&platform);
    manual.quickstart();
    QVERIFY(!Manual::installPages());

    QCOMPARE(platform.openedUrls.size(), 1); // the browser shows its own error
    QCOMPARE(platform.openedUrls.constFirst().toLocalFile(), Manual::folder() + QStringLiteral("/quickstart.html"));
    QVERIFY(platform.alerts.isEmpty());
    QVERIFY2(!log.lines().isEmpty() && log.lines().constFirst().startsWith(QLatin1String("manual folder")),
             qPrintable(log.lines().join(QLatin1Char('|'))));

    QVERIFY(QFile::remove(manualRoot));
    QVERIFY(Manual::installPages());
}

void TestManual::pagesAreWellFormedAndTheirLinksResolve_data()
{
    QTest::addColumn<QString>("page");
    for (const QString &page : Manual::pageNames())
        QTest::addRow("%s", qPrintable(page)) << page;
}

void TestManual::pagesAreWellFormedAndTheirLinksResolve()
{
    QFETCH(QString, page);
    QVERIFY(Manual::installPages());
    const QDir dir(Manual::folder());
    const PageOutline outlined = outline(dir.filePath(page));
    QVERIFY2(outlined.error.isEmpty(), qPrintable(outlined.error));
    QVERIFY(!outlined.title.isEmpty());
    QCOMPARE(outlined.headings1, 1);
    QVERIFY(readAll(dir.filePath(page)).startsWith("<!DOCTYPE html>"));

    QSet<QString> targets;
    for (const QString &link : outlined.links) {
        const QUrl url(link);
        QVERIFY2(url.isValid(), qPrintable(link));
        if (url.scheme() == QLatin1String("https"))
            continue;
        // Everything else stays inside the manual, so it works offline.
        QVERIFY2(url.scheme().isEmpty() && url.isRelative() && !url.path().contains(QLatin1Char('/')),
                 qPrintable(page + QStringLiteral(": ") + link));
        const QString target = url.path().isEmpty() ? page : url.path();
        QVERIFY2(dir.exists(target), qPrintable(page + QStringLiteral(" links to missing ") + link));
        if (url.hasFragment()) {
            const PageOutline other = outline(dir.filePath(target));
            QVERIFY2(other.ids.contains(url.fragment()), qPrintable(page + QStringLiteral(": no anchor ") + link));
        }
        targets << target;
    }
    QVERIFY(targets.contains(QStringLiteral("manual.css")));
    // The navigation bar reaches every page from every page.
    for (const QString &other : Manual::pageNames())
        QVERIFY2(targets.contains(other) || other == page, qPrintable(page + QStringLiteral(" misses ") + other));
}

void TestManual::updatesOpensTheHomePage()
{
    ScriptedPlatform platform;
    Manual manual(&platform);
    QVERIFY(QMetaObject::invokeMethod(&manual, "updates"));
    QCOMPARE(platform.openedUrls, QList<QUrl>{QUrl(QStringLiteral("https://ledgerwick.example.org/"))});
    QCOMPARE(QUrl(Manual::homePage()), platform.openedUrls.constFirst());
}

QTEST_GUILESS_MAIN(TestManual)
#include "tst_manual.moc"

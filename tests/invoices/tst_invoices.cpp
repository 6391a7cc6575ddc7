#include "support/AppFixture.h"
#include "support/CliRunner.h"
#include "support/LogCapture.h"

#include "contacts/Contact.h"
#include "invoices/CustomInvoiceController.h"
#include "invoices/Invoice.h"
#include "invoices/InvoiceMailer.h"
#include "invoices/Stationery.h"
#include "orders/Material.h"
#include "orders/Order.h"
#include "richtext/RichTextTools.h"

#include <QPdfWriter>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QString stationeryFile(const QString &name)
{
    return Stationery::folder() + u'/' + name;
}

void addLine(AppFixture &app, int orderId, const QString &item, const QString &qty, const QString &cost)
{
    auto line = std::make_shared<Material>(orderId);
    line->setItem(item);
    line->setQty(qty);
    line->setCost(cost);
    line->recalcTotal();
    app.ledgerwick->getBOMManager()->add(line);
}

std::shared_ptr<Contact> customer(AppFixture &app)
{
    auto contact = app.addContact(u"Jane Smith"_s);
    contact->setAdd1(u"1 Mill Lane"_s);
    contact->setPostcode(u"AB1 2CD"_s);
    contact->setTitle(u"Dr"_s);
    contact->setCompanyName(u"Smith & Co"_s);
    return contact;
}

} // namespace

class TestInvoices : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void fillsPlaceholders_data();
    void fillsPlaceholders();
    void logsNullTextsAndFailedTables_data();
    void logsNullTextsAndFailedTables();
    void installsWithoutOverwriting();
    void listsTemplates();
    void simpleFormDetails();
    void mailsThePdf_data();
    void mailsThePdf();
    void defaultsFillOnePage_data();
    void defaultsFillOnePage();
};

void TestInvoices::fillsPlaceholders_data()
{
    QTest::addColumn<QString>("templateText");
    QTest::addColumn<bool>("withCustomer");
    QTest::addColumn<bool>("includeLines");
    QTest::addColumn<QString>("expected");
    // "|" separates the lines table (shown as its first line's item) from the text.
    const QString twice = u"A &lt;itemsordered&gt; B &lt;itemsordered&gt;"_s;
    QTest::addRow("two tables, lines included") << twice << true << true << u"A |Hinge|\n B <itemsordered>"_s;
    QTest::addRow("two tables, lines left out") << twice << true << false << u"A  B "_s;
    const QString contact = u"[&lt;contactsalutation&gt;|&lt;contactname&gt;|&lt;contactsurname&gt;|"
                            u"&lt;contactcompany&gt;|&lt;contactadd1&gt;|&lt;contactpostcode&gt;]"_s;
    QTest::addRow("customer") << contact << true << false << u"[Dr|Jane Smith|Smith|Smith & Co|1 Mill Lane|AB1 2CD]"_s;
    QTest::addRow("no customer") << contact << false << false << u"[|||||]"_s;
    // The title holds a later placeholder, the description its own: the
    // order of replacement shows, and the search ends.
    QTest::addRow("values holding placeholders")
        << u"&lt;title&gt;/&lt;description&gt;/&lt;ordernumber&gt;/&lt;subtotal&gt;/&lt;total&gt;"_s << false << false
        << u"Order/x<description>y/INV7/12.00/14.40"_s;
}

void TestInvoices::fillsPlaceholders()
{
    QFETCH(QString, templateText);
    QFETCH(bool, withCustomer);
    QFETCH(bool, includeLines);
    AppFixture app;
    QVERIFY(QDir().mkpath(Stationery::folder()));
    QVERIFY(writeBytes(stationeryFile(u"Plain.html"_s), ("<p>" + templateText + "</p>").toUtf8()));
    Order order;
    order.setID(7);
    order.setTitle(u"<type>"_s);
    order.setDescription(u"x<description>y"_s);
    order.setOrderNum(u"INV7"_s);
    order.setValue(u"12.00"_s);
    order.setValueWithTax(u"14.40"_s);
    order.setIncludeBOM(includeLines);
    addLine(app, 7, u"Hinge"_s, u"2"_s, u"6"_s);
    const auto contact = customer(app);

    CustomInvoiceController invoice;
    invoice.setWhichStationary(u"Plain"_s);
    app.ledgerwick->setCurrentOrder(7); // the lines table shows the order in the editor
    invoice.setbomDataSource(app.ledgerwick->getBOMManager(), {{u"item"_s, u"Item"_s, 100}});
    invoice.setOrder(&order, withCustomer ? contact.get() : nullptr);
    QVERIFY(invoice.fill());
    QString text = invoice.invoiceTextView()->toPlainText();
    // The table's cells come out as lines of their own: a header, then one per row.
    text.replace(u"\nItem\nHinge\n"_s, u"|Hinge|"_s);
    QTEST(text, "expected");
}

void TestInvoices::logsNullTextsAndFailedTables_data()
{
    QTest::addColumn<QString>("find");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<int>("lines"); // 0: a table given as "", 1: no table at all, -1: replace only
    QTest::addColumn<QString>("logged");
    QTest::addColumn<QString>("text");
    QTest::addRow("no find text") << QString() << u"x"_s << -1 << u"replaceAllOccurencesOf: passed nil as find string"_s
                                  << u"a <date> <itemsordered>"_s;
    QTest::addRow("no replacement") << u"<date>"_s << QString() << -1
                                    << u"replaceAllOccurencesOf: passed nil as replace string for <date>"_s
                                    << u"a  <itemsordered>"_s;
    QTest::addRow("table not parsed") << QString() << QString() << 0
                                      << u"couldn't initialise attributed string. html is "_s << u"a <date> <itemsordered>"_s;
    QTest::addRow("no table") << QString() << QString() << 1 << u"couldn't initialise data"_s << u"a <date> <itemsordered>"_s;
}

void TestInvoices::logsNullTextsAndFailedTables()
{
    QFETCH(QString, find);
    QFETCH(QString, replacement);
    QFETCH(int, lines);
    QFETCH(QString, logged);
    CustomInvoiceController invoice;
    invoice.invoiceTextView()->setPlainText(u"a <date> <itemsordered>"_s);
    Order order;
    order.setIncludeBOM(true);
    invoice.setOrder(&order, nullptr);
    LogCapture log;
    if (lines < 0) {
        invoice.replaceAllOccurencesOf(find, replacement);
    } else {
        if (lines == 0)
            invoice.setLinesHtml(u""_s);
        invoice.insertBOMTable();
    }
    QCOMPARE(log.lines(), QStringList{logged});
    QTEST(invoice.invoiceTextView()->toPlainText(), "text");
}

void TestInvoices::installsWithoutOverwriting()
{
    AppFixture app;
    // An earlier version's edited invoice becomes "Invoice".
    const QString earlier = Stationery::supportFolder() + u"/customInvoice.rtfd"_s;
    QVERIFY(QDir().mkpath(earlier));
    QVERIFY(writeBytes(earlier + u"/TXT.rtf"_s, "{\\rtf1 Old shop <balance>\\par}"));
    QVERIFY(Stationery::installStationary());
    QCOMPARE(fileBytes(stationeryFile(u"Invoice.rtfd/TXT.rtf"_s)), QByteArray("{\\rtf1 Old shop <balance>\\par}"));
    // The defaults' contents are checked by filling them.
    const QByteArray reminder = fileBytes(stationeryFile(u"Reminder.rtfd/TXT.rtf"_s));

    // An edited default is kept; a deleted one comes back as built in.
    QVERIFY(writeBytes(stationeryFile(u"Invoice with tax.rtfd/TXT.rtf"_s), "{\\rtf1 edited\\par}"));
    QVERIFY(QDir(stationeryFile(u"Reminder.rtfd"_s)).removeRecursively());
    QVERIFY(Stationery::installStationary());
    QCOMPARE(fileBytes(stationeryFile(u"Invoice with tax.rtfd/TXT.rtf"_s)), QByteArray("{\\rtf1 edited\\par}"));
    QCOMPARE(fileBytes(stationeryFile(u"Reminder.rtfd/TXT.rtf"_s)), reminder);
    // Nothing of the copying is left behind.
    QCOMPARE(QDir(Stationery::folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 3);
}

void TestInvoices::listsTemplates()
{
    AppFixture app;
    QVERIFY(!Stationery::editInvoiceTemplate(&app.platform)); // no folder yet
    QVERIFY(Stationery::installStationary());
    Stationery::editInvoiceTemplate(&app.platform);
    QCOMPARE(app.platform.openedPaths, QStringList{Stationery::folder()});
    QVERIFY(writeBytes(stationeryFile(u".DS_Store"_s), "junk"));
    QVERIFY(writeBytes(stationeryFile(u"Invoice.html"_s), "<p>plain</p>"));
    QVERIFY(writeBytes(stationeryFile(u"Letter.rtf"_s), "{\\rtf1 letter\\par}"));
    QCOMPARE(Stationery::titles(), (QStringList{u"Invoice"_s, u"Invoice with tax"_s, u"Letter"_s, u"Reminder"_s}));
    QCOMPARE(Stationery::templatePath(u"Invoice"_s), stationeryFile(u"Invoice.rtfd"_s));
    QCOMPARE(Stationery::templatePath(u"Letter"_s), stationeryFile(u"Letter.rtf"_s));
    QCOMPARE(Stationery::templatePath(u".DS_Store"_s), QString());

    // A missing template leaves the invoice empty.
    CustomInvoiceController invoice;
    invoice.invoiceTextView()->setPlainText(u"old"_s);
    invoice.setWhichStationary(u"Gone"_s);
    QVERIFY(!invoice.fill());
    QVERIFY(invoice.invoiceTextView()->isEmpty());
}

void TestInvoices::simpleFormDetails()
{
    AppFixture app;
    auto contact = customer(app);
    Order order;
    order.setValue(u"12.00"_s);
    order.setDepositPaid(u"Cash"_s);
    Invoice form;
    form.setDetailsForThisOrder(&order, contact.get(), u"£"_s);
    QCOMPARE(form.billingAddress, u"Jane Smith\nSmith & Co\n1 Mill Lane\n\n\nAB1 2CD\n"_s);
    QCOMPARE(QStringList({form.fullValue, form.depositAmount, form.depositPaid}), QStringList({u"£12.00"_s, u""_s, u"Cash"_s}));
    // The header and footer come from the resources when missing.
    QVERIFY(form.header.toPlainText().contains(u"Your Business Name"_s));
}

void TestInvoices::mailsThePdf_data()
{
    QTest::addColumn<bool>("haveXdgEmail");
    QTest::addRow("xdg-email") << true;
    QTest::addRow("no xdg-email") << false;
}

void TestInvoices::mailsThePdf()
{
    QFETCH(bool, haveXdgEmail);
    AppFixture app;
    QTextDocument invoice;
    invoice.setPlainText(u"Invoice INV7"_s);
    InvoiceMailer mailer(&app.platform);
    QStringList launched;
    mailer.setFinder([&](const QString &program) { return haveXdgEmail ? u"/bin/"_s + program : QString(); });
    mailer.setLauncher([&](const QString &program, const QStringList &arguments) {
        launched = QStringList{program} + arguments;
        return true;
    });
    mailer.setAttachmentFolder(app.home(u"mail"_s));
    app.platform.panelAnswers.enqueue(app.home(u"saved.pdf"_s));
    QVERIFY(mailer.email(&invoice, u"Invoice INV7"_s, u"jane@example.com"_s));
    if (haveXdgEmail) {
        const QString pdf = app.home(u"mail/Invoice INV7.pdf"_s);
        QCOMPARE(launched, (QStringList{u"/bin/xdg-email"_s, u"--subject"_s, u"Invoice INV7"_s, u"--attach"_s, pdf,
                                        u"jane@example.com"_s}));
        QVERIFY(fileBytes(pdf).startsWith("%PDF"));
        QVERIFY(app.platform.panels.isEmpty());
    } else {
        QVERIFY(launched.isEmpty());
        QVERIFY(fileBytes(app.home(u"saved.pdf"_s)).startsWith("%PDF"));
        QCOMPARE(app.platform.openedUrls, QList<QUrl>{QUrl(u"mailto:jane@example.com?subject=Invoice INV7"_s)});
    }
}

void TestInvoices::defaultsFillOnePage_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name : Stationery::defaultNames())
        QTest::newRow(qPrintable(name)) << name;
}

void TestInvoices::defaultsFillOnePage()
{
    QFETCH(QString, name);
    AppFixture app;
    QVERIFY(Stationery::installStationary());
    Order order;
    order.setID(3);
    order.setOrderNum(u"INV3"_s);
    order.setIncludeBOM(true);
    order.setBalance(u"99.50"_s);
    for (int n = 1; n <= 5; ++n)
        addLine(app, 3, u"Part %1"_s.arg(n), u"2"_s, u"9.95"_s);
    const auto contact = customer(app);
    CustomInvoiceController invoice;
    invoice.setWhichStationary(name);
    app.ledgerwick->setCurrentOrder(3);
    invoice.setbomDataSource(app.ledgerwick->getBOMManager(), CustomInvoiceController::defaultLineColumns());
    invoice.setOrder(&order, contact.get());
    QVERIFY(invoice.fill());
    const QString text = invoice.invoiceTextView()->toPlainText();
    QVERIFY2(!text.contains(u'<'), qPrintable(text)); // every placeholder filled
    QVERIFY(text.contains(u"INV3"_s) && text.contains(u"99.50"_s) && text.contains(u"Jane Smith"_s));
    QVERIFY(text.contains(u"Part 5"_s));
    QPdfWriter pdf(app.home(u"out.pdf"_s));
    QCOMPARE(RichTextTools::print(invoice.invoiceTextView(), &pdf), 1);
}

QTEST_MAIN(TestInvoices)
#include "tst_invoices.moc"

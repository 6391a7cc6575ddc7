#include "contacts/Contact.h"
#include "support/TestRecord.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

// Every name a contact answers by name.
const QStringList kReadNames = {
    u"add1"_s,  u"add2"_s,      u"add3"_s,    u"address"_s,  u"comments"_s, u"companyname"_s, u"company"_s,
    u"email"_s, u"extension"_s, u"fax"_s,     u"jobTitle"_s, u"kind"_s,     u"mobile"_s,      u"name"_s,
    u"phone"_s, u"postcode"_s,  u"surname"_s, u"title"_s,    u"type"_s,     u"website"_s,
};

} // namespace

class tst_Contact : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writeByName_data();
    void writeByName();
    void surname_data();
    void surname();
    void addresses_data();
    void addresses();
    void contains_data();
    void contains();
};

void tst_Contact::writeByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("changed"); // in read order

    QTest::addRow("jobTitle") << u"jobTitle"_s << u"Zed Q"_s << QStringList{u"jobTitle"_s};
    QTest::addRow("add1") << u"add1"_s << u"Zed Q"_s << QStringList{u"add1"_s, u"address"_s};
    QTest::addRow("postcode") << u"postcode"_s << u"Zed Q"_s << QStringList{u"address"_s, u"postcode"_s};
    QTest::addRow("name") << u"name"_s << u"Zed Q"_s << QStringList{u"name"_s, u"surname"_s};
    QTest::addRow("company takes the integer") << u"company"_s << u"42x"_s << QStringList{u"company"_s};
    QTest::addRow("company non-numeric is 0") << u"company"_s << u"acme"_s << QStringList{};
    QTest::addRow("companyname is read-only") << u"companyname"_s << u"Acme"_s << QStringList{};
    QTest::addRow("address is read-only") << u"address"_s << u"1 Road"_s << QStringList{};
    QTest::addRow("surname is read-only") << u"surname"_s << u"Smith"_s << QStringList{};
    QTest::addRow("jobtitle lower case is unknown") << u"jobtitle"_s << u"Boss"_s << QStringList{};
    QTest::addRow("a null value is ignored") << u"kind"_s << QString() << QStringList{};
}

void tst_Contact::writeByName()
{
    QFETCH(QString, name);
    QFETCH(QString, value);

    Contact contact;
    QTEST(namesChangedByWriting(contact, kReadNames, name, value), "changed");

    QVERIFY(contact.setFieldByName(u"id"_s, u"17"_s));
    QCOMPARE(contact.getID(), 17);
    QCOMPARE(contact.getFieldByName(u"id"_s), u""_s); // written by name, never read
}

void tst_Contact::surname_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("surname");

    QTest::addRow("last of three words") << u"Individual"_s << u"Anna Maria Smith"_s << u"Smith"_s;
    QTest::addRow("single word") << u"Individual"_s << u"Stoglo"_s << u"Stoglo"_s;
    QTest::addRow("company keeps its whole name") << u"Company"_s << u"Acme Tools Ltd"_s << u"Acme Tools Ltd"_s;
    QTest::addRow("company contact is a person") << u"Company Contact"_s << u"Jo Bloggs"_s << u"Bloggs"_s;
    QTest::addRow("trailing blank leaves nothing") << u"Individual"_s << u"Jo "_s << u""_s;
}

void tst_Contact::surname()
{
    QFETCH(QString, kind);
    QFETCH(QString, name);

    Contact contact;
    contact.setKind(kind);
    contact.setName(name);
    QTEST(contact.getFieldByName(u"surname"_s), "surname");

    contact.makeCompany();
    QCOMPARE(contact.getKind(), u"Company"_s);
    QCOMPARE(contact.getSurname(), name);
}

void tst_Contact::addresses_data()
{
    QTest::addColumn<QStringList>("lines"); // add1, add2, add3, postcode
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("shortAddress");

    QTest::addRow("all lines") << QStringList{u"1 High St"_s, u"Upton"_s, u"Bath"_s, u"AB1 2CD"_s}
                               << u"1 High St Upton Bath AB1 2CD"_s << u"1 High St ... AB1 2CD"_s;
    QTest::addRow("no first line") << QStringList{u""_s, u"Upton"_s, u""_s, u"AB1 2CD"_s} << u" Upton  AB1 2CD"_s
                                   << u"AB1 2CD"_s;
    QTest::addRow("first line only") << QStringList{u"1 High St"_s, u""_s, u""_s, u""_s} << u"1 High St   "_s
                                     << u"1 High St ... "_s;
}

void tst_Contact::addresses()
{
    QFETCH(QStringList, lines);

    Contact contact;
    contact.setAdd1(lines.at(0));
    contact.setAdd2(lines.at(1));
    contact.setAdd3(lines.at(2));
    contact.setPostcode(lines.at(3));
    QTEST(contact.getFieldByName(u"address"_s), "address");
    QTEST(contact.getShortAddress(), "shortAddress");
}

void tst_Contact::contains_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("found");

    for (const char *name : {"add1", "add2", "add3", "postcode", "comments", "email", "extension", "fax", "jobTitle",
                             "kind", "mobile", "name", "phone", "title", "type", "website"})
        QTest::addRow("%s", name) << QString::fromLatin1(name) << true;
    QTest::addRow("not the company name") << u"companyname"_s << false;
}

void tst_Contact::contains()
{
    QFETCH(QString, field);

    Contact contact;
    contact.setType(u"-"_s); // "Customer" would match the search below
    if (field == u"companyname"_s)
        contact.setCompanyName(u"xCustomx"_s);
    else
        QVERIFY(contact.setFieldByName(field, u"xCustomx"_s));
    QTEST(contact.contains(u"CUSTOM"_s), "found");
    QVERIFY(!contact.contains(u""_s));
}

QTEST_GUILESS_MAIN(tst_Contact)
#include "tst_contact.moc"

#include "contacts/Contact.h"
#include "orders/Material.h"
#include "orders/Order.h"
#include "orders/OrderMoney.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using OrderMoney::Figures;
using OrderMoney::Line;

// So that failed comparisons print both sides readably.
char *toString(const CalendarDate &date)
{
    return qstrdup(qPrintable(date.isValid() ? date.toString(u"%d/%m/%Y %H:%M:%S"_s) : u"(no date)"_s));
}

namespace OrderMoney {
char *toString(const Figures &f)
{
    return qstrdup(qPrintable(
        u"value=%1 shipping=%2 tax=%3 net=%4 balance=%5"_s.arg(f.value, f.shipping, f.tax, f.net, f.balance)));
}
} // namespace OrderMoney

namespace {

CalendarDate at(int day, int month, int year, int hour = 0, int minute = 0)
{
    return CalendarDate(QDate(year, month, day), QTime(hour, minute));
}

// A material line as one text: item|qty|cost|unit|total|code|taxcode|order|product|contact.
QString describe(const Material &m)
{
    return QStringList{m.getItem(),
                       m.getQty(),
                       m.getCost(),
                       m.getUnit(),
                       m.getTotal(),
                       m.getCode(),
                       m.getTaxCode(),
                       QString::number(m.getOrder()),
                       QString::number(m.getProduct()),
                       QString::number(m.getContact())}
        .join(u'|');
}

Line line(const QString &total, const QString &taxCode, std::optional<QString> shipping = {},
          const QString &qty = u"1"_s)
{
    return Line{qty, total, taxCode, std::move(shipping)};
}

} // namespace

class tst_Orders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void orderByName_data();
    void orderByName();
    void orderFlagsByName();
    void orderContactLink();
    void repeatDates_data();
    void repeatDates();
    void repeatCatchUpAndBox();
    void repeatNote_data();
    void repeatNote();

    void materialByName_data();
    void materialByName();
    void materialRecalcTotal_data();
    void materialRecalcTotal();

    void moneyFigures_data();
    void moneyFigures();
    void moneyEditorRules();
};

void tst_Orders::orderByName_data()
{
    QTest::addColumn<QString>("writeName");
    QTest::addColumn<QStringList>("shownBy"); // the read names that show the written value afterwards

    for (const char *name : {"balance", "date", "deposit", "description", "title", "paymentmethod", "value", "status",
                             "shipping", "type", "tax", "net"})
        QTest::addRow("%s", name) << QString::fromLatin1(name) << QStringList{QString::fromLatin1(name)};
    for (const char *name : {"balancePaid", "balancepaid"})
        QTest::addRow("%s", name) << QString::fromLatin1(name) << QStringList{u"balancePaid"_s, u"balancepaid"_s};
    for (const char *name : {"depositPaid", "depositpaid"})
        QTest::addRow("%s", name) << QString::fromLatin1(name) << QStringList{u"depositPaid"_s, u"depositpaid"_s};
    QTest::addRow("ordernum") << u"ordernum"_s << QStringList{u"orderNum"_s, u"ordernum"_s};
    QTest::addRow("taxrate") << u"taxrate"_s << QStringList{u"taxRate"_s};
    QTest::addRow("valuewithtax") << u"valuewithtax"_s << QStringList{u"valueWithTax"_s};
    // Writes take only the lower-case spellings of the first three.
    for (const char *name : {"orderNum", "taxRate", "valueWithTax", "Title", "lastrepeatdate", "repeatfrequency"})
        QTest::addRow("%s is ignored", name) << QString::fromLatin1(name) << QStringList{};
}

void tst_Orders::orderByName()
{
    QFETCH(QString, writeName);
    QFETCH(QStringList, shownBy);

    const QStringList readNames{u"balance"_s,    u"balancePaid"_s, u"balancepaid"_s,     u"date"_s,
                                u"deposit"_s,    u"depositPaid"_s, u"depositpaid"_s,     u"description"_s,
                                u"title"_s,      u"orderNum"_s,    u"ordernum"_s,        u"paymentmethod"_s,
                                u"value"_s,      u"status"_s,      u"shipping"_s,        u"type"_s,
                                u"tax"_s,        u"net"_s,         u"taxRate"_s,         u"valueWithTax"_s,
                                u"includeBOM"_s, u"sent"_s,        u"repeatfrequency"_s, u"lastrepeatdate"_s,
                                u"id"_s};
    Order order;

    QVERIFY(order.setFieldByName(writeName, u"V-123"_s));
    QStringList actual;
    for (const QString &name : readNames)
        if (order.getFieldByName(name) == u"V-123"_s)
            actual << name;
    QCOMPARE(actual, shownBy);
    QCOMPARE(order.getLastRepeatDate(), u""_s);
}

void tst_Orders::orderFlagsByName()
{
    Order order;
    // "No" marks the order sent; anything else, "Yes" included, marks it unsent.
    QVERIFY(order.setFieldByName(u"sent"_s, u"No"_s));
    QCOMPARE(order.getFieldByName(u"sent"_s), u"Yes"_s);
    order.setSent(true);
    QVERIFY(order.setFieldByName(u"sent"_s, u"Yes"_s));
    QCOMPARE(order.getFieldByName(u"sent"_s), u"No"_s);

    QVERIFY(order.setFieldByName(u"includebom"_s, u"Yes"_s));
    QCOMPARE(order.getFieldByName(u"includeBOM"_s), u"Yes"_s);
    QVERIFY(order.setFieldByName(u"includeBOM"_s, u"YES"_s));
    QVERIFY(!order.getIncludeBOM());

    QVERIFY(order.setFieldByName(u"id"_s, u"31"_s));
    QCOMPARE(order.getID(), 31);
    QVERIFY(order.setFieldByName(u"type"_s, QString()));
    QCOMPARE(order.getType(), u"Order"_s);
    QCOMPARE(order.getColour(), 0);
    order.setStatus(u"Complete"_s);
    QCOMPARE(order.getColour(), 1);
    QVERIFY(Order::isDate(u"date"_s) && !Order::isDate(u"Date"_s) && !Order::isDate(u"lastrepeatdate"_s));

    // Search: date, title, status and type only.
    QVERIFY(Order().contains(u"ENQ"_s));
    order.setDate(u"12/03/09"_s);
    order.setTitle(u"Shelving"_s);
    order.setOrderNum(u"ORD31"_s);
    order.setDescription(u"Pine"_s);
    QVERIFY(order.contains(u"/03/"_s) && order.contains(u"SHELV"_s) && order.contains(u"plete"_s));
    QVERIFY(!order.contains(u"ORD31"_s) && !order.contains(u"pine"_s) && !order.contains(u""_s));
}

void tst_Orders::orderContactLink()
{
    auto contact = std::make_shared<Contact>();
    contact->setID(9);
    contact->setName(u"Anna Maria Smith"_s);
    contact->setEmail(u"anna@example.com"_s);
    contact->setJobTitle(u"Buyer"_s);

    Order order;
    QCOMPARE(order.getFieldByName(u"contact:email"_s), u""_s);
    order.setContact(contact);
    order.setContact(nullptr);         // ignored: the link is kept
    QCOMPARE(order.getContactId(), 0); // the stored id is the caller's business
    QCOMPARE(order.getFieldByName(u"contact:email"_s), u"anna@example.com"_s);
    QCOMPARE(order.getFieldByName(u"contact:id"_s), u"9"_s);
    QCOMPARE(order.getFieldByName(u"contact:surname"_s), u"Smith"_s);
    QCOMPARE(order.getFieldByName(u"contact:jobtitle"_s), u"Buyer"_s);

    // The contact manager owns contacts: once it drops one, the link is gone.
    contact.reset();
    QVERIFY(!order.getContact());
    QCOMPARE(order.getFieldByName(u"contact:name"_s), u""_s);
}

void tst_Orders::repeatDates_data()
{
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("frequency");
    QTest::addColumn<CalendarDate>("next");

    QTest::addRow("week: due from the 8th") << u"01/01/09"_s << u"week"_s << at(8, 1, 2009);
    QTest::addRow("fortnight") << u"25/12/08"_s << u"fortnight"_s << at(8, 1, 2009);
    QTest::addRow("leap day plus a year") << u"29/02/08"_s << u"year"_s << at(1, 3, 2009);
    QTest::addRow("month") << u"15/01/09"_s << u"month"_s << at(15, 2, 2009);
    QTest::addRow("a calendar month from 31 January") << u"31/01/09"_s << u"month"_s << at(3, 3, 2009);
    QTest::addRow("unknown frequency adds nothing") << u"01/01/09"_s << u"daily"_s << at(1, 1, 2009);
    QTest::addRow("empty date") << u""_s << u"week"_s << CalendarDate();
    QTest::addRow("month-first text does not parse") << u"01/31/09"_s << u"week"_s << CalendarDate();
}

void tst_Orders::repeatDates()
{
    QFETCH(QString, last);
    QFETCH(QString, frequency);
    QFETCH(CalendarDate, next);

    Order order;
    order.setRepeats(true);
    order.setLastRepeatDate(last);
    order.setRepeatFrequency(frequency);
    QCOMPARE(order.nextRepeatDate(), next);
    QCOMPARE(order.nextRepeatDate().isValid(), next.isValid());
    if (next.isValid()) {
        // Due once now is strictly later than the next date.
        QVERIFY(!order.isRepeatDue(next.addSeconds(-3600)));
        QVERIFY(!order.isRepeatDue(next));
        QVERIFY(order.isRepeatDue(next.addSeconds(1)));
        order.setRepeats(false);
        QVERIFY(!order.isRepeatDue(next.addSeconds(1)));
    } else {
        QVERIFY(!order.isRepeatDue(at(1, 1, 2030)));
    }
}

void tst_Orders::repeatCatchUpAndBox()
{
    Order order;
    order.applyRepeatBox(true, at(5, 3, 2009, 14, 30));
    QVERIFY(order.getRepeats());
    QCOMPARE(order.getLastRepeatDate(), u"05/03/09"_s);

    // Each copy moves the last date on by one period, not to today.
    order.setRepeatFrequency(u"week"_s);
    order.setLastRepeatDate(u"01/01/09"_s);
    QStringList dates;
    for (int pass = 0; pass < 10 && order.isRepeatDue(at(20, 1, 2009, 9)); ++pass) {
        order.advanceLastRepeatDate();
        dates << order.getLastRepeatDate();
    }
    QCOMPARE(dates, (QStringList{u"08/01/09"_s, u"15/01/09"_s}));

    order.applyRepeatBox(true, at(5, 3, 2009));
    QCOMPARE(order.getLastRepeatDate(), u"15/01/09"_s);
    order.applyRepeatBox(false, at(5, 3, 2009));
    QVERIFY(!order.getRepeats());
    QCOMPARE(order.getLastRepeatDate(), u"15/01/09"_s);
}

void tst_Orders::repeatNote_data()
{
    QTest::addColumn<QString>("last");
    QTest::addColumn<bool>("ticked");
    QTest::addColumn<QString>("frequency");
    QTest::addColumn<bool>("uk");
    QTest::addColumn<QString>("note");

    const QString next = u"Next due to be repeated on "_s;
    QTest::addRow("no last date") << u""_s << true << u"month"_s << true << u""_s;
    QTest::addRow("monthly") << u"31/01/09"_s << true << u"month"_s << true
                             << u"Last repeated on 31/01/09. "_s + next + u"03/03/09 "_s;
    QTest::addRow("next date stays day first")
        << u"15/01/09"_s << true << u"month"_s << false << u"Last repeated on 01/15/09. "_s + next + u"15/02/09 "_s;
    QTest::addRow("yearly shows a week") << u"01/01/09"_s << true << u"year"_s << true
                                         << u"Last repeated on 01/01/09. "_s + next + u"08/01/09 "_s;
    QTest::addRow("unreadable last date") << u"soon"_s << true << u"week"_s << true << u"Last repeated on soon. "_s;
}

void tst_Orders::repeatNote()
{
    QFETCH(QString, last);
    QFETCH(bool, ticked);
    QFETCH(QString, frequency);
    QFETCH(bool, uk);
    QFETCH(QString, note);
    QCOMPARE(Order::repeatNote(last, ticked, frequency, uk), note);
}

void tst_Orders::materialByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("line"); // after the write
    QTest::addColumn<QString>("read"); // the name read back, and its value

    const QString start = u"New Item|1||||||9|0|44"_s;
    QTest::addRow("item") << u"item"_s << u"X"_s << u"X|1||||||9|0|44"_s << u"X"_s;
    QTest::addRow("code") << u"code"_s << u"X"_s << u"New Item|1||||X||9|0|44"_s << u"X"_s;
    QTest::addRow("taxcode") << u"taxcode"_s << u"X"_s << u"New Item|1|||||X|9|0|44"_s << u"X"_s;
    QTest::addRow("order: integer, not read") << u"order"_s << u"12abc"_s << u"New Item|1||||||12|0|44"_s << u""_s;
    QTest::addRow("product: integer, not read") << u"product"_s << u"8"_s << u"New Item|1||||||9|8|44"_s << u""_s;
    QTest::addRow("contact id: read only") << u"order:contact:id"_s << u"5"_s << start << u"44"_s;
    QTest::addRow("the e-mail name answers the id") << u"order:contact:email"_s << u"5"_s << start << u"44"_s;
    QTest::addRow("taxCode in mixed case") << u"taxCode"_s << u"X"_s << start << u""_s;
    // Unlike the other records, a null value is stored (as an empty text).
    QTest::addRow("a null item clears it") << u"item"_s << QString() << u"|1||||||9|0|44"_s << u""_s;
}

void tst_Orders::materialByName()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(QString, line);
    QFETCH(QString, read);

    Material m(9);
    m.setContact(44);
    QVERIFY(m.setFieldByName(name, value));
    QCOMPARE(describe(m), line);
    QCOMPARE(m.getFieldByName(name), read);
    QVERIFY(!m.getFieldByName(name).isNull());
    QVERIFY(m.contains(u"anything"_s)); // lines are never filtered by a search
}

void tst_Orders::materialRecalcTotal_data()
{
    QTest::addColumn<QString>("qty");
    QTest::addColumn<QString>("cost");
    QTest::addColumn<QString>("total");

    QTest::addRow("fractional quantity") << u"1.5"_s << u"20"_s << u"30.00"_s;
    QTest::addRow("non-numeric quantity") << u"two"_s << u"5"_s << u"0.00"_s;
    // 1.005 in double precision, just below it in single.
    QTest::addRow("single-precision product") << u"3"_s << u"0.335"_s << u"1.00"_s;
}

void tst_Orders::materialRecalcTotal()
{
    QFETCH(QString, qty);
    QFETCH(QString, cost);
    QFETCH(QString, total);

    Material m;
    m.setQty(qty);
    m.setCost(cost);
    m.recalcTotal();
    QCOMPARE(m.getTotal(), total);
    QCOMPARE(m.getTotalasFloat(), total.toFloat());
    QCOMPARE(OrderMoney::lineTotal(qty, cost), total);
}

void tst_Orders::moneyFigures_data()
{
    QTest::addColumn<QList<Line>>("lines");
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QString>("deposit");
    QTest::addColumn<Figures>("expected");

    QTest::addRow("one taxable line at 20 percent")
        << QList<Line>{line(u"120.00"_s, u"S"_s)} << u"20"_s << u""_s
        << Figures{u"120.000000"_s, u"0.000000"_s, u"20.000000"_s, u"100.00"_s, u"120"_s};
    QTest::addRow("lower-case s is taxable, other codes are not")
        << QList<Line>{line(u"60"_s, u"s"_s), line(u"60"_s, u"Z"_s), line(u"60"_s, u""_s)} << u"20.00"_s << u"30"_s
        << Figures{u"180.000000"_s, u"0.000000"_s, u"10.000000"_s, u"170.00"_s, u"150"_s};
    QTest::addRow("shipping: product lines only, charge x quantity")
        << QList<Line>{line(u"30"_s, u""_s, u"2.50"_s, u"3"_s), line(u"10"_s, u""_s, {}, u"5"_s),
                       line(u"8"_s, u""_s, u""_s, u"2"_s)}
        << u"0"_s << u"10"_s << Figures{u"48.000000"_s, u"7.500000"_s, u"0.000000"_s, u"48.00"_s, u"45.5"_s};
    QTest::addRow("the shipping's tax is in the tax but not off the net")
        << QList<Line>{line(u"120.00"_s, u"S"_s, u"12"_s)} << u"20"_s << u""_s
        << Figures{u"120.000000"_s, u"12.000000"_s, u"22.000000"_s, u"100.00"_s, u"132"_s};
    QTest::addRow("no lines") << QList<Line>{} << u"17.5"_s << u""_s
                              << Figures{u"0.000000"_s, u"0.000000"_s, u"0.000000"_s, u"0.00"_s, u"0"_s};
    QTest::addRow("non-numeric texts count as 0")
        << QList<Line>{line(u"abc"_s, u"S"_s, u"1"_s, u"lots"_s), line(u"5"_s, u"S"_s)} << u"abc"_s << u"x"_s
        << Figures{u"5.000000"_s, u"0.000000"_s, u"0.000000"_s, u"5.00"_s, u"5"_s};
    QTest::addRow("single-precision sums at 17.5 percent")
        << QList<Line>{line(u"0.10"_s, u"S"_s), line(u"0.20"_s, u"S"_s)} << u"17.5"_s << u"10.1"_s
        << Figures{u"0.300000"_s, u"0.000000"_s, u"0.044681"_s, u"0.26"_s, u"-9.8"_s};
}

void tst_Orders::moneyFigures()
{
    QFETCH(QList<Line>, lines);
    QFETCH(QString, rate);
    QFETCH(QString, deposit);
    QFETCH(Figures, expected);

    QCOMPARE(OrderMoney::figures(lines, rate, deposit), expected);
}

void tst_Orders::moneyEditorRules()
{
    // The tax goes on top of the gross value: that is the printed full value.
    const Figures taxed = OrderMoney::figures({line(u"120.00"_s, u"S"_s)}, u"20"_s, u""_s);
    QCOMPARE(OrderMoney::valueWithTax(taxed.value, taxed.tax, taxed.shipping), u"140.00"_s);
    QCOMPARE(OrderMoney::valueWithTax(u"120"_s, u"22"_s, u"12"_s), u"154.00"_s);

    Material m(4, 2);
    m.setQty(u"2"_s);
    m.setTotal(u"19.98"_s);
    m.setTaxCode(u"S"_s);
    const Line fromLine = OrderMoney::lineOf(m, u"1.50"_s);
    QCOMPARE(QStringList({fromLine.qty, fromLine.total, fromLine.taxCode, fromLine.productShipping.value_or(u""_s)}),
             QStringList({u"2"_s, u"19.98"_s, u"S"_s, u"1.50"_s}));
    QVERIFY(!OrderMoney::lineOf(m).productShipping.has_value());

    QCOMPARE(OrderMoney::taxRateText(17.5f), u"17.50"_s);
    QVERIFY(OrderMoney::taxRateDiffers(u""_s, 17.5f));
    QVERIFY(!OrderMoney::showsTax(u"0.00"_s));
    QCOMPARE(OrderMoney::taxLabel(u"VAT"_s, u"17.50"_s), u"VAT @ 17.50%"_s);
}

QTEST_GUILESS_MAIN(tst_Orders)
#include "tst_orders.moc"

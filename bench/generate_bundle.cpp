// Writes a large database bundle of realistic records for the benchmarks:
// by default 20,000 contacts, 100,000 orders, 10,000 items, 400,000 material
// lines, 20,000 bills and 20,000 actions (about 300 MB). The same seed always
// gives the same bundle.
//
//   lw-generate-bundle OUT_FOLDER [--scale FACTOR]
#include "core/PropertyListWriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QRandomGenerator>

#include <cstdio>
#include <map>
#include <string>

namespace {

using Record = std::map<std::string, QString>; // sorted keys, as the platform writes them

class Generator
{
public:
    explicit Generator(double scale) : m_scale(scale) {}

    int count(int n) const { return std::max(1, int(n * m_scale)); }

    QString pick(const QStringList &list) { return list.at(int(m_random.bounded(list.size()))); }
    int number(int low, int high) { return low + int(m_random.bounded(high - low + 1)); }
    QString money(double high) { return QString::number(m_random.generateDouble() * high, 'f', 2); }
    QString thousands(double high)
    {
        // Amounts typed by hand, some with comma thousands.
        const double v = m_random.generateDouble() * high;
        if (v < 1000 || m_random.bounded(2))
            return QString::number(v, 'f', 2);
        return QString::number(int(v) / 1000) + QLatin1Char(',') +
               QString::asprintf("%06.2f", v - 1000 * (int(v) / 1000));
    }
    QString date() { return QString::asprintf("%02d/%02d/%02d", number(1, 28), number(1, 12), number(0, 26)); }
    QString name() { return pick(m_first) + QLatin1Char(' ') + pick(m_last); }
    QString sentence(int words)
    {
        QStringList out;
        for (int i = 0; i < words; ++i)
            out << pick(m_words);
        return out.join(QLatin1Char(' '));
    }
    QString paragraph()
    {
        // Multi-line notes with the odd markup character.
        QString text = sentence(number(3, 12));
        const int lines = number(0, 3);
        for (int i = 0; i < lines; ++i)
            text += (i % 2 ? QStringLiteral("\r") : QStringLiteral("\n")) + sentence(number(2, 10));
        if (m_random.bounded(5) == 0)
            text += QStringLiteral(" & <b>bold</b> \"quoted\" 5 > 4");
        return text;
    }
    QString yesNo(int percentYes)
    {
        return int(m_random.bounded(100)) < percentYes ? QStringLiteral("YES") : QStringLiteral("NO");
    }

    const QStringList m_first{QStringLiteral("Anna"),   QStringLiteral("Björn"),  QStringLiteral("Chloë"),
                              QStringLiteral("Dmitri"), QStringLiteral("Émile"),  QStringLiteral("Fatima"),
                              QStringLiteral("George"), QStringLiteral("Hana"),   QStringLiteral("Ines"),
                              QStringLiteral("Jürgen"), QStringLiteral("Kai"),    QStringLiteral("Łucja"),
                              QStringLiteral("María"),  QStringLiteral("Nguyễn"), QStringLiteral("Olu"),
                              QStringLiteral("Søren"),  QStringLiteral("陳"),     QStringLiteral("Zoë")};
    const QStringList m_last{
        QStringLiteral("Smith"),     QStringLiteral("O'Brien"),      QStringLiteral("Müller"),
        QStringLiteral("García"),    QStringLiteral("Dubois"),       QStringLiteral("Kowalski"),
        QStringLiteral("Andersson"), QStringLiteral("Rossi"),        QStringLiteral("Nakamura"),
        QStringLiteral("Ivanov"),    QStringLiteral("Smith & Sons"), QStringLiteral("Ó Súilleabháin")};
    const QStringList m_words{
        QStringLiteral("widget"),   QStringLiteral("blue"),    QStringLiteral("large"),  QStringLiteral("oak"),
        QStringLiteral("delivery"), QStringLiteral("invoice"), QStringLiteral("café"),   QStringLiteral("naïve"),
        QStringLiteral("repair"),   QStringLiteral("fitting"), QStringLiteral("labour"), QStringLiteral("½-inch"),
        QStringLiteral("brass"),    QStringLiteral("urgent"),  QStringLiteral("€5"),     QStringLiteral("£12"),
        QStringLiteral("spare"),    QStringLiteral("part"),    QStringLiteral("steel"),  QStringLiteral("glass")};
    QRandomGenerator m_random{20261121};

private:
    double m_scale;
};

bool writeFile(const QString &path, const char *collection, const std::vector<Record> &records)
{
    PropertyListWriter writer(collection, qsizetype(records.size()) * 600);
    for (const Record &record : records) {
        writer.beginRecord();
        for (const auto &[key, value] : record)
            writer.field(key, value);
        writer.endRecord();
    }
    writer.finish();
    QString error;
    if (!PropertyListWriter::writeFile(path, writer.data(), &error)) {
        std::fprintf(stderr, "could not write %s: %s\n", qPrintable(path), qPrintable(error));
        return false;
    }
    std::printf("%-18s %8zu records %8.1f MB\n", collection, records.size(), double(writer.data().size()) / 1e6);
    return true;
}

void dropEmpty(Record &record)
{
    for (auto it = record.begin(); it != record.end();)
        it = it->second.isEmpty() ? record.erase(it) : std::next(it);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: lw-generate-bundle OUT_FOLDER [--scale FACTOR]\n");
        return 2;
    }
    double scale = 1.0;
    const qsizetype scaleAt = args.indexOf(QStringLiteral("--scale"));
    if (scaleAt > 0 && scaleAt + 1 < args.size())
        scale = args.at(scaleAt + 1).toDouble();
    const QString out = args.at(1);
    if (!QDir().mkpath(out)) {
        std::fprintf(stderr, "cannot create %s\n", qPrintable(out));
        return 1;
    }
    Generator g(scale);
    const int contacts = g.count(20000), orders = g.count(100000), items = g.count(10000), materials = g.count(400000),
              bills = g.count(20000), actions = g.count(20000);

    std::vector<Record> records;
    records.reserve(size_t(materials));
    for (int id = 1; id <= contacts; ++id) {
        const bool company = id % 10 == 1;
        Record r{{"id", QString::number(id)},
                 {"company", QString::number(company || id % 3 ? 0 : ((id / 10) * 10 + 1))},
                 {"name", company ? QString() : g.name()},
                 {"companyname", company ? g.pick(g.m_last) + QStringLiteral(" Ltd") : QString()},
                 {"add1",
                  QString::number(g.number(1, 300)) + QLatin1Char(' ') + g.pick(g.m_words) + QStringLiteral(" Street")},
                 {"add2", g.pick(g.m_last) + QStringLiteral("ton")},
                 {"add3", id % 4 ? QString() : QStringLiteral("Shire")},
                 {"postcode", QString::asprintf("AB%d %dCD", g.number(1, 99), g.number(1, 9))},
                 {"phone", QString::asprintf("01%03d %06d", g.number(0, 999), g.number(0, 999999))},
                 {"mobile", id % 2 ? QString::asprintf("07%09d", g.number(0, 999999999)) : QString()},
                 {"email", QStringLiteral("person%1@example.org").arg(id)},
                 {"title", id % 5 ? QStringLiteral("Ms") : QStringLiteral("Dr")},
                 {"type", g.pick({QStringLiteral("Customer"), QStringLiteral("Supplier"), QStringLiteral("Prospect")})},
                 {"kind", company ? QStringLiteral("company") : QStringLiteral("person")},
                 {"jobtitle", id % 3 ? QString() : QStringLiteral("Buyer")},
                 {"comments", id % 4 ? QString() : g.paragraph()},
                 {"website", company ? QStringLiteral("http://example.org/%1").arg(id) : QString()}};
        dropEmpty(r);
        r["company"] = r.count("company") ? r["company"] : QStringLiteral("0");
        records.push_back(std::move(r));
    }
    if (!writeFile(QDir(out).filePath(QStringLiteral("contacts.xml")), "contacts", records))
        return 1;

    records.clear();
    for (int id = 1; id <= orders; ++id) {
        Record r{{"id", QString::number(id)},
                 {"contact", QString::number(g.number(0, contacts))},
                 {"ordernum", QStringLiteral("ORD%1").arg(id)},
                 {"date", g.date()},
                 {"title", g.sentence(g.number(1, 4))},
                 {"description", g.paragraph()},
                 {"status", g.pick({QStringLiteral("Enquiry"), QStringLiteral("Quote"), QStringLiteral("Order"),
                                    QStringLiteral("Invoiced"), QStringLiteral("Complete")})},
                 {"type", QStringLiteral("Order")},
                 {"paymentmethod", QStringLiteral("web")},
                 {"value", g.thousands(5000)},
                 {"tax", g.money(800)},
                 {"net", g.money(4000)},
                 {"shipping", g.money(20)},
                 {"taxrate", QStringLiteral("20.00")},
                 {"valuewithtax", g.money(6000)},
                 {"deposit", id % 3 ? QString() : g.money(100)},
                 {"depositpaid", id % 3 ? QString() : g.date()},
                 {"balance", g.money(5000)},
                 {"balancepaid", id % 2 ? QString() : g.date()},
                 {"includeBOM", g.yesNo(50)},
                 {"sent", g.yesNo(30)},
                 {"repeats", g.yesNo(2)},
                 {"repeatfrequency", QStringLiteral("month")},
                 {"lastrepeatdate", id % 50 ? QString() : g.date()}};
        dropEmpty(r);
        records.push_back(std::move(r));
    }
    if (!writeFile(QDir(out).filePath(QStringLiteral("orders.xml")), "orders", records))
        return 1;

    records.clear();
    for (int id = 1; id <= items; ++id) {
        Record r{{"id", QString::number(id)},
                 {"code", QStringLiteral("P%1").arg(id)},
                 {"item", g.sentence(g.number(1, 3))},
                 {"description", g.paragraph()},
                 {"price", g.thousands(2000)},
                 {"bought", g.money(1000)},
                 {"qty", QString::number(g.number(0, 500))},
                 {"optimumqty", QString::number(g.number(10, 100))},
                 {"warnlevel", QString::number(g.number(0, 10))},
                 {"shipping", g.money(10)},
                 {"status", QStringLiteral("Active")},
                 {"supplier", QString::number(g.number(1, contacts))},
                 {"taxcode", g.pick({QStringLiteral("S"), QStringLiteral("Z"), QStringLiteral("E")})},
                 {"condition", QStringLiteral("New")},
                 {"variation", id % 5 ? QString() : QStringLiteral("Large")},
                 {"decreaseQty", g.yesNo(70)},
                 {"exportsitemoss", g.yesNo(20)},
                 {"hidebuttoncode", g.yesNo(50)}};
        dropEmpty(r);
        records.push_back(std::move(r));
    }
    if (!writeFile(QDir(out).filePath(QStringLiteral("items.xml")), "products", records))
        return 1;

    records.clear();
    for (int id = 1; id <= materials; ++id) {
        const int product = g.number(0, items);
        Record r{{"id", QString::number(id)},
                 {"order", QString::number(g.number(1, orders))},
                 {"product", QString::number(product)},
                 {"contact", QString::number(g.number(0, contacts))},
                 {"item", product ? g.sentence(g.number(1, 3)) : QStringLiteral("Labour")},
                 {"code", product ? QStringLiteral("P%1").arg(product) : QString()},
                 {"qty", QString::number(g.number(1, 20))},
                 {"cost", g.money(300)},
                 {"unit", product ? QStringLiteral("each") : QStringLiteral("hour")},
                 {"total", g.money(3000)},
                 {"taxcode", QStringLiteral("S")}};
        dropEmpty(r);
        records.push_back(std::move(r));
    }
    if (!writeFile(QDir(out).filePath(QStringLiteral("itemsordered.xml")), "materials", records))
        return 1;

    records.clear();
    for (int id = 1; id <= bills; ++id) {
        Record r{{"id", QString::number(id)},
                 {"number", QStringLiteral("B-%1").arg(id)},
                 {"name", g.name()},
                 {"details", g.sentence(g.number(2, 8))},
                 {"datepaid", g.date()},
                 {"category", g.pick({QStringLiteral("Rent"), QStringLiteral("Stock"), QStringLiteral("Fuel"),
                                      QStringLiteral("Wages")})},
                 {"amount", g.thousands(3000)},
                 {"net", g.money(2500)},
                 {"vat", g.money(500)}};
        dropEmpty(r);
        records.push_back(std::move(r));
    }
    if (!writeFile(QDir(out).filePath(QStringLiteral("bills.xml")), "bills", records))
        return 1;

    records.clear();
    for (int id = 1; id <= actions; ++id) {
        // Actions are written with every field, empty or not.
        Record r{{"id", QString::number(id)},
                 {"title", g.sentence(g.number(1, 5))},
                 {"details", id % 2 ? QString() : g.paragraph()},
                 {"startdate", g.date()},
                 {"starttime", QString::asprintf("%02d:%02d", g.number(8, 17), g.number(0, 59))},
                 {"enddate", g.date()},
                 {"endtime", QString::asprintf("%02d:%02d", g.number(8, 17), g.number(0, 59))},
                 {"rate", g.money(80)},
                 {"totalcharge", g.money(800)},
                 {"totaltime", QString::number(g.number(1, 40))},
                 {"totaltimeunits", QStringLiteral("hours")},
                 {"complete", g.yesNo(60)},
                 {"alarm", g.yesNo(10)},
                 {"alarmacknowledged", g.yesNo(50)}};
        records.push_back(std::move(r));
    }
    if (!writeFile(QDir(out).filePath(QStringLiteral("actions.xml")), "actions", records))
        return 1;
    return 0;
}

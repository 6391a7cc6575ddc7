// Times the report engine over a busy shop: "Top Sellers" (400,000 order
// lines of 10,000 products, collated by code) and "Stocktake" (10,000 items,
// totalled), then "Top Sellers" again with the lines doubled, which should
// take about twice as long: the collation is linear in the rows.
//
//   lw-bench-reports [BUNDLE] [--runs N]
// With a bundle (lw-generate-bundle's) its records are read; without one the
// same numbers of records are made in memory.
#include "app/Ledgerwick.h"
#include "core/CliPlatform.h"
#include "core/RecordTable.h"
#include "orders/Material.h"
#include "products/Item.h"
#include "reports/ReportManager.h"

#include <QCoreApplication>
#include "BenchTiming.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {


void makeRecords(Ledgerwick &ledgerwick)
{
    QRandomGenerator random(12);
    for (int i = 0; i < 10000; ++i) {
        auto item = std::make_shared<Item>();
        item->setCode(QStringLiteral("P%1").arg(i));
        item->setItem(QStringLiteral("Product %1").arg(i));
        item->setQty(QString::number(random.bounded(0, 200)));
        item->setBought(QString::number(random.bounded(100, 5000) / 100.0, 'f', 2));
        ledgerwick.getItemManager()->add(item);
    }
    for (int i = 0; i < 400000; ++i) {
        const int product = random.bounded(10000);
        auto line = std::make_shared<Material>(1 + i / 4, product + 1);
        line->setCode(QStringLiteral("P%1").arg(product));
        line->setItem(QStringLiteral("Product %1").arg(product));
        line->setQty(QString::number(random.bounded(1, 6)));
        ledgerwick.getBOMManager()->add(line);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("ledgerwick.info=false"));
    const QStringList args = app.arguments();
    const qsizetype runsAt = args.indexOf(QStringLiteral("--runs"));
    const int runs = runsAt > 0 && runsAt + 1 < args.size() ? std::max(1, args.at(runsAt + 1).toInt()) : 5;
    const QString bundle = args.size() > 1 && !args.at(1).startsWith(QLatin1String("--")) ? args.at(1) : QString();

    // The built-in reports are copied into a home of its own.
    QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    CliPlatform platform;
    Ledgerwick ledgerwick(&platform);
    if (bundle.isEmpty()) {
        makeRecords(ledgerwick);
    } else {
        ledgerwick.setDatabaseLocation(bundle);
        ledgerwick.readDatabase(false);
    }
    ReportManager *reports = ledgerwick.getReportManager();
    reports->populateFilter();

    auto time = [&](const char *name) {
        const double seconds = medianSeconds(runs, [&] { reports->doReport(QLatin1String(name)); });
        std::printf("%-14s over %7d lines, %6d items: %7d rows %8.4f s\n", name,
                    ledgerwick.getBOMManager()->getCount(), ledgerwick.getItemManager()->getCount(),
                    reports->rowCount(), seconds);
        return seconds;
    };
    const double topSellers = time("Top Sellers");
    time("Stocktake");

    // Every line once more: twice the rows to build and collate.
    RecordTable *lines = ledgerwick.getBOMManager();
    const int count = lines->getCount();
    for (int i = 0; i < count; ++i) {
        const auto *line = static_cast<const Material *>(lines->getnthItem(i));
        auto copy = std::make_shared<Material>(*line);
        copy->setID(0);
        lines->add(copy);
    }
    const double doubled = time("Top Sellers");
    std::printf("lines doubled: %.2f times the time\n", doubled / topSellers);
    return 0;
}

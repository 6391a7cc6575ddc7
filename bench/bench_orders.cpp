// Times the orders of a big shop on the benchmark bundle (100,000 orders,
// 400,000 material lines): opening an order in the editor with its lines
// shown, filtering the list with a search text, picking a product into an
// order, and every cell of the lines table.
//
//   lw-bench-orders BUNDLE [--runs N]
#include "app/Ledgerwick.h"
#include "core/CliPlatform.h"
#include "orders/BOMManager.h"
#include "orders/OrderManager.h"
#include "products/Item.h"
#include "products/ItemManager.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

// Questions take their default button without a word on standard error.
class QuietPlatform : public CliPlatform
{
public:
    int alert(const Alert &) override { return 0; }
};

double medianMs(int runs, const std::function<void(int)> &work)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        work(i);
        times.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void report(const char *what, double ms, double target)
{
    std::printf("%-52s %9.3f ms  (target %.0f ms) %s\n", what, ms, target, ms <= target ? "ok" : "SLOW");
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("ledgerwick.info=false"));
    const QStringList args = app.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: lw-bench-orders BUNDLE [--runs N]\n");
        return 2;
    }
    const qsizetype runsAt = args.indexOf(QStringLiteral("--runs"));
    const int runs = runsAt > 0 && runsAt + 1 < args.size() ? std::max(1, args.at(runsAt + 1).toInt()) : 11;

    QuietPlatform platform;
    Ledgerwick ledgerwick(&platform);
    ledgerwick.setDatabaseLocation(args.at(1));
    ledgerwick.readDatabase(false);
    OrderManager *orders = ledgerwick.getOrderManager();
    BOMManager *bom = ledgerwick.getBOMManager();
    std::printf("%d orders, %d lines, %d items\n", orders->getCount(), bom->getCount(),
                ledgerwick.getItemManager()->getCount());
    if (orders->getCount() == 0 || bom->getCount() == 0)
        return 1;

    // The index is built while reading; a sort of the lines makes it stale once.
    QElapsedTimer first;
    bom->sortByColumn(QStringLiteral("item"), true, 0);
    first.start();
    bom->setCurrentOrder(1);
    std::printf("%-52s %9.3f ms\n", "index of the lines by order, after a sort of them", double(first.nsecsElapsed()) / 1e6);

    // Opening an order: the editor filled, its lines counted and every cell shown.
    qsizetype chars = 0;
    auto showLines = [&] {
        for (int row = 0; row < bom->rowCount(); ++row)
            for (int column = 0; column < bom->columnCount(); ++column)
                chars += bom->data(bom->index(row, column)).toString().size();
    };
    report("open an order in the editor, lines shown", medianMs(runs, [&](int i) {
               orders->editRecord(orders->getnthItem(qsizetype(i * 7919 % orders->getCount())));
               showLines();
           }), 20);

    // Every cell of the lines table, with the whole collection behind it.
    const int cells = 200000;
    report("200,000 cells of the lines table", medianMs(runs, [&](int) {
               for (int k = 0; k < cells; ++k)
                   chars += bom->objectValueForTableColumn(QStringLiteral("total"), k % std::max(1, bom->numberForThisOrder())).size();
           }), 100);

    report("filter 100,000 orders with a search text", medianMs(runs, [&](int i) {
               orders->editorState().searchText = i % 2 ? QStringLiteral("quote") : QStringLiteral("smith");
               orders->filter(nullptr);
           }), 50);

    ItemManager *items = ledgerwick.getItemManager();
    report("pick a product into an order (stock, line, sums)", medianMs(runs, [&](int i) {
               auto *item = static_cast<Item *>(items->getnthItem(qsizetype(i * 31 % items->getCount())));
               orders->setMaterial(item);
               orders->calculateTax(nullptr);
           }), 20);
    std::printf("(%lld characters read)\n", static_cast<long long>(chars));
    return 0;
}

// Times the full load of a database bundle through the controller, the save
// of all six files, and as baselines pugixml's bare parse of the same files
// into a document tree and the raw write of the same bytes. Prints the
// medians, the ratios to the targets, and the peak memory after the load.
//
//   lw-bench-database BUNDLE [--runs N]
#include "core/CliPlatform.h"
#include "app/DatabaseStore.h"
#include "app/Ledgerwick.h"
#include "core/lwDataSource.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>
#include <QSaveFile>
#include <QTemporaryDir>

#include <pugixml.hpp>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double timed(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e9;
}

// A line of /proc/self/status in megabytes ("VmHWM", "VmRSS").
double statusMegabytes(const char *key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines)
        if (line.startsWith(key))
            return line.mid(qsizetype(std::strlen(key)) + 1).trimmed().split(' ').first().toDouble() / 1024.0;
    return -1;
}

bool copyBundle(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    for (const auto &file : DatabaseStore::files()) {
        const QString name = QString::fromLatin1(file.fileName);
        QFile::remove(QDir(to).filePath(name));
        if (!QFile::copy(QDir(from).filePath(name), QDir(to).filePath(name)))
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("ledgerwick.info=false"));
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: lw-bench-database BUNDLE [--runs N]\n");
        return 2;
    }
    int runs = 5;
    const qsizetype runsAt = args.indexOf(QStringLiteral("--runs"));
    if (runsAt > 0 && runsAt + 1 < args.size())
        runs = std::max(1, args.at(runsAt + 1).toInt());

    // Work on a copy beside the original, so the saves do not change it.
    const QString source = args.at(1);
    const QString work = QDir(source).absolutePath() + QStringLiteral("-bench");
    if (!copyBundle(source, work)) {
        std::fprintf(stderr, "cannot copy %s to %s\n", qPrintable(source), qPrintable(work));
        return 1;
    }
    qint64 bytes = 0;
    for (const auto &file : DatabaseStore::files())
        bytes += QFileInfo(QDir(work).filePath(QString::fromLatin1(file.fileName))).size();
    std::printf("bundle: %.1f MB in six files, %d runs each\n", double(bytes) / 1e6, runs);

    CliPlatform platform;
    // Load first, so that the peak memory is that of the load.
    std::vector<double> loads;
    std::unique_ptr<Ledgerwick> loaded;
    double peakAfterLoad = 0, rssAfterLoad = 0;
    for (int run = 0; run < runs; ++run) {
        loaded.reset();
        auto ledgerwick = std::make_unique<Ledgerwick>(&platform);
        ledgerwick->setDatabaseLocation(work);
        loads.push_back(timed([&] { ledgerwick->readDatabase(false); }));
        if (run == 0) {
            peakAfterLoad = statusMegabytes("VmHWM:");
            rssAfterLoad = statusMegabytes("VmRSS:");
        }
        loaded = std::move(ledgerwick);
    }
    std::printf("records: contacts %d, orders %d, items %d, materials %d, bills %d, actions %d\n",
                loaded->getContactManager()->getCount(), loaded->getOrderManager()->getCount(),
                loaded->getItemManager()->getCount(), loaded->getBOMManager()->getCount(),
                loaded->getBillManager()->getCount(), loaded->getActionManager()->getCount());

    // Save all six, against writing the same bytes raw with the same flush.
    std::vector<double> saves, rawWrites;
    std::vector<QByteArray> written;
    std::vector<double> builds;
    for (int run = 0; run < runs; ++run) {
        builds.push_back(timed([&] {
            for (const auto &file : DatabaseStore::files()) {
                QByteArray out;
                DatabaseStore::serialize(file.kind, *loaded->manager(file.kind), out);
            }
        }));
    }
    // The peak during the saves alone: the kernel's high-water mark starts
    // again from the memory now in use.
    {
        QFile clear(QStringLiteral("/proc/self/clear_refs"));
        if (clear.open(QIODevice::WriteOnly))
            clear.write("5");
    }
    const double beforeSave = statusMegabytes("VmRSS:");
    // The first save also makes the run's backup (links only) and gives the bytes.
    loaded->writeDatabase(loaded.get());
    const double peakDuringSave = statusMegabytes("VmHWM:");
    for (const auto &file : DatabaseStore::files()) {
        QFile f(QDir(work).filePath(QString::fromLatin1(file.fileName)));
        written.push_back(f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray());
    }
    // Saves and raw writes take turns, so that a busy machine slows both alike;
    // the ratio is the median of the runs' own ratios.
    std::vector<double> ratios;
    for (int run = 0; run < runs; ++run) {
        saves.push_back(timed([&] { loaded->writeDatabase(loaded.get()); }));
        rawWrites.push_back(timed([&] {
            for (size_t i = 0; i < written.size(); ++i) {
                QSaveFile f(QDir(work).filePath(QString::fromLatin1(DatabaseStore::files()[i].fileName)));
                if (f.open(QIODevice::WriteOnly)) {
                    f.write(written[i]);
                    f.commit();
                }
            }
        }));
        ratios.push_back(saves.back() / rawWrites.back());
    }
    loaded.reset();

    // pugixml's bare parse of the same six files into a document tree.
    std::vector<double> parses;
    for (int run = 0; run < runs; ++run) {
        parses.push_back(timed([&] {
            for (const auto &file : DatabaseStore::files()) {
                pugi::xml_document doc;
                const QByteArray path = QDir(work).filePath(QString::fromLatin1(file.fileName)).toLocal8Bit();
                if (!doc.load_file(path.constData()))
                    std::fprintf(stderr, "pugixml could not parse %s\n", path.constData());
            }
        }));
    }

    const double load = median(loads), save = median(saves), raw = median(rawWrites), parse = median(parses);
    std::printf("\n%-34s %8.3f s\n", "load through readDatabase", load);
    std::printf("%-34s %8.3f s\n", "pugixml bare parse (baseline)", parse);
    std::printf("%-34s %8.2f x   (target at most 2.5x, aim 1.5x)\n", "load / parse", load / parse);
    std::printf("%-34s %8.3f s\n", "save of all six files", save);
    std::printf("%-34s %8.3f s\n", "  building the bytes on one core", median(builds));
    std::printf("%-34s %8.3f s\n", "raw write of the same bytes", raw);
    std::printf("%-34s %8.2f x   (target at most 1.5x; median of the runs' ratios)\n", "save / raw write",
                median(ratios));
    std::printf("%-34s %8.0f MB (%.0f MB before it; target at most 1024 MB)\n", "peak resident memory in save",
                peakDuringSave, beforeSave);
    std::printf("%-34s %8.0f MB (target at most 1024 MB)\n", "peak resident memory after load", peakAfterLoad);
    std::printf("%-34s %8.0f MB\n", "resident memory after load", rssAfterLoad);
    QDir(work).removeRecursively();
    return 0;
}
